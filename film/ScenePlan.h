#pragma once

#include "media/MediaReader.h"
#include "scene/Diagnostics.h"
#include "scene/Scene.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace orbel {

/// A scene whose defaults are filled in and whose files are open: ready to be rendered.
struct ScenePlan {
    std::string sceneFile; ///< for messages
    FrameSize size;
    RasterFormat format = RF_RGBA8;
    FrameRate frameRate;
    FrameRange frames;
    double pixelAspect = 1.0;
    double renderScaleX = 1.0;
    double renderScaleY = 1.0;
    std::string shapePath; ///< the "Shape" parameter; empty for none
    std::string shapeText; ///< what a drawing or text was converted to, in place of a file
    ParameterStore parameters;

    ColorInput color;                   ///< where neither of the others is there
    std::vector<std::uint8_t> rawFrame; ///< rows top-down, tightly packed
    std::unique_ptr<MediaReader> media;

    /// How input and output of every frame carry alpha. Pictures and clips are straight from the
    /// decoder to the encoder, so that a pixel that nothing is drawn on comes out as it went in;
    /// colours and raw frames are premultiplied, as raw dumps are.
    AlphaHandling alpha;

    /// Frames that may be in the making at once without using more than the machine's memory.
    int framesInFlight = 1;
};

/// Makes an SVG text that the shape reader takes of the drawing or the text that a scene names as
/// its shape. Reports why there is none.
using ShapeConverter = std::function<std::optional<std::string>(const Scene&, Problems*)>;

/// Looks at everything that a scene refers to: input, shape files, memory. Reports all that is
/// wrong; nothing then. `threads` is for decoding. Without `convert`, a shape that needs to be
/// converted is wrong.
[[nodiscard]] std::optional<ScenePlan>
planScene(const Scene& scene, int threads, Problems* problems, const ShapeConverter& convert = {});

/// Another size for the same picture: whatever the scene counts in pixels is scaled with it, as a
/// host does that renders a preview.
void resize(ScenePlan* plan, const FrameSize& size);

/// The frame of the clip that is shown at a frame of the scene: the same moment, when their rates
/// differ. Pictures and sequences have no rate of their own and go frame by frame.
[[nodiscard]] long mediaFrame(const MediaProperties& media, const FrameRate& sceneRate, long frame);

/// The first frame that the input is too short for, as far as that is known beforehand.
[[nodiscard]] std::optional<long> firstMissingFrame(const ScenePlan& plan);

} // namespace orbel
