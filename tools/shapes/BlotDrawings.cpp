#include "tools/shapes/Drawings.h"
#include "tools/shapes/Flow.h"

#include <cmath>

namespace orbel::artwork {

namespace {

/// Equal round lobes about a centre, run together by arcs that touch neighbours from outside.
struct Clover {
    Point centre;
    int lobes = 0;
    double distance = 0; ///< of a lobe's own centre
    double lobe = 0;     ///< radius
    double fillet = 0;   ///< radius
    double degrees = 0;  ///< clock angle of the first lobe
};

Outline drawn(const Clover& c) {
    const double half = 180.0 / c.lobes;
    const double sine = std::sin(half * PI / 180);
    const double reach = c.lobe + c.fillet;
    const double middle = c.distance * std::cos(half * PI / 180) +
                          std::sqrt(reach * reach - c.distance * c.distance * sine * sine);
    const auto lobeAt = [&](int i) {
        return onClock(c.centre, c.distance, c.degrees + 2 * half * i);
    };
    const auto filletAt = [&](int i) {
        return onClock(c.centre, middle, c.degrees + 2 * half * i + half);
    };
    const auto touch = [&](int lobe, int fillet) {
        return lerp(lobeAt(lobe), filletAt(fillet), c.lobe / reach);
    };
    Outline outline{touch(0, -1), {}, false};
    for (int i = 0; i < c.lobes; ++i) {
        outline.arcTo(lobeAt(i), touch(i, i), true);
        outline.arcTo(filletAt(i), i + 1 == c.lobes ? outline.start : touch(i + 1, i), false);
    }
    outline.close();
    return outline;
}

/// The big blot in the middle, the small ones round it, clockwise; each lies as near to the big one
/// as to its two neighbours.
std::vector<Outline> geometricBlots() {
    const Clover blots[] = {
        {{0, 0}, 5, 30, 17, 13, 0},
        {{5.90, -84.36}, 2, 14, 13.5, 14, 40},
        {{53.86, -57.38}, 3, 17, 14.5, 11, 40},
        {{84.02, -9.14}, 2, 14.5, 13, 14, 62},
        {{66.62, 55.15}, 4, 18, 13.5, 10, 0},
        {{12.23, 81.26}, 2, 14, 13.5, 14, -8},
        {{-45.08, 73.85}, 3, 17, 14.5, 11, -10},
        {{-68.59, 5.43}, 2, 15, 13, 15, -28},
        {{-59.81, -60.49}, 4, 18, 13.5, 10, -10},
    };
    std::vector<Outline> outlines;
    for (const Clover& blot : blots) {
        outlines.push_back(drawn(blot));
    }
    return outlines;
}

/// A bean: one lobe larger than the other, and a hollow between them.
Outline kidney() {
    const Point points[] = {{48, -64}, {100, -6}, {66, 54},   {-6, 76},
                            {-78, 46}, {-94, -6}, {-54, -42}, {-6, -32}};
    return mapped(flowClosed(points), [](Point p) { return turned(p, -24); });
}

struct Finger {
    double degrees;
    double length;
    double neck; ///< half the width where it is thinnest
    double bulb; ///< radius of its end
};

/// Paint thrown at a wall: a big puddle, and fingers of every length and thickness out of it.
Outline splat() {
    const Finger fingers[] = {{6, 110, 6, 10},    {36, 87, 8, 9},    {62, 102, 6, 9},
                              {101, 86, 10, 11},  {133, 114, 7, 12}, {160, 87, 7, 8},
                              {187, 98, 8, 11.5}, {225, 106, 6, 10}, {252, 86, 8, 8.5},
                              {285, 97, 9, 12.5}, {318, 104, 6, 9},  {342, 87, 6.5, 7.5}};
    const std::size_t count = std::size(fingers);
    std::vector<Point> points;
    for (std::size_t i = 0; i < count; ++i) {
        const Finger& f = fingers[i];
        const auto place = [&](double out, double aside) {
            return turned({aside, -out}, f.degrees);
        };
        const double bulbAt = f.length - f.bulb;
        const double neckAt = bulbAt - 0.3 * (bulbAt - 50);
        points.push_back(place(f.length, 0));
        points.push_back(place(bulbAt, f.bulb));
        points.push_back(place(neckAt, f.neck));
        const double next = fingers[(i + 1) % count].degrees + (i + 1 == count ? 360 : 0);
        points.push_back(onClock({}, 78 - 0.36 * (next - f.degrees), (f.degrees + next) / 2));
        const Finger& g = fingers[(i + 1) % count];
        const double nextBulb = g.length - g.bulb;
        points.push_back(turned({-g.neck, 0.3 * (nextBulb - 50) - nextBulb}, g.degrees));
        points.push_back(turned({-g.bulb, -nextBulb}, g.degrees));
    }
    return flowClosed(points);
}

/// A drop on its way out, the longer the faster.
Outline drop(double degrees, double distance, double size, double stretch) {
    return mapped(circle({}, size), [&](Point p) {
        return turned({p.x, p.y * stretch - distance}, degrees);
    });
}

std::vector<Outline> wildSplat() {
    return {splat(),
            drop(7, 130, 6, 1.5),
            drop(48.5, 101, 5, 1.1),
            drop(62, 120, 5.5, 1.3),
            drop(82, 96, 5.5, 1),
            drop(133.5, 135, 6.5, 1.5),
            drop(207, 100, 5, 1.1),
            drop(225.5, 126, 6, 1.4),
            drop(268, 100, 5.5, 1.1),
            drop(318.5, 122, 5, 1.4)};
}

} // namespace

std::vector<Drawing> blotDrawings() {
    return {
        {"Geometric Blots", geometricBlots()},
        {"Kidney 01", {kidney()}},
        {"Wild Splat", wildSplat()},
    };
}

} // namespace orbel::artwork
