#include "tools/shapes/Flow.h"

#include <cmath>
#include <numeric>

namespace orbel::artwork {

namespace {

using Matrix = std::vector<std::vector<double>>;

double angleOf(Point p) {
    return std::atan2(p.y, p.x);
}

double wrapped(double angle) {
    return std::remainder(angle, 2 * PI);
}

Point polar(double radius, double angle) {
    return Point{std::cos(angle), std::sin(angle)} * radius;
}

/// Solves a dense system whose last column is the right-hand side. The systems of a smooth line are
/// diagonally dominant: no pivoting needed.
std::vector<double> solved(Matrix m) {
    const std::size_t n = m.size();
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t row = 0; row < n; ++row) {
            const double factor = row == i ? 0.0 : m[row][i] / m[i][i];
            for (std::size_t column = i; factor != 0.0 && column <= n; ++column) {
                m[row][column] -= factor * m[i][column];
            }
        }
    }
    std::vector<double> x(n);
    for (std::size_t i = 0; i < n; ++i) {
        x[i] = m[i][n] / m[i][i];
    }
    return x;
}

/// How far a handle reaches, as a fraction of the chord, for a curve that leaves the chord under
/// one angle and meets it again under another: the classic formula for arcs that look round.
double reach(double leaving, double arriving) {
    const double a = std::sqrt(2.0) * (std::sin(leaving) - std::sin(arriving) / 16) *
                     (std::sin(arriving) - std::sin(leaving) / 16) *
                     (std::cos(leaving) - std::cos(arriving));
    const double b = 1 + (std::sqrt(5.0) - 1) / 2 * std::cos(leaving) +
                     (3 - std::sqrt(5.0)) / 2 * std::cos(arriving);
    return (2 + a) / b / 3;
}

/// Chords between consecutive points and, at each point, the turn from one chord into the next.
struct Chords {
    std::vector<double> lengths;
    std::vector<double> angles;
    std::vector<double> turns;

    Chords(std::span<const Point> points, bool closed) {
        const std::size_t count = closed ? points.size() : points.size() - 1;
        for (std::size_t i = 0; i < count; ++i) {
            const Point chord = points[(i + 1) % points.size()] - points[i];
            lengths.push_back(length(chord));
            angles.push_back(angleOf(chord));
        }
        turns.assign(points.size(), 0.0);
        for (std::size_t i = closed ? 0 : 1; i < count; ++i) {
            turns[i] = wrapped(angles[i] - angles[(i + count - 1) % count]);
        }
    }
};

/// Writes the row that makes curvature continue through point `i`.
void continueCurvature(Matrix* m, const Chords& chords, std::size_t i) {
    const std::size_t n = m->size();
    const std::size_t before = (i + n - 1) % n;
    const std::size_t after = (i + 1) % n;
    const double in = 1 / chords.lengths[before % chords.lengths.size()];
    const double out = 1 / chords.lengths[i];
    std::vector<double>& row = (*m)[i];
    row[before] += in;
    row[i] += 2 * in + 2 * out;
    row[after] += out;
    row[n] = -2 * in * chords.turns[i] - out * chords.turns[after];
}

void appendCurves(Outline* outline, std::span<const Point> points, const Chords& chords,
                  const std::vector<double>& leaving) {
    for (std::size_t i = 0; i < chords.lengths.size(); ++i) {
        const std::size_t next = (i + 1) % points.size();
        const double theta = leaving[i];
        const double phi = -chords.turns[next] - leaving[next];
        const double d = chords.lengths[i];
        const double angle = chords.angles[i];
        outline->curveTo(points[i] + polar(d * reach(theta, phi), angle + theta),
                         points[next] - polar(d * reach(phi, theta), angle - phi), points[next]);
    }
}

} // namespace

Outline flowClosed(std::span<const Point> points) {
    const Chords chords(points, true);
    Matrix m(points.size(), std::vector<double>(points.size() + 1));
    for (std::size_t i = 0; i < points.size(); ++i) {
        continueCurvature(&m, chords, i);
    }
    Outline outline{points.front(), {}, false};
    appendCurves(&outline, points, chords, solved(m));
    outline.close();
    return outline;
}

Outline flowOpen(std::span<const Point> points, const FlowEnds& ends) {
    const std::size_t last = points.size() - 1;
    const Chords chords(points, false);
    Matrix m(points.size(), std::vector<double>(points.size() + 1));
    for (std::size_t i = 1; i < last; ++i) {
        continueCurvature(&m, chords, i);
    }
    m[0][0] = 1;
    m[last][last] = 1;
    if (ends.leave) {
        m[0].back() = wrapped(angleOf(*ends.leave) - chords.angles.front());
    } else {
        m[0][1] = 1;
        m[0].back() = -chords.turns[1];
    }
    if (ends.arrive) {
        m[last].back() = wrapped(angleOf(*ends.arrive) - chords.angles.back());
    } else {
        m[last][last - 1] = 1;
    }
    Outline outline{points.front(), {}, false};
    appendCurves(&outline, points, chords, solved(m));
    return outline;
}

void flowOn(Outline* outline, std::span<const Point> points, const FlowEnds& ends) {
    std::vector<Point> through{outline->end()};
    through.insert(through.end(), points.begin(), points.end());
    const Outline more = flowOpen(through, ends);
    outline->cubics.insert(outline->cubics.end(), more.cubics.begin(), more.cubics.end());
}

Outline traceClosed(int count, const std::function<Point(double)>& curve) {
    std::vector<Point> points;
    points.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        points.push_back(curve(static_cast<double>(i) / count));
    }
    return flowClosed(points);
}

} // namespace orbel::artwork
