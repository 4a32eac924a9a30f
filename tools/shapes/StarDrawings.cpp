#include "tools/shapes/Bend.h"
#include "tools/shapes/Drawings.h"
#include "tools/shapes/Regular.h"

#include <algorithm>
#include <cmath>

namespace orbel::artwork {

namespace {

Outline alignedStar(int tips, int skip) {
    return polygon(starPolygon(tips, REACH, REACH * notchOfAlignedStar(tips, skip)));
}

/// A star of straight edges whose tips and notches are bends, sharpest in their middle.
struct SoftStar {
    int tips = 0;
    double tipDegrees = 0; ///< how far the line turns round a tip
    double tipSpread = 0;
    double notchSpread = 0;
};

/// From the top of the first tip, once round.
Along direction(const SoftStar& star) {
    return [star](double way) {
        double degrees = -star.tipDegrees / 2;
        for (int i = -1; i <= star.tips + 1; ++i) {
            const double tip = 1.0 * i / star.tips;
            const double notch = (i + 0.5) / star.tips;
            degrees += turnedBy({tip, star.tipDegrees, star.tipSpread}, way);
            degrees +=
                turnedBy({notch, 360.0 / star.tips - star.tipDegrees, star.notchSpread}, way);
        }
        return degrees - 360.0 / star.tips;
    };
}

/// The places at the tips of a star, moved so that their middle is the origin.
Curve centred(const BentLine& line, int tips) {
    Point sum;
    for (int i = 0; i < tips; ++i) {
        sum = sum + line.at(1.0 * i / tips);
    }
    return [line, middle = sum * (1.0 / tips)](double t) { return line.at(t) - middle; };
}

/// Five fat arms, and the same line again on their inside.
std::vector<Outline> funkyStar() {
    const BentLine line(direction({5, 215, 0.055, 0.035}));
    constexpr double INSET = 0.0185;
    return {followClosed(40, [&](double t) { return line.at(t); }),
            followClosed(40, [&](double t) { return line.beside(t, INSET); })};
}

/// A star whose edges ripple, more in their middle than towards tip and notch.
Outline squigglyStar() {
    constexpr int TIPS = 5;
    const Along star = direction({TIPS, 162, 0.021, 0.016});
    const BentLine line([&](double way) {
        const double edge = 2 * TIPS * way;
        const double calm = std::sin(PI * edge);
        return star(way) + 58 * calm * calm * std::sin(3 * PI * edge);
    });
    return followClosed(80, [&](double t) { return line.at(t); });
}

/// Five round arms that come out of a whirl: straight at their tips, the more bent the nearer to
/// the middle.
Outline swirledStarfish() {
    constexpr int ARMS = 5;
    const BentLine straight(direction({ARMS, 200, 0.038, 0.034}));
    const Curve star = centred(straight, ARMS);
    const double reach = length(star(0));
    return followClosed(80, [&](double t) {
        const Point p = star(t);
        const double inwards = std::max(0.0, 1 - length(p) / reach);
        return turned(p, -140 * std::pow(inwards, 1.5));
    });
}

} // namespace

std::vector<Drawing> starDrawings() {
    return {
        {"Basic Star", {alignedStar(5, 2)}},
        {"Eleven Point Star", {alignedStar(11, 4)}},
        {"Funky star", funkyStar()},
        {"Squiggly Star", {squigglyStar()}},
        {"Swirled Starfish", {swirledStarfish()}},
    };
}

} // namespace orbel::artwork
