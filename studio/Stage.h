#pragma once

#include "film/FrameOnDemand.h"
#include "film/ScenePlan.h"
#include "scene/Diagnostics.h"

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace orbel::studio {

/// A scene that cannot be drawn, with all that is wrong.
struct BadScene {
    Problems problems;
};

/// A frame that nobody waits for any more.
struct Superseded {};

/// A frame as it was drawn; the image is the stage's.
struct DrawnFrame {
    const RasterInfo& raster;
    OutputAlpha alpha; ///< how it carries its alpha
};

/// Draws a frame as the film shows it; with `before` the input alone. The image stays until the
/// next call. Throws Superseded when `aborted` says so, MediaError, RenderError.
[[nodiscard]] DrawnFrame drawOn(FrameOnDemand& stage, long frame, bool before,
                                const std::function<bool()>& aborted);

/// Keeps the last scene planned, so that a value that changes costs its frame and nothing else. One
/// thread at a time.
class StageKeeper {
public:
    /// A scene in its full size. The shape has been converted by `convert` before, or soon is.
    /// Throws BadScene.
    [[nodiscard]] FrameOnDemand& full(const std::shared_ptr<const Scene>& scene,
                                      const ShapeConverter& convert);
    /// The scene that `full` gave last, at a smaller size: the same picture as a host would draw it
    /// at a lower resolution. Null for a scene whose input exists in one size only.
    [[nodiscard]] FrameOnDemand* reduced(FrameSize size);
    /// Draws a frame of the scene that `full` gave last, as `drawOn` does. The one that was drawn
    /// last is not drawn anew.
    [[nodiscard]] DrawnFrame drawFull(long frame, bool before,
                                      const std::function<bool()>& aborted);
    /// Files have changed: whatever is kept of a sequence is looked at anew. Any thread.
    void lookAgain() { m_lookAgain = true; }

private:
    struct KeptFrame {
        long frame;
        bool before;
        DrawnFrame drawn;
    };

    void plan(const Scene& scene, const ShapeConverter& convert);
    [[nodiscard]] bool inputIsCurrent(const SceneInput& input);
    /// False when the scene's own shape file is another than it was when it was read.
    [[nodiscard]] bool shapeIsCurrent(const Scene& scene);
    void restroke(const Scene& scene, const ShapeConverter& convert);

    std::shared_ptr<const Scene> m_scene;
    std::string m_stamp; // of the input's file
    std::map<std::string, std::string> m_shapeStamps;
    std::unique_ptr<FrameOnDemand> m_full;
    std::unique_ptr<FrameOnDemand> m_reduced;
    std::optional<KeptFrame> m_drawn; // in the full one's image
    std::atomic<bool> m_lookAgain = false;
};

} // namespace orbel::studio
