#include "tools/shapes/Drawings.h"
#include "tools/shapes/Flow.h"
#include "tools/shapes/Regular.h"

#include <cmath>

namespace orbel::artwork {

namespace {

Outline alignedStar(int tips, int skip) {
    return polygon(starPolygon(tips, REACH, REACH * notchOfAlignedStar(tips, skip)));
}

/// A wheel rolling inside a ring five times to its three: five arms in one line that loops at every
/// tip and crosses itself in between.
Outline loopedStar() {
    return traceClosed(60, [](double t) {
        const double angle = 3 * 360 * t;
        return onClock({}, 2, angle) + onClock({}, 4.3, -angle * 2 / 3);
    });
}

/// A star whose edges ripple, more in their middle than towards tip and notch.
Outline squigglyStar() {
    const std::vector<Point> corners = starPolygon(5, 100, 46);
    constexpr int WAVES = 2;
    constexpr int STEPS = WAVES * 4;
    std::vector<Point> points;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const Point from = corners[i];
        const Point edge = corners[(i + 1) % corners.size()] - from;
        const Point normal = Point{edge.y, -edge.x} * (1 / length(edge));
        for (int k = 0; k < STEPS; ++k) {
            const double t = static_cast<double>(k) / STEPS;
            const double swing =
                (i % 2 == 0 ? 7 : -7) * std::sin(PI * t) * std::sin(2 * PI * WAVES * t);
            points.push_back(from + edge * t + normal * swing);
        }
    }
    return flowClosed(points);
}

/// Five round-tipped arms that lean further the further out they reach.
Outline swirledStarfish() {
    const auto place = [](double radius, double degrees) {
        return onClock({}, radius, degrees + 0.5 * radius);
    };
    std::vector<Point> points;
    for (int arm = 0; arm < 5; ++arm) {
        const double axis = 72.0 * arm;
        points.push_back(place(35, axis - 36));
        points.push_back(place(58, axis - 17));
        points.push_back(place(86, axis - 8));
        points.push_back(place(98, axis));
        points.push_back(place(87, axis + 8));
        points.push_back(place(60, axis + 17));
    }
    return flowClosed(points);
}

} // namespace

std::vector<Drawing> starDrawings() {
    return {
        {"Basic Star", {alignedStar(5, 2)}},
        {"Eleven Point Star", {alignedStar(11, 4)}},
        {"Funky star", {loopedStar()}},
        {"Squiggly Star", {squigglyStar()}},
        {"Swirled Starfish", {swirledStarfish()}},
    };
}

} // namespace orbel::artwork
