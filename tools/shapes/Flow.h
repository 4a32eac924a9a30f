#pragma once

#include "tools/shapes/Outline.h"

#include <functional>
#include <optional>

namespace orbel::artwork {

/// The directions in which a flowing line leaves its first point and reaches its last; where none
/// is given the line runs out as an arc would.
struct FlowEnds {
    std::optional<Point> leave;
    std::optional<Point> arrive;
};

/// A closed smooth outline through the points in order, round wherever the points allow: at every
/// point both sides share tangent and, nearly, curvature.
[[nodiscard]] Outline flowClosed(std::span<const Point> points);
/// The same for an open line.
[[nodiscard]] Outline flowOpen(std::span<const Point> points, const FlowEnds& ends);
/// Goes on from the end of an outline through the points; the join is a corner unless
/// `ends.leave` follows the outline's own direction.
void flowOn(Outline* outline, std::span<const Point> points, const FlowEnds& ends);

/// A closed smooth outline through `count` points of a curve over one turn, 0 to 1.
[[nodiscard]] Outline traceClosed(int count, const std::function<Point(double)>& curve);

} // namespace orbel::artwork
