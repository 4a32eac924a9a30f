#pragma once

#include "doors/memory/MemoryImage.h"
#include "film/FrameInput.h"
#include "film/FrameRenderer.h"
#include "film/ScenePlan.h"

#include <functional>
#include <optional>
#include <string>

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

    [[nodiscard]] ScenePlan& plan() { return m_plan; }
    [[nodiscard]] const ScenePlan& plan() const { return m_plan; }

    /// Draws another stroke from now on: other values, and another shape file or text.
    void takeStroke(ParameterStore parameters, std::string shapePath, std::string shapeText);

    /// What lies under the stroke at a frame, alone; alpha as `plan().alpha.source` says. The image
    /// holds until the next call. Throws MediaError.
    [[nodiscard]] const MemoryImage& input(long frame);

    /// Renders a frame, also one outside of the plan's range. The image belongs to this object and
    /// holds until the next call: the plan's size and format, rows top-down, alpha as
    /// `plan().alpha.output` says. Null when `cancelled` (any thread, may be empty) said true on
    /// the way. Throws MediaError when the input has no such frame, RenderError when the effect
    /// gives up.
    [[nodiscard]] const MemoryImage* render(long frame, const std::function<bool()>& cancelled);

private:
    void makeRenderer();

    ScenePlan m_plan;
    FrameInput m_frameInput;
    std::function<bool()> m_cancelled;
    std::optional<FrameRenderer> m_renderer; ///< of the stroke that there is
    MemoryImage m_input;
    MemoryImage m_output;
};

} // namespace orbel
