#pragma once

#include "shapes/PathModel.h"

#include <limits>

namespace orbel::test {

/// What the drawing of one outline can be held against, in the file's own units.
struct OutlineMeasures {
    /// Places where the line turns by more than half a degree at once, the ends of an open one
    /// aside.
    int corners = 0;
    /// How often the line goes over from bending to one side to bending to the other.
    int swings = 0;
    /// How often the direction of a closed outline goes round, clockwise positive: once where it
    /// does not cross itself.
    int turns = 0;
    /// The area that a closed outline runs round clockwise, less what it runs round the other way.
    double area = 0.0;
    /// Of the tightest bend; infinite where everything is straight.
    double smallestRadius = std::numeric_limits<double>::infinity();
    /// How far any control stands outside the box of its cubic's two ends: where cubics are cut at
    /// their extremes, next to nothing.
    double overhang = 0.0;
};

[[nodiscard]] OutlineMeasures measured(const PluginPath_Impl::Vx_PathOutline& outline);

/// The smallest distance between two lines of a drawing: of different outlines, or of one where the
/// way along it from the one place to the other is four times the way across and meets no corner.
/// 0 where lines cross or touch, infinite where there are no two.
[[nodiscard]] double smallestGap(const PluginPath_Impl& path);

} // namespace orbel::test
