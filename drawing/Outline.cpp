#include "drawing/Outline.h"

#include <algorithm>
#include <cmath>

namespace orbel {

void OutlineBox::add(PlanePoint point) {
    left = std::min(left, point.x);
    top = std::min(top, point.y);
    right = std::max(right, point.x);
    bottom = std::max(bottom, point.y);
}

void OutlineBox::add(const OutlineBox& other) {
    if (!other.empty()) {
        add(PlanePoint{other.left, other.top});
        add(PlanePoint{other.right, other.bottom});
    }
}

double OutlineBox::longerSide() const {
    return empty() ? 0.0 : std::max(right - left, bottom - top);
}

PlanePoint between(PlanePoint a, PlanePoint b, double t) {
    return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t};
}

double distanceOf(PlanePoint a, PlanePoint b) {
    return std::hypot(b.x - a.x, b.y - a.y);
}

OutlineSegment lineSegment(PlanePoint from, PlanePoint to) {
    return {between(from, to, 1.0 / 3), between(from, to, 2.0 / 3), to, true};
}

PlanePoint pointOf(PlanePoint start, const OutlineSegment& segment, double t) {
    const PlanePoint a = between(start, segment.control1, t);
    const PlanePoint b = between(segment.control1, segment.control2, t);
    const PlanePoint c = between(segment.control2, segment.end, t);
    return between(between(a, b, t), between(b, c, t), t);
}

namespace {

/// The points where one coordinate of a cubic turns round: roots of its derivative in 0..1.
void addTurns(PlanePoint start, const OutlineSegment& s, double p0, double p1, double p2, double p3,
              OutlineBox* box) {
    const double a = -p0 + 3 * p1 - 3 * p2 + p3;
    const double b = 2 * (p0 - 2 * p1 + p2);
    const double c = p1 - p0;
    const auto take = [&](double t) {
        if (t > 0 && t < 1) {
            box->add(pointOf(start, s, t));
        }
    };
    const double root = std::sqrt(std::max(0.0, b * b - 4 * a * c));
    const double q = -0.5 * (b + std::copysign(root, b));
    if (a != 0) {
        take(q / a);
    }
    if (q != 0) {
        take(c / q);
    }
}

} // namespace

OutlineBox boxOf(const OutlineCurve& curve) {
    OutlineBox box;
    box.add(curve.start);
    PlanePoint from = curve.start;
    for (const OutlineSegment& s : curve.segments) {
        box.add(s.end);
        if (!s.straight) {
            addTurns(from, s, from.x, s.control1.x, s.control2.x, s.end.x, &box);
            addTurns(from, s, from.y, s.control1.y, s.control2.y, s.end.y, &box);
        }
        from = s.end;
    }
    return box;
}

void transformCurve(const PlaneTransform& transform, OutlineCurve* curve) {
    curve->start = transform(curve->start);
    for (OutlineSegment& s : curve->segments) {
        s.control1 = transform(s.control1);
        s.control2 = transform(s.control2);
        s.end = transform(s.end);
    }
}

} // namespace orbel
