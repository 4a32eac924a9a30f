#pragma once

#include "host/PluginHost.h"

#include <array>
#include <optional>
#include <vector>

namespace orbel {

/// Where the stroke of a frame runs, in pixels of the picture: what is drawn over it to be taken
/// hold of.
struct PathOverlay {
    using Point = std::array<double, 2>;

    /// Every outline from its beginning to its end, whatever "Start" and "End" say; repeated copies
    /// are left out. What is clipped is missing.
    std::vector<std::vector<Point>> outlines;
    std::optional<Point> start; ///< where the drawn stretch begins
    std::optional<Point> end;   ///< where it ends
    /// The middle of the layer, which "XY Position" moves; absent where nothing is projected.
    std::optional<Point> position;
    /// How far `position` moves for a whole unit of the parameter's x and of its y.
    std::array<Point, 2> positionAxes{};
};

/// The overlay of the frame that the host would have rendered. Reads no pixel.
[[nodiscard]] PathOverlay pathOverlay(PluginHost_API* host);

} // namespace orbel
