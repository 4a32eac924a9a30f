#include "tools/shapes/Outline.h"

#include <cmath>

namespace orbel::artwork {

namespace {

/// Handle length of a quarter circle of radius 1.
constexpr double QUARTER = 0.5522847498307936;

} // namespace

double length(Point p) {
    return std::hypot(p.x, p.y);
}

Point lerp(Point a, Point b, double t) {
    return a + (b - a) * t;
}

Point onClock(Point centre, double radius, double degrees) {
    const double angle = degrees * PI / 180.0;
    return centre + Point{std::sin(angle), -std::cos(angle)} * radius;
}

void Outline::lineTo(Point to) {
    const Point from = end();
    curveTo(lerp(from, to, 1.0 / 3.0), lerp(from, to, 2.0 / 3.0), to);
}

void Outline::close() {
    if (length(end() - start) > 1e-9) {
        lineTo(start);
    }
    closed = true;
}

Outline line(Point from, Point to) {
    Outline outline{from, {}, false};
    outline.lineTo(to);
    return outline;
}

Outline polygon(std::span<const Point> corners) {
    Outline outline{corners.front(), {}, false};
    for (const Point& corner : corners.subspan(1)) {
        outline.lineTo(corner);
    }
    outline.close();
    return outline;
}

Outline circle(Point centre, double radius) {
    return ellipse(centre, {radius, radius});
}

Outline ellipse(Point centre, Point radii) {
    const auto at = [&](double x, double y) { return centre + Point{x * radii.x, y * radii.y}; };
    Outline outline{at(0, -1), {}, false};
    outline.curveTo(at(QUARTER, -1), at(1, -QUARTER), at(1, 0));
    outline.curveTo(at(1, QUARTER), at(QUARTER, 1), at(0, 1));
    outline.curveTo(at(-QUARTER, 1), at(-1, QUARTER), at(-1, 0));
    outline.curveTo(at(-1, -QUARTER), at(-QUARTER, -1), at(0, -1));
    outline.close();
    return outline;
}

} // namespace orbel::artwork
