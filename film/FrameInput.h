#pragma once

#include "doors/memory/MemoryImage.h"
#include "film/ScenePlan.h"

#include <optional>

namespace orbel {

/// The picture under the stroke, frame by frame. One thread at a time.
class FrameInput {
public:
    /// Borrows the plan and reads on in its media.
    explicit FrameInput(ScenePlan* plan);

    /// Fills an image of the plan's size and format. Throws MediaError when the clip ends early or
    /// a frame cannot be decoded.
    void fill(long frame, const MemoryImage& image);
    /// Every frame has the same picture.
    [[nodiscard]] bool isStill() const { return m_still.has_value(); }

private:
    void fillStill(const MemoryImage& image);

    ScenePlan* m_plan;
    std::optional<MemoryImage> m_still; ///< what every frame is a copy of; absent when it moves
};

} // namespace orbel
