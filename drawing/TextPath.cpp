#include "drawing/TextPath.h"

#include "drawing/SvgRecorder.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace orbel {

namespace {

constexpr int stepsOfCurve = 64;

} // namespace

TextPath::TextPath(const std::vector<OutlineCurve>& curves) {
    for (const OutlineCurve& curve : curves) {
        addPoint(curve.start, false);
        PlanePoint from = curve.start;
        for (const OutlineSegment& s : curve.segments) {
            const int steps = s.straight ? 1 : stepsOfCurve;
            for (int i = 1; i <= steps; ++i) {
                addPoint(pointOf(from, s, static_cast<double>(i) / steps), true);
            }
            from = s.end;
        }
        if (curve.closed) {
            addPoint(curve.start, true);
        }
    }
}

void TextPath::addPoint(PlanePoint point, bool drawn) {
    const double before = length();
    m_lengths.push_back(drawn ? before + distanceOf(m_points.back(), point) : before);
    m_points.push_back(point);
}

TextPath::Station TextPath::at(double distance) const {
    const auto found = std::lower_bound(m_lengths.begin(), m_lengths.end(), distance);
    const auto next = static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(
        found - m_lengths.begin(), 1, std::max<std::ptrdiff_t>(1, std::ssize(m_points) - 1)));
    if (next >= m_points.size()) {
        return {};
    }
    const PlanePoint a = m_points[next - 1];
    const PlanePoint b = m_points[next];
    const double step = m_lengths[next] - m_lengths[next - 1];
    const double t = step > 0 ? (distance - m_lengths[next - 1]) / step : 0.0;
    return {between(a, b, t), std::atan2(b.y - a.y, b.x - a.x)};
}

std::vector<OutlineCurve> outlinesOfElement(const std::string& element, double width,
                                            double height) {
    char page[256];
    std::snprintf(page, sizeof page,
                  "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%.9f\" height=\"%.9f\" "
                  "viewBox=\"0 0 %.9f %.9f\">",
                  width, height, width, height);
    const SvgRecorder recorder(page + element + "</svg>", false);
    std::vector<OutlineCurve> curves;
    for (PaintedPath& painted : recorder.record().painted) {
        curves.insert(curves.end(), painted.curves.begin(), painted.curves.end());
    }
    return curves;
}

} // namespace orbel
