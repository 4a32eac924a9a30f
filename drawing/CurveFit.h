#pragma once

#include "drawing/Outline.h"

#include <vector>

namespace orbel {

/// Few cubics that pass a row of points within `tolerance`. The pen turns smoothly at every point
/// but where the row bends by more than `corner` radians. Fewer than two distinct points give a
/// curve without segments; nothing is closed.
[[nodiscard]] OutlineCurve fitCurve(const std::vector<PlanePoint>& points, double tolerance,
                                    double corner);

/// Gives a curve fewer segments, moving it by no more than about `tolerance`. Corners stay.
void simplifyCurve(double tolerance, OutlineCurve* curve);

} // namespace orbel
