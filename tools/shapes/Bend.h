#pragma once

#include "tools/shapes/Outline.h"

#include <functional>

namespace orbel::artwork {

/// A smooth function of the way along a line, from 0 to 1.
using Along = std::function<double(double)>;
/// A smooth curve, given a little beyond both of its ends.
using Curve = std::function<Point(double)>;

/// A line of length 1 from the origin, given by its direction at every place: its bends are as
/// smooth as the function is, and never tighter than its slope says.
class BentLine {
public:
    /// `direction` in degrees, 0 to the right, clockwise.
    explicit BentLine(Along direction);

    [[nodiscard]] Point at(double way) const;
    /// The place beside the line, to its right as one walks along it.
    [[nodiscard]] Point beside(double way, double distance) const;
    [[nodiscard]] Point heading(double way) const;

private:
    [[nodiscard]] Point run(double from, double to) const;

    Along m_direction;
    std::vector<Point> m_stations;
};

/// A turn that is spread over the way like a bell, as a part of a line's direction.
struct Turn {
    double at = 0;      ///< the way along the line at which it is sharpest
    double degrees = 0; ///< clockwise
    double spread = 0;  ///< along the way; nearly all of the turn lies within two of it
};
[[nodiscard]] double turnedBy(const Turn& turn, double way);

/// The stretch of a curve between two of its parameters, in cubics that leave and arrive as it
/// does.
[[nodiscard]] Outline follow(int pieces, const Curve& curve, double from, double to);
/// One turn of a curve that comes back to where it began.
[[nodiscard]] Outline followClosed(int pieces, const Curve& curve);
/// Goes on along a curve from where it begins, which is where the outline ends.
void followOn(Outline* outline, int pieces, const Curve& curve, double from, double to);

} // namespace orbel::artwork
