#include "tools/shapes/Bend.h"
#include "tools/shapes/Drawings.h"
#include "tools/shapes/Flow.h"

#include <algorithm>
#include <cmath>

namespace orbel::artwork {

namespace {

/// One petal pointing up from near the origin, as points of its left side from root to tip and of
/// its right side back; turned into place.
Outline petal(std::span<const Point> left, double degrees) {
    std::vector<Point> points;
    points.reserve(2 * left.size());
    for (const Point& p : left) {
        points.push_back(turned(p, degrees));
    }
    for (std::size_t i = left.size() - 1; i-- > 1;) {
        points.push_back(turned({-left[i].x, left[i].y}, degrees));
    }
    Outline outline{points.front(), {}, false};
    points.push_back(points.front());
    flowOn(&outline, std::span(points).subspan(1),
           {turned({-0.55, -1}, degrees), turned({-0.55, 1}, degrees)});
    outline.close();
    return outline;
}

std::vector<Outline> petals() {
    const Point side[] = {{0, -20}, {-17, -52}, {-22, -76}, {0, -100}};
    constexpr int PETALS = 8;
    std::vector<Outline> flower;
    flower.reserve(PETALS);
    for (int i = 0; i < PETALS; ++i) {
        flower.push_back(petal(side, 360.0 * i / PETALS));
    }
    return flower;
}

/// A petal that stands on the origin: straight sides, two shoulders, and between them an arch whose
/// rim is crimped.
Outline wrinkledPetal() {
    constexpr double SIDES = 40.4; ///< degrees from upright at which the sides leave the root
    constexpr double SHOULDER = 80;
    constexpr double ARCH = 60;
    const BentLine line([](double t) {
        const double calm = std::cos(PI * std::min(std::abs(t - 0.5) / 0.48, 0.5));
        return -90 - SIDES + (180 + 2 * SIDES - 2 * SHOULDER - ARCH) * t +
               turnedBy({0.3, SHOULDER, 0.07}, t) + turnedBy({0.5, ARCH, 0.12}, t) +
               turnedBy({0.7, SHOULDER, 0.07}, t) +
               52 * calm * calm * std::sin(2 * PI * 13 * (t - 0.5));
    });
    const Point drift = line.at(1);
    Outline outline = follow(
        64, [&](double t) { return line.at(t) - drift * t; }, 0, 1);
    outline.cubics.back().end = outline.start;
    outline.closed = true;
    return outline;
}

std::vector<Outline> wrinkledPetals() {
    const Outline upright = wrinkledPetal();
    std::vector<Outline> flower{circle({}, 0.045)};
    for (int i = 0; i < 5; ++i) {
        flower.push_back(mapped(upright, [&](Point p) {
            return turned({p.x, p.y - 0.075}, 72.0 * i);
        }));
    }
    return flower;
}

} // namespace

std::vector<Drawing> flowerDrawings() {
    return {
        {"Petals", petals()},
        {"Wrinkled Petals", wrinkledPetals()},
    };
}

} // namespace orbel::artwork
