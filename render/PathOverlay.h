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

    struct Outline {
        std::vector<Point> points;
        double length = 0.0; ///< along the outline, in pixels before it is projected
        double step = 0.0;   ///< of that length between two points; what is clipped is missing
    };

    /// Every outline from its beginning to its end, whatever "Start" and "End" say; repeated copies
    /// are left out.
    std::vector<Outline> outlines;
    bool asOne = false;         ///< "Start" and "End" run over all of them, one after the other
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
