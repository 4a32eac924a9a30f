#include "drawing/CurveFit.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace orbel {

namespace {

constexpr int mostImprovements = 4;

PlanePoint minus(PlanePoint a, PlanePoint b) {
    return {a.x - b.x, a.y - b.y};
}
PlanePoint plus(PlanePoint a, PlanePoint b, double times) {
    return {a.x + b.x * times, a.y + b.y * times};
}
double dot(PlanePoint a, PlanePoint b) {
    return a.x * b.x + a.y * b.y;
}
PlanePoint unit(PlanePoint a) {
    const double length = std::hypot(a.x, a.y);
    return length > 0 ? PlanePoint{a.x / length, a.y / length} : a;
}

/// Fits one run of points without corners: a cubic by least squares, halved where it strays.
class RunFitter {
public:
    RunFitter(double tolerance, OutlineCurve* curve) : m_tolerance(tolerance), m_curve(curve) {}

    // NOLINTNEXTLINE(misc-no-recursion): each half has at least one point less
    void fit(std::span<const PlanePoint> points, PlanePoint leave, PlanePoint arrive) {
        if (points.size() == 2) {
            const double third = distanceOf(points.front(), points.back()) / 3;
            m_curve->segments.push_back({plus(points.front(), leave, third),
                                         plus(points.back(), arrive, third), points.back(), false});
            return;
        }
        std::vector<double> at = lengthsAlong(points);
        std::size_t worst = points.size() / 2;
        for (int i = 0; i < mostImprovements; ++i) {
            const OutlineSegment segment = leastSquares(points, at, leave, arrive);
            const double error = farthest(points, at, segment, &worst);
            if (error <= m_tolerance) {
                m_curve->segments.push_back(segment);
                return;
            }
            if (error > 6 * m_tolerance) {
                break;
            }
            improve(points, segment, &at);
        }
        const PlanePoint along = unit(minus(points[worst + 1], points[worst - 1]));
        fit(points.subspan(0, worst + 1), leave, {-along.x, -along.y});
        fit(points.subspan(worst), along, arrive);
    }

private:
    static std::vector<double> lengthsAlong(std::span<const PlanePoint> points) {
        std::vector<double> at{0.0};
        for (std::size_t i = 1; i < points.size(); ++i) {
            at.push_back(at.back() + distanceOf(points[i - 1], points[i]));
        }
        const double whole = at.back();
        for (double& t : at) {
            t /= whole;
        }
        return at;
    }

    static OutlineSegment leastSquares(std::span<const PlanePoint> points,
                                       const std::vector<double>& at, PlanePoint leave,
                                       PlanePoint arrive) {
        const PlanePoint from = points.front();
        const PlanePoint to = points.back();
        double c00 = 0;
        double c01 = 0;
        double c11 = 0;
        double x0 = 0;
        double x1 = 0;
        for (std::size_t i = 0; i < points.size(); ++i) {
            const double t = at[i];
            const double u = 1 - t;
            const PlanePoint a = plus({}, leave, 3 * u * u * t);
            const PlanePoint b = plus({}, arrive, 3 * u * t * t);
            const PlanePoint still =
                plus(plus({}, from, u * u * u + 3 * u * u * t), to, 3 * u * t * t + t * t * t);
            const PlanePoint rest = minus(points[i], still);
            c00 += dot(a, a);
            c01 += dot(a, b);
            c11 += dot(b, b);
            x0 += dot(a, rest);
            x1 += dot(b, rest);
        }
        const double determinant = c00 * c11 - c01 * c01;
        double first = determinant != 0 ? (x0 * c11 - x1 * c01) / determinant : 0;
        double second = determinant != 0 ? (c00 * x1 - c01 * x0) / determinant : 0;
        const double length = distanceOf(from, to);
        const double reach = 10 * length;
        if (!(first > 1e-6 * length && second > 1e-6 * length && first < reach && second < reach)) {
            first = second = length / 3;
        }
        return {plus(from, leave, first), plus(to, arrive, second), to, false};
    }

    static double farthest(std::span<const PlanePoint> points, const std::vector<double>& at,
                           const OutlineSegment& segment, std::size_t* worst) {
        double largest = 0;
        for (std::size_t i = 1; i + 1 < points.size(); ++i) {
            const double error = distanceOf(points[i], pointOf(points.front(), segment, at[i]));
            if (error >= largest) {
                largest = error;
                *worst = i;
            }
        }
        return largest;
    }

    /// One step of Newton's method for where on the cubic each point belongs.
    static void improve(std::span<const PlanePoint> points, const OutlineSegment& s,
                        std::vector<double>* at) {
        const PlanePoint p0 = points.front();
        for (std::size_t i = 1; i + 1 < points.size(); ++i) {
            const double t = (*at)[i];
            const double u = 1 - t;
            const PlanePoint d1 = plus(plus(plus({}, minus(s.control1, p0), 3 * u * u),
                                            minus(s.control2, s.control1), 6 * u * t),
                                       minus(s.end, s.control2), 3 * t * t);
            const PlanePoint turn1 = plus(plus(s.control2, s.control1, -2), p0, 1);
            const PlanePoint turn2 = plus(plus(s.end, s.control2, -2), s.control1, 1);
            const PlanePoint d2 = plus(plus({}, turn1, 6 * u), turn2, 6 * t);
            const PlanePoint off = minus(pointOf(p0, s, t), points[i]);
            const double slope = dot(d1, d1) + dot(off, d2);
            if (slope != 0) {
                (*at)[i] = std::clamp(t - dot(off, d1) / slope, 0.0, 1.0);
            }
        }
    }

    double m_tolerance;
    OutlineCurve* m_curve;
};

/// The direction of a run at its start.
PlanePoint direction(std::span<const PlanePoint> points) {
    const PlanePoint near = minus(points[1], points[0]);
    if (points.size() < 3) {
        return unit(near);
    }
    // A parabola through three points leaves the first one so.
    const double a = distanceOf(points[0], points[1]);
    const double b = distanceOf(points[1], points[2]);
    const PlanePoint first = plus({}, near, 1 / a);
    const PlanePoint second = plus({}, minus(points[2], points[1]), 1 / b);
    const PlanePoint slope = plus(first, minus(first, second), a / (a + b));
    return unit(slope);
}

std::vector<PlanePoint> distinct(const std::vector<PlanePoint>& points) {
    std::vector<PlanePoint> result;
    for (const PlanePoint& p : points) {
        if (result.empty() || distanceOf(result.back(), p) > 0) {
            result.push_back(p);
        }
    }
    return result;
}

bool isCorner(PlanePoint a, PlanePoint b, PlanePoint c, double corner) {
    const PlanePoint in = unit(minus(b, a));
    const PlanePoint out = unit(minus(c, b));
    return dot(in, out) < std::cos(corner);
}

void fitRun(std::vector<PlanePoint> run, double tolerance, OutlineCurve* curve) {
    if (run.size() == 2) {
        curve->segments.push_back(lineSegment(run.front(), run.back()));
        return;
    }
    const PlanePoint leave = direction(run);
    std::reverse(run.begin(), run.end());
    const PlanePoint arrive = direction(run);
    std::reverse(run.begin(), run.end());
    RunFitter(tolerance, curve).fit(run, leave, arrive);
}

} // namespace

OutlineCurve fitCurve(const std::vector<PlanePoint>& points, double tolerance, double corner) {
    const std::vector<PlanePoint> row = distinct(points);
    OutlineCurve curve;
    if (row.size() < 2) {
        return curve;
    }
    curve.start = row.front();
    std::size_t first = 0;
    for (std::size_t i = 1; i < row.size(); ++i) {
        if (i + 1 == row.size() || isCorner(row[i - 1], row[i], row[i + 1], corner)) {
            const auto at = [&](std::size_t k) {
                return row.begin() + static_cast<std::ptrdiff_t>(k);
            };
            fitRun({at(first), at(i) + 1}, tolerance, &curve);
            first = i;
        }
    }
    return curve;
}

void simplifyCurve(double tolerance, OutlineCurve* curve) {
    constexpr int pieces = 12; // of a cubic: its own bends stay below the corner
    constexpr double corner = 0.5;
    std::vector<PlanePoint> points{curve->start};
    PlanePoint from = curve->start;
    for (const OutlineSegment& s : curve->segments) {
        const int steps = s.straight ? 1 : pieces;
        for (int i = 1; i <= steps; ++i) {
            points.push_back(pointOf(from, s, static_cast<double>(i) / steps));
        }
        from = s.end;
    }
    OutlineCurve simple = fitCurve(points, tolerance, corner);
    if (!simple.segments.empty() && simple.segments.size() < curve->segments.size()) {
        simple.closed = curve->closed;
        *curve = std::move(simple);
    }
}

} // namespace orbel
