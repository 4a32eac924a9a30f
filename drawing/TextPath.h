#pragma once

#include "drawing/Outline.h"
#include "drawing/TextCharacters.h"

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

/// The outlines of a shape element in its own coordinates, or with `moved` in those around it.
/// None for any other element, and for what cannot be drawn.
[[nodiscard]] std::vector<OutlineCurve> outlinesOfShape(const xmlNode* element,
                                                        const Viewport& viewport, bool moved);

} // namespace orbel
