#pragma once

#include "doors/memory/MemoryImage.h"
#include "film/FrameInput.h"
#include "film/FrameRenderer.h"
#include "film/ScenePlan.h"

#include <functional>

namespace orbel {

/// Single frames of a scene, any of them in any order, into memory: what a preview shows. At the
/// plan's own size a frame has the bytes that a film of the same scene gets; see `resize` for
/// others. One thread at a time; the effect draws one frame of the process at once.
class FrameOnDemand {
public:
    /// Takes the plan over; throws std::bad_alloc and MediaError where the input cannot be read.
    explicit FrameOnDemand(ScenePlan plan);
    FrameOnDemand(const FrameOnDemand&) = delete;
    FrameOnDemand& operator=(const FrameOnDemand&) = delete;
    ~FrameOnDemand() = default;

    [[nodiscard]] const ScenePlan& plan() const { return m_plan; }

    /// Renders a frame, also one outside of the plan's range. The image belongs to this object and
    /// holds until the next call: the plan's size and format, rows top-down, alpha as
    /// `plan().alpha.output` says. Null when `cancelled` (any thread, may be empty) said true on
    /// the way. Throws MediaError when the input has no such frame, RenderError when the effect
    /// gives up.
    [[nodiscard]] const MemoryImage* render(long frame, const std::function<bool()>& cancelled);

private:
    ScenePlan m_plan;
    FrameInput m_frameInput;
    std::function<bool()> m_cancelled;
    FrameRenderer m_renderer;
    MemoryImage m_input;
    MemoryImage m_output;
};

} // namespace orbel
