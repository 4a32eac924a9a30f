#include "tools/shapes/Drawings.h"
#include "tools/shapes/Flow.h"

#include <cmath>

namespace orbel::artwork {

namespace {

/// One petal pointing up from near the origin, as points of its right side from root to tip and of
/// its left side back; turned into place.
Outline petal(std::span<const Point> right, double degrees) {
    std::vector<Point> points;
    points.reserve(2 * right.size());
    for (const Point& p : right) {
        points.push_back(turned(p, degrees));
    }
    for (std::size_t i = right.size() - 1; i-- > 1;) {
        points.push_back(turned({-right[i].x, right[i].y}, degrees));
    }
    Outline outline{points.front(), {}, false};
    points.push_back(points.front());
    flowOn(&outline, std::span(points).subspan(1),
           {turned({0.55, -1}, degrees), turned({0.55, 1}, degrees)});
    outline.close();
    return outline;
}

std::vector<Outline> petals() {
    const Point side[] = {{0, -20}, {17, -52}, {22, -76}, {0, -100}};
    constexpr int PETALS = 8;
    std::vector<Outline> flower;
    flower.reserve(PETALS);
    for (int i = 0; i < PETALS; ++i) {
        flower.push_back(petal(side, 360.0 * i / PETALS));
    }
    return flower;
}

/// A petal whose rim is crimped, deeper towards its end.
Outline wrinkledPetal(double degrees) {
    constexpr int WRINKLES = 6;
    std::vector<Point> points;
    const auto rim = [](double t, double out) {
        const double angle = PI * (t - 0.5);
        return Point{(37 + out) * std::sin(angle), -62 - (36 + out) * std::cos(angle)};
    };
    for (int i = 0; i <= 2 * WRINKLES; ++i) {
        const double t = static_cast<double>(i) / (2 * WRINKLES);
        points.push_back(turned(rim(0.06 + 0.88 * t, i % 2 == 0 ? -3.4 : 3.4), degrees));
    }
    points.push_back(turned({0, -14}, degrees));
    Outline outline{points.back(), {}, false};
    flowOn(&outline, points, {turned({-0.75, -1}, degrees), turned({-0.75, 1}, degrees)});
    outline.close();
    return outline;
}

std::vector<Outline> wrinkledPetals() {
    std::vector<Outline> flower{circle({}, 11)};
    for (int i = 0; i < 5; ++i) {
        flower.push_back(wrinkledPetal(72.0 * i));
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
