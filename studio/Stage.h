#pragma once

#include "film/FrameInput.h"
#include "film/ScenePlan.h"
#include "scene/Diagnostics.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

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

/// A planned scene with everything that drawing a frame of it takes. One thread at a time.
class Stage {
public:
    explicit Stage(ScenePlan plan);

    [[nodiscard]] ScenePlan& plan() { return m_plan; }
    /// Takes over what a scene that is alike in all else says of the stroke. `shapeText` is what
    /// its shape was converted to, if it had to be.
    void takeStroke(const Scene& scene, const std::string& shapeText);
    /// Draws a frame as the film shows it; with `before` the input alone. The image stays until the
    /// next call. Throws Superseded when `aborted` says so, MediaError, RenderError.
    [[nodiscard]] DrawnFrame draw(long frame, bool before, const std::function<bool()>& aborted);

private:
    ScenePlan m_plan;
    FrameInput m_reader;
    MemoryImage m_input;
    MemoryImage m_output;
};

/// Keeps the last scene planned, so that a value that changes costs its frame and nothing else. One
/// thread at a time.
class StageKeeper {
public:
    explicit StageKeeper(ShapeConverter convert) : m_convert(std::move(convert)) {}

    /// The stage of a scene's text in its full size. `file` names the scene and is where its paths
    /// start. Throws BadScene.
    [[nodiscard]] Stage& full(const std::string& text, const std::string& file);
    /// The stage that `full` gave last, at a smaller size: the same picture as a host would draw it
    /// at a lower resolution. Null for a scene whose input exists in one size only.
    [[nodiscard]] Stage* reduced(FrameSize size);

private:
    void plan(const Scene& scene);
    /// False when the scene's own shape file is another than it was when it was read.
    [[nodiscard]] bool shapeIsCurrent(const Scene& scene);
    void restroke(const Scene& scene);

    ShapeConverter m_convert;
    std::string m_text;
    std::optional<Scene> m_scene;
    std::string m_stamp; // of the input's file
    std::map<std::string, std::string> m_shapeStamps;
    std::unique_ptr<Stage> m_full;
    std::unique_ptr<Stage> m_reduced;
};

} // namespace orbel::studio
