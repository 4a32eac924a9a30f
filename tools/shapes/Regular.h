#pragma once

#include "tools/shapes/Outline.h"

namespace orbel::artwork {

/// Corners on a circle round the sheet's middle, clockwise from a clock angle in degrees.
[[nodiscard]] std::vector<Point> regularPolygon(int corners, double radius, double first);
/// Tips and notches in turn, clockwise from the tip at twelve o'clock.
[[nodiscard]] std::vector<Point> starPolygon(int tips, double outer, double inner);

} // namespace orbel::artwork
