#pragma once

#include "doors/memory/ParameterStore.h"
#include "host/PluginHost.h"
#include "shapes/ImportOptions.h"
#include "shapes/LetteringOptions.h"

#include <array>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace orbel {

struct FrameSize {
    int width = 0;
    int height = 0;
    friend bool operator==(const FrameSize&, const FrameSize&) = default;
};

/// Frames `first` to `last`, both included.
struct FrameRange {
    long first = 0;
    long last = 0;
    [[nodiscard]] long count() const { return last - first + 1; }
    friend bool operator==(const FrameRange&, const FrameRange&) = default;
};

/// The same straight colour everywhere, components R, G, B, A in 0..1.
struct ColorInput {
    std::array<double, 4> rgba{};
};

/// One frame as `--raw` writes them, in the scene's own pixel format, used for every frame.
struct RawInput {
    std::string path;
};

/// A picture, a numbered sequence or a clip.
struct MediaInput {
    std::string path;
    std::optional<long> first{}; ///< number of a sequence's first file; absent: 0 or 1
};

using SceneInput = std::variant<ColorInput, RawInput, MediaInput>;

/// The file in messages about a scene that is described by options alone.
inline constexpr const char* commandLine = "command line";

/// What a scene file or a command line states. Values are within their ranges; what is absent takes
/// its default from the input or from the table. Paths lead there from the working folder.
struct Scene {
    std::string file;              ///< for messages: the scene file, or `commandLine`
    std::optional<FrameSize> size; ///< 0 x 0 when something was stated that cannot be used
    RasterFormat format = RF_RGBA8;
    std::optional<double> framesPerSecond;
    std::optional<FrameRange> frames;
    double pixelAspect = 1.0;
    double renderScaleX = 1.0;
    double renderScaleY = 1.0;
    SceneInput input; ///< transparent black
    std::optional<std::string> shape;
    std::optional<ImportOptions> import;       ///< `shape` is any drawing, to be converted so
    std::optional<LetteringOptions> lettering; ///< in place of `shape`
    /// By identifier; a constant is a single key.
    std::map<int, std::vector<Keyframe>> parameters;

    /// Whether the shape is there only after a conversion, which plug-ins do not do.
    [[nodiscard]] bool needsConversion() const { return import || lettering; }
};

} // namespace orbel
