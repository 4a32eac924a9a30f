#include "drawing/TextPath.h"

#include "drawing/SvgRecorder.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>

namespace orbel {

namespace {

constexpr int stepsOfCurve = 64;
constexpr std::array<const char*, 7> shapes{"path", "rect",     "circle", "ellipse",
                                            "line", "polyline", "polygon"};
constexpr std::array<const char*, 16> geometry{"transform", "d",  "points", "x",  "y",  "width",
                                               "height",    "r",  "rx",     "ry", "cx", "cy",
                                               "x1",        "y1", "x2",     "y2"};

/// A copy of the element with nothing but its geometry; empty when it is no shape.
std::string elementText(const xmlNode* element, bool moved) {
    if (std::none_of(shapes.begin(), shapes.end(),
                     [element](const char* name) { return isNamed(element, name); })) {
        return {};
    }
    std::string copy(1, '<');
    copy.append(nameOf(element)).append(R"( fill="none" stroke="black")");
    for (const char* const name : geometry) {
        const auto value = attributeOf(element, name);
        const bool wanted = moved || std::strcmp(name, "transform") != 0;
        if (wanted && value && value->find_first_of("<&\"") == std::string::npos) {
            copy.append(" ").append(name).append("=\"").append(*value).append("\"");
        }
    }
    return copy.append("/>");
}

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

std::vector<OutlineCurve> outlinesOfShape(const xmlNode* element, const Viewport& viewport,
                                          bool moved) {
    const std::string copy = elementText(element, moved);
    if (copy.empty()) {
        return {};
    }
    char page[256];
    std::snprintf(page, sizeof page,
                  "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%.9f\" height=\"%.9f\" "
                  "viewBox=\"0 0 %.9f %.9f\" font-size=\"16\">",
                  std::max(viewport.width, 1e-3), std::max(viewport.height, 1e-3),
                  std::max(viewport.width, 1e-3), std::max(viewport.height, 1e-3));
    std::vector<OutlineCurve> curves;
    try {
        const SvgRecorder recorder(std::string(page).append(copy).append("</svg>"), false);
        for (PaintedPath& painted : recorder.record().painted) {
            curves.insert(curves.end(), painted.curves.begin(), painted.curves.end());
        }
    } catch (const DrawingError&) {
        curves.clear();
    }
    return curves;
}

} // namespace orbel
