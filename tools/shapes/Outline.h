#pragma once

#include <functional>
#include <span>
#include <vector>

namespace orbel::artwork {

constexpr double PI = 3.14159265358979323846;

/// A place in a drawing, in its own units; y runs downwards.
struct Point {
    double x = 0.0;
    double y = 0.0;

    friend Point operator+(Point a, Point b) { return {a.x + b.x, a.y + b.y}; }
    friend Point operator-(Point a, Point b) { return {a.x - b.x, a.y - b.y}; }
    friend Point operator*(Point p, double k) { return {p.x * k, p.y * k}; }
};

[[nodiscard]] double length(Point p);
[[nodiscard]] Point lerp(Point a, Point b, double t);
/// The point at a clock angle round a centre: 0 is twelve o'clock, degrees run clockwise.
[[nodiscard]] Point onClock(Point centre, double radius, double degrees);
/// Clockwise, as seen with y downwards.
[[nodiscard]] Point turned(Point p, double degrees);

/// From wherever the outline has got to, through two controls, to `end`.
struct Cubic {
    Point control1;
    Point control2;
    Point end;
};

/// One stroke of the brush, made of cubics and nothing else: a renderer that knows only cubics
/// keeps its geometry exactly.
struct Outline {
    Point start;
    std::vector<Cubic> cubics;
    bool closed = false;

    [[nodiscard]] Point end() const { return cubics.empty() ? start : cubics.back().end; }
    void curveTo(Point control1, Point control2, Point to) {
        cubics.push_back({control1, control2, to});
    }
    /// A straight edge, evenly parametrised.
    void lineTo(Point to);
    /// Round a centre, in steps of a quarter at most. `to` lies as far from the centre as the
    /// outline's end does; where the two are the same point it is a full turn.
    void arcTo(Point centre, Point to, bool clockwise);
    /// Closes with a straight edge where the end is not the start already.
    void close();
};

[[nodiscard]] Outline line(Point from, Point to);
[[nodiscard]] Outline polygon(std::span<const Point> corners);
/// Straight edges joined by arcs; from the middle of the edge between the last corner and the
/// first.
[[nodiscard]] Outline roundedPolygon(std::span<const Point> corners, double radius);
/// A true circle to within 0.03 % of its radius: four cubics, from twelve o'clock, clockwise.
[[nodiscard]] Outline circle(Point centre, double radius);
/// From a clock angle, clockwise.
[[nodiscard]] Outline circleFrom(Point centre, double radius, double degrees);

/// Every point sent through an affine map, which is the same as the whole curve sent through it.
[[nodiscard]] Outline mapped(const Outline& outline, const std::function<Point(Point)>& affine);

/// Cuts every cubic where it turns back in x or y, so that its controls lie in its own box. The
/// curve stays the same.
[[nodiscard]] Outline splitAtExtremes(const Outline& outline);

} // namespace orbel::artwork
