#pragma once

#include "drawing/Outline.h"

#include <array>
#include <optional>
#include <string_view>
#include <vector>

namespace orbel {

/// One painting of a path, in the coordinates of the recording.
struct PaintedPath {
    enum class Kind { Fill, Stroke };
    Kind kind = Kind::Fill;
    /// r, g, b, a in 0..1; absent when something else than one colour is painted.
    std::optional<std::array<double, 4>> colour;
    std::vector<OutlineCurve> curves;
};

/// Reads what was painted, in order, from the text that cairo's script surface writes of a
/// recording. Tiles of patterns, clips and pictures are passed over. Takes any text: what it
/// cannot read is left out.
[[nodiscard]] std::vector<PaintedPath> readRecording(std::string_view script);

} // namespace orbel
