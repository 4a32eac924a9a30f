#include "tools/shapes/Bend.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace orbel::artwork {

namespace {

constexpr int STATIONS = 2048;

/// By how much a curve's parameter is moved to see where the curve goes.
constexpr double NUDGE = 1e-5;

Point speed(const Curve& curve, double t) {
    return (curve(t + NUDGE) - curve(t - NUDGE)) * (0.5 / NUDGE);
}

} // namespace

BentLine::BentLine(Along direction) : m_direction(std::move(direction)), m_stations{{}} {
    for (int i = 0; i < STATIONS; ++i) {
        m_stations.push_back(m_stations.back() + run(1.0 * i / STATIONS, (i + 1.0) / STATIONS));
    }
}

Point BentLine::heading(double way) const {
    return turned({1, 0}, m_direction(way));
}

/// Simpson's rule: a station is so near the next that nothing better is needed.
Point BentLine::run(double from, double to) const {
    return (heading(from) + heading((from + to) / 2) * 4 + heading(to)) * ((to - from) / 6);
}

Point BentLine::at(double way) const {
    const int station = std::clamp(static_cast<int>(way * STATIONS), 0, STATIONS);
    return m_stations[static_cast<std::size_t>(station)] + run(1.0 * station / STATIONS, way);
}

Point BentLine::beside(double way, double distance) const {
    return at(way) + turned(heading(way), 90) * distance;
}

double turnedBy(const Turn& turn, double way) {
    return turn.degrees / 2 * (1 + std::erf((way - turn.at) / turn.spread));
}

void followOn(Outline* outline, int pieces, const Curve& curve, double from, double to) {
    const double step = (to - from) / pieces;
    for (int i = 0; i < pieces; ++i) {
        const double t = from + step * i;
        const Point end = curve(t + step);
        outline->curveTo(outline->end() + speed(curve, t) * (step / 3),
                         end - speed(curve, t + step) * (step / 3), end);
    }
}

Outline follow(int pieces, const Curve& curve, double from, double to) {
    Outline outline{curve(from), {}, false};
    followOn(&outline, pieces, curve, from, to);
    return outline;
}

Outline followClosed(int pieces, const Curve& curve) {
    Outline outline = follow(pieces, curve, 0, 1);
    outline.cubics.back().end = outline.start;
    outline.closed = true;
    return outline;
}

} // namespace orbel::artwork
