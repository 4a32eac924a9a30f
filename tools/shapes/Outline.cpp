#include "tools/shapes/Outline.h"

#include <algorithm>
#include <cmath>

namespace orbel::artwork {

namespace {

/// Cuts nearer than this to an end of a cubic, or to one another, would only leave crumbs.
constexpr double SHORTEST_PIECE = 0.01;

double radiansOf(Point p) {
    return std::atan2(p.y, p.x);
}

Point perpendicular(Point p) {
    return {-p.y, p.x};
}

/// The parameters at which one coordinate of a cubic stands still.
void addExtremes(double p0, double p1, double p2, double p3, std::vector<double>* cuts) {
    const double a = p3 - 3 * p2 + 3 * p1 - p0;
    const double b = 2 * (p2 - 2 * p1 + p0);
    const double c = p1 - p0;
    const auto add = [&](double t) {
        if (t > SHORTEST_PIECE && t < 1 - SHORTEST_PIECE) {
            cuts->push_back(t);
        }
    };
    if (std::abs(a) < 1e-9) {
        if (std::abs(b) > 1e-9) {
            add(-c / b);
        }
        return;
    }
    const double root = b * b - 4 * a * c;
    if (root > 0) {
        add((-b - std::sqrt(root)) / (2 * a));
        add((-b + std::sqrt(root)) / (2 * a));
    }
}

/// Appends the first part of a cubic to an outline and returns the rest.
Cubic cutOff(Outline* outline, const Cubic& cubic, double t) {
    const Point a = lerp(outline->end(), cubic.control1, t);
    const Point b = lerp(cubic.control1, cubic.control2, t);
    const Point c = lerp(cubic.control2, cubic.end, t);
    const Point ab = lerp(a, b, t);
    const Point bc = lerp(b, c, t);
    outline->curveTo(a, ab, lerp(ab, bc, t));
    return {bc, c, cubic.end};
}

} // namespace

double length(Point p) {
    return std::hypot(p.x, p.y);
}

Point lerp(Point a, Point b, double t) {
    return a + (b - a) * t;
}

Point onClock(Point centre, double radius, double degrees) {
    return centre + turned({0, -radius}, degrees);
}

Point turned(Point p, double degrees) {
    const double c = std::cos(degrees * PI / 180.0);
    const double s = std::sin(degrees * PI / 180.0);
    return {p.x * c - p.y * s, p.x * s + p.y * c};
}

void Outline::lineTo(Point to) {
    const Point from = end();
    curveTo(lerp(from, to, 1.0 / 3.0), lerp(from, to, 2.0 / 3.0), to);
}

void Outline::arcTo(Point centre, Point to, bool clockwise) {
    const double first = radiansOf(end() - centre);
    double sweep = std::remainder(radiansOf(to - centre) - first, 2 * PI);
    if (clockwise && sweep <= 1e-9) {
        sweep += 2 * PI;
    } else if (!clockwise && sweep >= -1e-9) {
        sweep -= 2 * PI;
    }
    const double radius = length(end() - centre);
    const int pieces = static_cast<int>(std::ceil(std::abs(sweep) / (PI / 2) - 1e-9));
    const double step = sweep / pieces;
    const double handle = 4.0 / 3.0 * std::tan(step / 4);
    for (int i = 1; i <= pieces; ++i) {
        const Point from = end() - centre;
        const double angle = first + step * i;
        const Point next =
            i == pieces ? to - centre : Point{std::cos(angle), std::sin(angle)} * radius;
        curveTo(centre + from + perpendicular(from) * handle,
                centre + next - perpendicular(next) * handle, centre + next);
    }
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

Outline roundedPolygon(std::span<const Point> corners, double radius) {
    Outline outline{lerp(corners.back(), corners.front(), 0.5), {}, false};
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const Point corner = corners[i];
        const Point in = corners[(i + corners.size() - 1) % corners.size()] - corner;
        const Point out = corners[(i + 1) % corners.size()] - corner;
        const Point unitIn = in * (1 / length(in));
        const Point unitOut = out * (1 / length(out));
        const double half =
            std::acos(std::clamp(unitIn.x * unitOut.x + unitIn.y * unitOut.y, -1.0, 1.0)) / 2;
        const double back = radius / std::tan(half);
        const Point middle = unitIn + unitOut;
        const Point centre = corner + middle * (radius / std::sin(half) / length(middle));
        outline.lineTo(corner + unitIn * back);
        outline.arcTo(centre, corner + unitOut * back, in.x * out.y - in.y * out.x < 0);
    }
    outline.close();
    return outline;
}

Outline circle(Point centre, double radius) {
    return circleFrom(centre, radius, 0);
}

Outline circleFrom(Point centre, double radius, double degrees) {
    const Point start = onClock(centre, radius, degrees);
    Outline outline{start, {}, false};
    outline.arcTo(centre, start, true);
    outline.close();
    return outline;
}

Outline mapped(const Outline& outline, const std::function<Point(Point)>& affine) {
    Outline result{affine(outline.start), {}, outline.closed};
    for (const Cubic& cubic : outline.cubics) {
        result.curveTo(affine(cubic.control1), affine(cubic.control2), affine(cubic.end));
    }
    return result;
}

Outline splitAtExtremes(const Outline& outline) {
    Outline result{outline.start, {}, outline.closed};
    for (const Cubic& whole : outline.cubics) {
        const Point from = result.end();
        std::vector<double> cuts;
        addExtremes(from.x, whole.control1.x, whole.control2.x, whole.end.x, &cuts);
        addExtremes(from.y, whole.control1.y, whole.control2.y, whole.end.y, &cuts);
        std::sort(cuts.begin(), cuts.end());
        Cubic rest = whole;
        double done = 0.0;
        for (const double cut : cuts) {
            if (cut - done > SHORTEST_PIECE) {
                rest = cutOff(&result, rest, (cut - done) / (1 - done));
                done = cut;
            }
        }
        result.cubics.push_back(rest);
    }
    return result;
}

} // namespace orbel::artwork
