#pragma once

#include "drawing/Outline.h"

#include <string>
#include <vector>

namespace orbel {

/// A line that letters stand on, known by its length.
class TextPath {
public:
    struct Station {
        PlanePoint point;
        double direction = 0.0; ///< radians, clockwise from the x axis
    };

    /// The sub-paths one after the other.
    explicit TextPath(const std::vector<OutlineCurve>& curves);

    [[nodiscard]] double length() const { return m_lengths.empty() ? 0.0 : m_lengths.back(); }
    /// False before the start and beyond the end.
    [[nodiscard]] bool holds(double distance) const {
        return distance >= 0 && distance <= length() && !m_lengths.empty();
    }
    [[nodiscard]] Station at(double distance) const;

private:
    void addPoint(PlanePoint point, bool drawn);

    std::vector<PlanePoint> m_points;
    std::vector<double> m_lengths; // from the start to each point
};

/// The outlines of one SVG shape element, written as text, in its own coordinates on a page of this
/// size. Throws DrawingError.
[[nodiscard]] std::vector<OutlineCurve> outlinesOfElement(const std::string& element, double width,
                                                          double height);

} // namespace orbel
