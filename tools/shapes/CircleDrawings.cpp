#include "tools/shapes/Drawings.h"
#include "tools/shapes/Regular.h"

#include <algorithm>
#include <cmath>

namespace orbel::artwork {

namespace {

/// A disc with round holes cut out of it: the rim, the hub, then the ring of holes clockwise.
std::vector<Outline> circleCutout() {
    std::vector<Outline> outlines{circle({}, 100), circle({}, 24)};
    for (int i = 0; i < 7; ++i) {
        const double degrees = 360.0 * i / 7;
        outlines.push_back(circleFrom(onClock({}, 63, degrees), 19, degrees));
    }
    return outlines;
}

std::vector<Outline> concentricCircles() {
    std::vector<Outline> rings;
    for (int i = 1; i <= 6; ++i) {
        rings.push_back(circle({}, i));
    }
    return rings;
}

/// Seven circles, and rings about them that grow outwards as they must to stay equally close to one
/// another; every ring stands in the gaps of the one inside it.
std::vector<Outline> lotsOfCircles() {
    constexpr int RINGS = 3;
    constexpr int TO_A_RING = 12;
    constexpr double FULL = 0.68;
    const double growth = std::exp(PI / TO_A_RING * std::sqrt(3.0));
    const double smallest = FULL * std::sin(PI / TO_A_RING);
    std::vector<Outline> circles{circle({}, smallest)};
    for (int i = 0; i < 6; ++i) {
        circles.push_back(circle(onClock({}, 0.5, 60.0 * i), smallest));
    }
    for (int ring = 0; ring < RINGS; ++ring) {
        const double size = std::pow(growth, ring);
        for (int i = 0; i < TO_A_RING; ++i) {
            const double degrees = 360.0 / TO_A_RING * (i + (ring + 1) % 2 * 0.5);
            circles.push_back(circle(onClock({}, size, degrees), size * smallest));
        }
    }
    return circles;
}

/// Two arcs between the same two tips: from the lower one up the back, and down the hollow.
Outline moon() {
    constexpr double SHADOW = 82;
    const Point centre{46, 0};
    const double along = (100 * 100 - SHADOW * SHADOW + 46 * 46) / (2.0 * 46);
    const double up = std::sqrt(100 * 100 - along * along);
    Outline outline{{along, up}, {}, false};
    outline.arcTo({}, {along, -up}, true);
    outline.arcTo(centre, {along, up}, false);
    outline.close();
    return mapped(outline, [](Point p) { return turned(p, -18); });
}

struct Disc {
    Point centre;
    double radius;
};

double room(const std::vector<Disc>& discs, Point centre) {
    double smallest = 100 - length(centre);
    for (const Disc& other : discs) {
        smallest = std::min(smallest, length(centre - other.centre) - other.radius);
    }
    return smallest;
}

/// Discs of every size in a round field, big ones first, each thrown where there is most room;
/// stroked from the middle outwards.
std::vector<Outline> randomCircles() {
    Dice dice(8);
    std::vector<Disc> discs;
    for (const double radius : {27.0, 22.0, 20.0, 17.0, 15.0, 13.0, 12.0, 11.0, 10.0, 9.0, 8.0,
                                7.5,  7.0,  6.5,  6.0,  5.5,  5.0,  4.5,  4.5,  4.0,  4.0}) {
        Disc best{{}, radius};
        double most = -1e9;
        for (int throws = 0; throws < 700; ++throws) {
            const Point centre =
                onClock({}, (100 - radius) * std::sqrt(dice.between(0, 1)), dice.between(0, 360));
            if (room(discs, centre) > most) {
                most = room(discs, centre);
                best.centre = centre;
            }
        }
        discs.push_back(best);
    }
    std::sort(discs.begin(), discs.end(),
              [](const Disc& a, const Disc& b) { return length(a.centre) < length(b.centre); });
    std::vector<Outline> circles;
    circles.reserve(discs.size());
    for (const Disc& disc : discs) {
        circles.push_back(circle(disc.centre, disc.radius));
    }
    return circles;
}

/// Rings from the inside out, then the sight lines clockwise, long ones at the quarters.
std::vector<Outline> targetLines() {
    std::vector<Outline> outlines{circle({}, 12), circle({}, 36), circle({}, 60)};
    for (int i = 0; i < 24; ++i) {
        const double inner = i % 6 == 0 ? 24 : (i % 2 == 0 ? 72 : 78);
        const double outer = i % 6 == 0 ? 100 : (i % 2 == 0 ? 92 : 88);
        outlines.push_back(line(onClock({}, inner, 15.0 * i), onClock({}, outer, 15.0 * i)));
    }
    return outlines;
}

} // namespace

std::vector<Drawing> circleDrawings() {
    return {
        {"Circle Cutout", circleCutout()},    {"Concentric Circles", concentricCircles()},
        {"Lots of Circles", lotsOfCircles()}, {"Moon", {moon()}},
        {"Random Circles", randomCircles()},  {"Target Lines", targetLines()},
    };
}

} // namespace orbel::artwork
