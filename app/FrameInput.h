#pragma once

#include "app/ScenePlan.h"
#include "app/media/ScalePicture.h"
#include "host/memory/MemoryImage.h"

#include <optional>

namespace orbel::app {

/// The picture under the stroke, frame by frame. One thread at a time.
class FrameInput {
public:
    /// Borrows the plan and reads on in its media.
    explicit FrameInput(ScenePlan* plan);

    /// Fills an image of the plan's size and format. Throws MediaError when the clip ends early or
    /// a frame cannot be decoded.
    void fill(long frame, const MemoryImage& image);

private:
    void fillStill(const MemoryImage& image);
    void fillFromMedia(const Picture& picture, const MemoryImage& image);

    ScenePlan* m_plan;
    PictureScaler m_scaler;
    std::optional<MemoryImage> m_still; ///< what every frame is a copy of; absent when it moves
};

} // namespace orbel::app
