#pragma once

#include <string>
#include <vector>

namespace orbel {

struct PlanePoint {
    double x = 0.0;
    double y = 0.0;
    friend bool operator==(const PlanePoint&, const PlanePoint&) = default;
};

/// One cubic from where the outline stands to `end`; a straight one has its controls on the line.
struct OutlineSegment {
    PlanePoint control1;
    PlanePoint control2;
    PlanePoint end;
    bool straight = false;
    friend bool operator==(const OutlineSegment&, const OutlineSegment&) = default;
};

/// One sub-path: a curve drawn without lifting the pen. A closed one runs back to its start in a
/// straight line.
struct OutlineCurve {
    PlanePoint start;
    std::vector<OutlineSegment> segments;
    bool closed = false;
    friend bool operator==(const OutlineCurve&, const OutlineCurve&) = default;

    [[nodiscard]] PlanePoint end() const { return segments.empty() ? start : segments.back().end; }
};

/// The box of points; empty, with its lower corner above the upper one, until there is one.
struct OutlineBox {
    double left = 1e300;
    double top = 1e300;
    double right = -1e300;
    double bottom = -1e300;

    void add(PlanePoint point);
    void add(const OutlineBox& other);
    [[nodiscard]] bool empty() const { return right < left; }
    [[nodiscard]] double longerSide() const;
};

/// A straight segment from one point to another.
[[nodiscard]] OutlineSegment lineSegment(PlanePoint from, PlanePoint to);

[[nodiscard]] PlanePoint between(PlanePoint a, PlanePoint b, double t);
[[nodiscard]] double distanceOf(PlanePoint a, PlanePoint b);

/// The box of the curve itself, not of its control points.
[[nodiscard]] OutlineBox boxOf(const OutlineCurve& curve);
/// The segment's point at t from 0 to 1.
[[nodiscard]] PlanePoint pointOf(PlanePoint start, const OutlineSegment& segment, double t);

/// x' = xx x + xy y + dx, y' = yx x + yy y + dy
struct PlaneTransform {
    double xx = 1.0;
    double xy = 0.0;
    double yx = 0.0;
    double yy = 1.0;
    double dx = 0.0;
    double dy = 0.0;

    [[nodiscard]] PlanePoint operator()(PlanePoint point) const {
        return {xx * point.x + xy * point.y + dx, yx * point.x + yy * point.y + dy};
    }
};

void transformCurve(const PlaneTransform& transform, OutlineCurve* curve);

/// Where a curve comes from and how it was painted.
struct OutlineSource {
    std::string id;
    std::string title;
    std::string fill;   ///< #rrggbb, "pattern" for anything but one colour, empty for none
    std::string stroke; ///< as `fill`
    friend bool operator==(const OutlineSource&, const OutlineSource&) = default;
};

/// A curve of a drawing with its source.
struct DrawnCurve {
    OutlineCurve curve;
    OutlineSource source;
};

/// A page and what is drawn on it, in pixels with y downwards.
struct DrawnPage {
    double width = 0.0;
    double height = 0.0;
    double baseline = 0.0; ///< of the first line of a writing, from the top
    std::vector<DrawnCurve> curves;
};

} // namespace orbel
