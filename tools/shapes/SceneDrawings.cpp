#include "tools/shapes/Drawings.h"
#include "tools/shapes/Flow.h"
#include "tools/shapes/Regular.h"

#include <algorithm>
#include <cmath>

namespace orbel::artwork {

namespace {

/// The program's name in one line of pen, with a flourish that runs back under it.
Outline lettering() {
    const Point points[] = {
        // o
        {26, -42},
        {8, -34},
        {1, -14},
        {14, 2},
        {32, -8},
        {37, -28},
        {26, -42},
        {33, -33},
        {50, -35},
        // r
        {63, -46},
        {67, -38},
        {80, -38},
        {80, -14},
        {91, 2},
        {106, -12},
        // b
        {124, -56},
        {127, -96},
        {116, -104},
        {110, -76},
        {109, -20},
        {121, 2},
        {138, -10},
        {139, -32},
        {131, -38},
        {139, -28},
        {156, -26},
        // e
        {173, -36},
        {168, -46},
        {156, -34},
        {155, -12},
        {169, 2},
        {189, -14},
        // l
        {210, -62},
        {213, -98},
        {202, -104},
        {195, -72},
        {195, -18},
        {208, 2},
        {232, -8},
        // flourish
        {262, -6},
        {254, 20},
        {180, 30},
        {96, 29},
        {48, 38},
    };
    const Outline upright = flowOpen(points, {Point{-1, -0.1}, Point{-1, 0.35}});
    return mapped(upright, [](Point p) { return Point{p.x - 0.2 * p.y, p.y}; });
}

/// An iris: the rim, and eight blades that sweep from it to the edge of the opening.
std::vector<Outline> iris() {
    constexpr int BLADES = 8;
    std::vector<Outline> outlines{circle({}, 100)};
    for (int i = 0; i < BLADES; ++i) {
        const double degrees = 360.0 * i / BLADES;
        const Point from = onClock({}, 100, degrees);
        const Point over = onClock({}, 66, degrees + 52);
        const Point to = onClock({}, 38, degrees + 128);
        const Point points[] = {from, over, to};
        outlines.push_back(flowOpen(points, {}));
    }
    return outlines;
}

/// Specks scattered evenly over a wide field; some are several, one over another, and so brighter.
std::vector<Outline> lights() {
    constexpr int COUNT = 40;
    Dice dice(11);
    std::vector<Point> places;
    std::vector<Outline> specks;
    while (places.size() < COUNT) {
        Point best;
        double most = -1;
        for (int throws = 0; throws < 14; ++throws) {
            const Point place{dice.between(0, 900), dice.between(0, 600)};
            double room = 1e9;
            for (const Point& other : places) {
                room = std::min(room, length(place - other));
            }
            if (room > most) {
                most = room;
                best = place;
            }
        }
        places.push_back(best);
        const int layers = 1 + static_cast<int>(2.6 * std::pow(dice.between(0, 1), 2));
        specks.insert(specks.end(), static_cast<std::size_t>(layers), circle(best, 1));
    }
    return specks;
}

/// A wall in running bond: courses from the top, bricks from the left.
std::vector<Outline> bricks() {
    constexpr int COURSES = 13;
    constexpr int BRICKS = 9;
    constexpr double WIDTH = 60;
    constexpr double HEIGHT = 22;
    constexpr double JOINT = 5;
    std::vector<Outline> wall;
    for (int course = 0; course < COURSES; ++course) {
        for (int brick = 0; brick < BRICKS; ++brick) {
            const Point low{(WIDTH + JOINT) * (brick - course % 2 * 0.5),
                            (HEIGHT + JOINT) * course};
            wall.push_back(roundedPolygon(rectangle(low, low + Point{WIDTH, HEIGHT}), 2));
        }
    }
    return wall;
}

} // namespace

std::vector<Drawing> sceneDrawings() {
    std::vector<Drawing> all{
        {"lettering", {lettering()}}, {"iris", iris()}, {"lights", lights()}, {"bricks", bricks()}};
    for (Drawing& drawing : all) {
        fitToSheet(&drawing);
    }
    return all;
}

} // namespace orbel::artwork
