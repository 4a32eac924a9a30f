#include "tools/shapes/Bend.h"
#include "tools/shapes/Drawings.h"
#include "tools/shapes/Flow.h"

#include <cmath>

namespace orbel::artwork {

namespace {

double wave(double turns) {
    return std::cos(2 * PI * turns);
}

/// A closed line round the origin whose distance from it is given over one turn.
Outline round(int points, const std::function<double(double)>& radius) {
    return traceClosed(points, [&](double t) { return onClock({}, radius(t), 360 * t); });
}

/// A closed line of length 1, from its top, whose direction swings about that of a circle.
Outline ring(int pieces, const Along& swing) {
    const BentLine line([&](double t) { return 360 * t + swing(t); });
    return followClosed(pieces, [&](double t) { return line.at(t); });
}

double swing(double turns) {
    return std::sin(2 * PI * turns);
}

/// A line that goes round once while it turns three times: the two loops that it throws inwards
/// link.
Outline doubleLoops() {
    return followClosed(
        24, [](double t) { return onClock({}, 1, 360 * t) + onClock({}, 1.3, 3 * 360 * t); });
}

/// Six bends, the middle ones longest and deepest; the ends run out straight.
Outline openSquiggle() {
    const BentLine line([](double t) {
        const double depth = 82 + 32 * std::pow(std::sin(PI * t), 2);
        const double turns = 3 * (t + 0.7 * swing(t) / (2 * PI));
        return -depth * wave(turns);
    });
    return follow(
        36, [&](double t) { return line.at(t); }, 0, 1);
}

Outline scallopedRing() {
    return round(40, [](double t) { return 90 + 10 * wave(10 * t); });
}

/// Four ripples to each quarter, the one on the axis drawn out to a point.
Outline rippledQuatrefoil() {
    return ring(96, [](double t) { return 46 * swing(4 * t) + 44 * swing(12 * t); });
}

Outline amoeba() {
    const Point points[] = {{-8, -96}, {22, -70}, {60, -86},  {84, -54},  {62, -20}, {92, 14},
                            {78, 58},  {40, 50},  {20, 88},   {-20, 92},  {-34, 56}, {-74, 66},
                            {-92, 30}, {-62, 2},  {-84, -38}, {-56, -66}, {-34, -58}};
    return flowClosed(points);
}

/// Round puffs between notches, bulging a little over half a circle at most.
Outline cloud() {
    const Point notches[] = {{-52, -36}, {-8, -62}, {44, -52}, {82, -16}, {84, 26},
                             {46, 48},   {-2, 54},  {-50, 48}, {-86, 24}, {-84, -14}};
    Outline outline{notches[0], {}, false};
    const std::size_t count = std::size(notches);
    for (std::size_t i = 0; i < count; ++i) {
        const Point from = notches[i];
        const Point to = notches[(i + 1) % count];
        const Point chord = to - from;
        const Point centre = lerp(from, to, 0.5) + Point{-chord.y, chord.x} * 0.08;
        outline.arcTo(centre, to, true);
    }
    outline.close();
    return outline;
}

/// A square with soft corners, and waves that are equally long along the sides and round the
/// corners.
Outline wavySquare() {
    return ring(192, [](double t) {
        double square = -180 - 320 * t;
        for (int corner = -2; corner < 6; ++corner) {
            square += turnedBy({(corner + 0.5) / 4, 80, 0.05}, t);
        }
        return square + 20 + 58 * swing(24 * t);
    });
}

/// A worm: a tube with round ends about a line that winds, fattest in the middle.
Outline worm() {
    const BentLine spine([](double t) { return -103 * wave(2.0 * t); });
    const auto side = [&](double right) {
        return [&spine, right](double t) {
            return spine.beside(t, right * (0.016 + 0.014 * std::pow(std::sin(PI * t), 2)));
        };
    };
    Outline outline = follow(32, side(-1), 0, 1);
    outline.arcTo(spine.at(1), side(1)(1), true);
    followOn(&outline, 32, side(1), 1, 0);
    outline.arcTo(spine.at(0), outline.start, true);
    outline.closed = true;
    return outline;
}

/// A ring drawn without lifting the pen, with a loop thrown outwards nine times.
Outline loopedRing() {
    return traceClosed(
        108, [](double t) { return onClock({}, 74, 360 * t) + onClock({}, 26, -360 * 8 * t); });
}

/// Deep fingers with round ends: the line runs ahead on the way out and waits at the ends.
Outline fingeredRing() {
    constexpr int FINGERS = 11;
    return traceClosed(FINGERS * 10, [](double t) {
        const double turn = t + 0.0082 * std::sin(4 * PI * FINGERS * t);
        return onClock({}, 70 + 30 * wave(FINGERS * t), 360 * turn);
    });
}

} // namespace

std::vector<Drawing> squiggleDrawings() {
    return {
        {"Double Loops", {doubleLoops()}},          {"Squiggle Line Open 01", {openSquiggle()}},
        {"Squiggle Outline 01", {scallopedRing()}}, {"Squiggle Outline 02", {rippledQuatrefoil()}},
        {"Squiggle Outline 03", {amoeba()}},        {"Squiggle Outline 04", {cloud()}},
        {"Squiggle Outline 05", {wavySquare()}},    {"Squiggle Outline 06", {worm()}},
        {"Squiggle Outline 07", {loopedRing()}},    {"Squiggle Outline 08", {fingeredRing()}},
    };
}

} // namespace orbel::artwork
