#include "tests/artwork/OutlineMeasures.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <vector>

namespace orbel::test {

namespace {

using Outline = PluginPath_Impl::Vx_PathOutline;

constexpr double CORNER = 0.5 / 180 * M_PI;
constexpr double STRAIGHT = 4000; ///< no bend has a radius like that
constexpr double TOUCHING = 1;
constexpr double FAR = std::numeric_limits<double>::infinity();

struct Vector {
    double x;
    double y;

    friend Vector operator+(Vector a, Vector b) { return {a.x + b.x, a.y + b.y}; }
    friend Vector operator-(Vector a, Vector b) { return {a.x - b.x, a.y - b.y}; }
    friend Vector operator*(double k, Vector v) { return {k * v.x, k * v.y}; }
};

double cross(Vector a, Vector b) {
    return a.x * b.y - a.y * b.x;
}

double length(Vector v) {
    return std::hypot(v.x, v.y);
}

/// A cubic by its four points.
using Cubic = std::array<Vector, 4>;

/// The cubics between the vertices. A closed outline of ours ends where it began: nothing is left
/// to close.
std::vector<Cubic> cubics(const Outline& outline) {
    std::vector<Cubic> all;
    for (std::size_t i = 1; i < outline.vertices.size(); ++i) {
        const Vx_PathVertex& from = outline.vertices[i - 1];
        const Vx_PathVertex& to = outline.vertices[i];
        all.push_back({Vector{from.x, from.y},
                       {from.tanOutX, from.tanOutY},
                       {to.tanInX, to.tanInY},
                       {to.x, to.y}});
    }
    return all;
}

Vector place(const Cubic& c, double t) {
    const double s = 1 - t;
    return s * s * s * c[0] + 3 * s * s * t * c[1] + 3 * s * t * t * c[2] + t * t * t * c[3];
}

/// Clockwise positive; 0 where the bend is so slight that it comes from rounding.
double curvature(const Cubic& c, double t) {
    const double s = 1 - t;
    const Vector speed =
        3 * s * s * (c[1] - c[0]) + 6 * s * t * (c[2] - c[1]) + 3 * t * t * (c[3] - c[2]);
    const Vector change = 6 * s * (c[2] - 2 * c[1] + c[0]) + 6 * t * (c[3] - 2 * c[2] + c[1]);
    const double bend = cross(speed, change) / std::pow(length(speed), 3);
    return std::abs(bend) * STRAIGHT < 1 ? 0 : bend;
}

/// Where a cubic leaves its first point to, though its controls lie on it.
Vector leave(const Cubic& c) {
    const auto* to = std::find_if(c.begin() + 1, c.end() - 1,
                                  [&](Vector control) { return length(control - c[0]) > 0; });
    return *to - c[0];
}

double angle(Vector from, Vector to) {
    return std::atan2(cross(from, to), from.x * to.x + from.y * to.y);
}

double turn(const Cubic& arriving, const Cubic& leaving) {
    const Vector back = leave({arriving[3], arriving[2], arriving[1], arriving[0]});
    return std::abs(angle(-1 * back, leave(leaving)));
}

/// How often the direction goes round in a closed chain of chords.
int turns(const std::vector<Vector>& chords) {
    double sum = 0;
    for (std::size_t i = 0; i < chords.size(); ++i) {
        sum += angle(chords[i], chords[(i + 1) % chords.size()]);
    }
    return static_cast<int>(std::lround(sum / (2 * M_PI)));
}

double beyond(double value, double a, double b) {
    return std::max(std::min(a, b) - value, value - std::max(a, b));
}

/// How far a control stands outside the box of the ends.
double overhang(const Cubic& c) {
    double most = 0;
    for (const Vector control : {c[1], c[2]}) {
        most =
            std::max({most, beyond(control.x, c[0].x, c[3].x), beyond(control.y, c[0].y, c[3].y)});
    }
    return most;
}

/// A place of a drawing, and where along its outline it lies.
struct Station {
    Vector at;
    double way;
    int corners; ///< before it on its outline
};

/// Stations a unit apart or closer.
std::vector<Station> stations(const Outline& outline) {
    std::vector<Station> all;
    double way = 0;
    int corners = 0;
    const std::vector<Cubic> pieces = cubics(outline);
    for (std::size_t piece = 0; piece < pieces.size(); ++piece) {
        const Cubic& c = pieces[piece];
        corners += piece > 0 && turn(pieces[piece - 1], c) > CORNER ? 1 : 0;
        const int steps = static_cast<int>(
            std::ceil(length(c[1] - c[0]) + length(c[2] - c[1]) + length(c[3] - c[2])));
        for (int i = 1; i <= steps; ++i) {
            const Vector at = place(c, 1.0 * i / steps);
            way += length(at - place(c, (i - 1.0) / steps));
            all.push_back({at, way, corners});
        }
    }
    return all;
}

double gapBetween(const std::vector<Station>& some, const std::vector<Station>& others) {
    double smallest = FAR;
    for (const Station& a : some) {
        for (const Station& b : others) {
            if (std::abs(a.at.x - b.at.x) < smallest) {
                smallest = std::min(smallest, length(a.at - b.at));
            }
        }
    }
    return smallest;
}

/// Between places of one outline that the line does not simply lead from one to the other.
double gapWithin(const std::vector<Station>& line, const OutlineMeasures& outline, bool closed) {
    double smallest = FAR;
    for (const Station& a : line) {
        for (const Station& b : line) {
            const double distance = length(a.at - b.at);
            if (distance >= smallest) {
                continue;
            }
            const double along = std::abs(a.way - b.way);
            const double back = closed ? line.back().way - along : FAR;
            const int corners = std::abs(a.corners - b.corners);
            const bool cornered = along < back ? corners > 0 : outline.corners > corners;
            if (!cornered && std::min(along, back) > 4 * distance) {
                smallest = distance;
            }
        }
    }
    return smallest;
}

} // namespace

OutlineMeasures measured(const Outline& outline) {
    constexpr int STEPS = 16;
    OutlineMeasures result;
    const std::vector<Cubic> all = cubics(outline);
    std::vector<Vector> chords;
    double side = 0;
    for (std::size_t i = 0; i < all.size(); ++i) {
        const bool last = i + 1 == all.size();
        const bool ends = last && outline.isOpen;
        result.corners += !ends && turn(all[i], all[last ? 0 : i + 1]) > CORNER ? 1 : 0;
        result.overhang = std::max(result.overhang, overhang(all[i]));
        for (int k = 0; k < STEPS; ++k) {
            const Vector from = place(all[i], 1.0 * k / STEPS);
            chords.push_back(place(all[i], (k + 1.0) / STEPS) - from);
            result.area += cross(from, chords.back()) / 2;
            const double bend = curvature(all[i], (k + 0.5) / STEPS);
            result.smallestRadius = std::min(result.smallestRadius, 1 / std::abs(bend));
            result.swings += bend * side < 0 ? 1 : 0;
            side = bend == 0 ? side : bend;
        }
    }
    result.turns = outline.isOpen ? 0 : turns(chords);
    return result;
}

double smallestGap(const PluginPath_Impl& path) {
    double smallest = FAR;
    std::vector<Station> before;
    for (const Outline& outline : path.outlines()) {
        const std::vector<Station> line = stations(outline);
        smallest = std::min({smallest, gapBetween(line, before),
                             gapWithin(line, measured(outline), !outline.isOpen)});
        before.insert(before.end(), line.begin(), line.end());
    }
    return smallest < TOUCHING ? 0 : smallest;
}

} // namespace orbel::test
