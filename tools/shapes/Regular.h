#pragma once

#include "tools/shapes/Outline.h"

#include <random>

namespace orbel::artwork {

/// Corners on a circle round the sheet's middle, clockwise from a clock angle in degrees.
[[nodiscard]] std::vector<Point> regularPolygon(int corners, double radius, double first);
/// Tips and notches in turn, clockwise from the tip at twelve o'clock.
[[nodiscard]] std::vector<Point> starPolygon(int tips, double outer, double inner);
/// The notch radius, in tip radii, with which the edges of a star line up: those between tips that
/// are `skip` apart.
[[nodiscard]] double notchOfAlignedStar(int tips, int skip);

/// Corners of an upright rectangle from the top left, clockwise.
[[nodiscard]] std::vector<Point> rectangle(Point low, Point high);

/// Chance that falls the same way on every machine.
class Dice {
public:
    explicit Dice(std::uint32_t seed) : m_engine(seed) {}
    [[nodiscard]] double between(double low, double high);

private:
    std::minstd_rand m_engine;
};

} // namespace orbel::artwork
