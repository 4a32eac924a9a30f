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

/// Two lying eights in one line, the small one inside the big one. They change over in the
/// crossing, where both run straight and in the same direction.
Outline doubleLoops() {
    return traceClosed(64, [](double t) {
        const double size = t < 0.5 ? 100 : 64;
        const double angle = 4 * PI * t;
        return Point{size * std::sin(angle), -0.6 * size * std::sin(2 * angle)};
    });
}

Outline openSquiggle() {
    const Point points[] = {{0, 8},     {15, -22}, {34, 30},   {58, -40}, {84, 44},
                            {112, -46}, {140, 42}, {166, -34}, {188, 22}, {208, -8}};
    return flowOpen(points, {Point{0.6, -1}, Point{0.6, -1}});
}

Outline scallopedRing() {
    return round(40, [](double t) { return 90 + 10 * wave(10 * t); });
}

Outline rippledCinquefoil() {
    return round(120, [](double t) { return 78 + 13 * wave(5 * t) + 7 * wave(15 * t); });
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

/// A square with soft corners and four waves to a side.
Outline wavySquare() {
    return round(80, [](double t) {
        const double c = std::abs(wave(t));
        const double s = std::abs(std::sin(2 * PI * t));
        const double square = 84 / std::pow(std::pow(c, 5) + std::pow(s, 5), 0.2);
        return square - 7 * wave(20 * t);
    });
}

/// A tube with round ends that goes up and down four times: half circles and straight runs.
Outline meander() {
    constexpr int RUNS = 4;
    constexpr double PITCH = 40;
    constexpr double HALF_WIDTH = 10;
    constexpr double TOP = -44;
    constexpr double BOTTOM = 44;
    const auto x = [](int run) { return PITCH * run; };
    Outline outline{{x(0) - HALF_WIDTH, BOTTOM}, {}, false};
    const auto bend = [&](int from, int to, double side, bool clockwise) {
        const double y = std::max(from, to) % 2 == 1 ? TOP : BOTTOM;
        outline.lineTo({x(from) + side, y});
        outline.arcTo({(x(from) + x(to)) / 2, y}, {x(to) - side, y}, clockwise);
    };
    for (int run = 0; run + 1 < RUNS; ++run) {
        bend(run, run + 1, run % 2 == 0 ? -HALF_WIDTH : HALF_WIDTH, run % 2 == 0);
    }
    outline.lineTo({x(RUNS - 1) + HALF_WIDTH, BOTTOM});
    outline.arcTo({x(RUNS - 1), BOTTOM}, {x(RUNS - 1) - HALF_WIDTH, BOTTOM}, true);
    for (int run = RUNS - 1; run > 0; --run) {
        bend(run, run - 1, run % 2 == 1 ? -HALF_WIDTH : HALF_WIDTH, run % 2 == 0);
    }
    outline.lineTo({x(0) + HALF_WIDTH, BOTTOM});
    outline.arcTo({x(0), BOTTOM}, outline.start, true);
    outline.close();
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
        {"Squiggle Outline 01", {scallopedRing()}}, {"Squiggle Outline 02", {rippledCinquefoil()}},
        {"Squiggle Outline 03", {amoeba()}},        {"Squiggle Outline 04", {cloud()}},
        {"Squiggle Outline 05", {wavySquare()}},    {"Squiggle Outline 06", {meander()}},
        {"Squiggle Outline 07", {loopedRing()}},    {"Squiggle Outline 08", {fingeredRing()}},
    };
}

} // namespace orbel::artwork
