#include "tools/shapes/Drawings.h"
#include "tools/shapes/Flow.h"

#include <algorithm>
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

/// A tongue of paint that swells to a drop at its tip.
struct Tongue {
    double degrees;
    double distance; ///< of the drop's middle
    double drop;     ///< radius
    double neck;     ///< half the width where it is thinnest
    double puddle;   ///< how far the puddle's rim lies from the middle, clockwise of the tongue
};

/// Where the outline passes, which way, and how far the controls lie before and behind.
struct Pass {
    Point place;
    Point way;
    double before;
    double behind;
};

Outline passing(const std::vector<Pass>& passes) {
    Outline outline{passes.front().place, {}, true};
    for (std::size_t i = 0; i < passes.size(); ++i) {
        const Pass& from = passes[i];
        const Pass& to = passes[(i + 1) % passes.size()];
        outline.curveTo(from.place + from.way * from.behind, to.place - to.way * to.before,
                        to.place);
    }
    return outline;
}

constexpr double ROUND = 0.5523; // controls of a quarter circle, in radii

/// Up to the tip of a tongue and down again; `rim` is that of the puddle around it.
void passTongue(const Tongue& t, double rim, std::vector<Pass>* passes) {
    const Point out = turned({0, -1}, t.degrees);
    const Point aside = turned({1, 0}, t.degrees);
    const auto place = [&](double along, double across) { return out * along + aside * across; };
    const double length = t.distance - rim;
    const double neckAt = rim + (length > 60 ? 0.42 : 0.36) * length;
    const double foot = 0.62 * (neckAt - rim + 4);
    const double swell = t.distance - neckAt;
    const double quarter = ROUND * t.drop;
    const Point back = out * -1;
    passes->push_back({place(neckAt, -t.neck), out, foot, 0.45 * swell});
    passes->push_back({place(t.distance, -t.drop), out, 0.42 * swell, quarter});
    passes->push_back({place(t.distance + t.drop, 0), aside, quarter, quarter});
    passes->push_back({place(t.distance, t.drop), back, quarter, 0.42 * swell});
    passes->push_back({place(neckAt, t.neck), back, 0.45 * swell, foot});
}

/// Paint thrown at a wall: a round puddle, and tongues of every length out of it.
Outline splat() {
    const Tongue tongues[] = {{4, 206, 22, 10, 112},   {44, 146, 15, 11, 108},
                              {79, 188, 19, 10, 110},  {117, 152, 14, 11, 106},
                              {150, 214, 23, 10, 110}, {191, 148, 15, 11, 108},
                              {226, 196, 20, 10, 112}, {262, 142, 14, 11, 106},
                              {297, 212, 21, 10, 110}, {331, 150, 14, 10.5, 110}};
    const std::size_t count = std::size(tongues);
    std::vector<Pass> passes;
    for (std::size_t i = 0; i < count; ++i) {
        const Tongue& t = tongues[i];
        passTongue(t, std::max(t.puddle, tongues[(i + count - 1) % count].puddle), &passes);
        const double next = tongues[(i + 1) % count].degrees + (i + 1 == count ? 360 : 0);
        const double middle = (t.degrees + next) / 2;
        const double half = (next - t.degrees) / 2 * PI / 180 * t.puddle;
        const double reach = 0.6 * std::max(half - 10, 8.0);
        passes.push_back({onClock({}, t.puddle, middle), turned({1, 0}, middle), reach, reach});
    }
    std::rotate(passes.begin(), passes.begin() + 2, passes.end()); // from a tip
    return passing(passes);
}

/// A drop on its way out, the longer the faster.
Outline drop(double degrees, double distance, double along, double across) {
    return mapped(circle({}, 1), [&](Point p) {
        return turned({p.x * across, p.y * along - distance}, degrees);
    });
}

std::vector<Outline> wildSplat() {
    return {splat(),
            drop(24, 212, 16, 12),
            drop(60, 206, 13, 13),
            drop(98, 206, 12, 10),
            drop(171, 208, 17, 12),
            drop(208, 206, 12, 12),
            drop(245, 192, 11, 10),
            drop(279, 196, 15, 11),
            drop(318, 222, 12, 11)};
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
