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

/// The big blot in the middle, the small ones round it, clockwise.
std::vector<Outline> geometricBlots() {
    const Clover blots[] = {
        {{0, 0}, 5, 28, 16, 12, 0},      {{6, -77}, 2, 15, 13, 14, 66},
        {{68, -56}, 3, 15, 14, 10, 20},  {{80, 13}, 2, 14, 11, 12, 12},
        {{56, 70}, 4, 17, 13, 9, 22},    {{-10, 80}, 2, 16, 13, 14, 108},
        {{-70, 56}, 3, 16, 14, 11, -14}, {{-80, -10}, 2, 13, 11, 11, 160},
        {{-60, -68}, 4, 16, 12, 8, 10},
    };
    std::vector<Outline> outlines;
    for (const Clover& blot : blots) {
        outlines.push_back(drawn(blot));
    }
    return outlines;
}

Outline kidney() {
    const Point points[] = {{-26, -70}, {30, -58}, {72, -20}, {78, 36},  {42, 68},
                            {10, 40},   {-22, 8},  {-66, -2}, {-78, -40}};
    return flowClosed(points);
}

struct Finger {
    double degrees;
    double length;
    double neck; ///< half the width where it is thinnest
    double bulb; ///< radius of its end
};

/// Paint thrown at a wall: fingers of every length and thickness out of one puddle.
Outline splat() {
    const Finger fingers[] = {{4, 98, 4.4, 9},    {33, 72, 6, 7},      {60, 92, 4, 7.5},
                              {92, 74, 7, 9},     {124, 104, 4.2, 9},  {152, 68, 6, 6.5},
                              {178, 88, 5.4, 10}, {209, 68, 6, 7},     {238, 98, 4, 8},
                              {268, 74, 7, 9},    {299, 96, 4.6, 9.5}, {331, 70, 6, 7}};
    const std::size_t count = std::size(fingers);
    std::vector<Point> points;
    for (std::size_t i = 0; i < count; ++i) {
        const Finger& f = fingers[i];
        const auto place = [&](double out, double aside) {
            return turned({aside, -out}, f.degrees);
        };
        const double neckAt = 0.62 * f.length + 6;
        points.push_back(place(neckAt, -f.neck));
        points.push_back(place(f.length - f.bulb, -f.bulb));
        points.push_back(place(f.length, 0));
        points.push_back(place(f.length - f.bulb, f.bulb));
        points.push_back(place(neckAt, f.neck));
        const double next = fingers[(i + 1) % count].degrees + (i + 1 == count ? 360 : 0);
        points.push_back(onClock({}, i % 2 == 0 ? 46 : 50, (f.degrees + next) / 2));
    }
    return flowClosed(points);
}

/// A drop on its way out, its tail towards the middle.
Outline drop(double degrees, double distance, double size) {
    const auto place = [&](double out, double aside) {
        return turned({aside * size, -distance - out * size}, degrees);
    };
    Outline outline{place(-2.1, 0), {}, false};
    const Point around[] = {place(0, -1), place(1, 0), place(0, 1), outline.start};
    flowOn(&outline, around, {turned({-0.3, -1}, degrees), turned({-0.3, 1}, degrees)});
    outline.close();
    return outline;
}

std::vector<Outline> wildSplat() {
    return {splat(),
            drop(4, 119, 4.5),
            drop(45, 92, 4.2),
            drop(76, 101, 3.4),
            drop(140, 96, 3.4),
            drop(164, 92, 4.2),
            drop(223, 92, 4.4),
            drop(238, 118, 3.6),
            drop(283, 98, 4.2),
            drop(316, 94, 3.6)};
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
