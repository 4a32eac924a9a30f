#include "tools/shapes/Regular.h"

#include "tools/shapes/Drawing.h"

#include <cmath>

namespace orbel::artwork {

std::vector<Point> regularPolygon(int corners, double radius, double first) {
    std::vector<Point> points;
    points.reserve(static_cast<std::size_t>(corners));
    for (int i = 0; i < corners; ++i) {
        points.push_back(onClock(MIDDLE, radius, first + 360.0 * i / corners));
    }
    return points;
}

std::vector<Point> starPolygon(int tips, double outer, double inner) {
    std::vector<Point> points;
    points.reserve(static_cast<std::size_t>(tips) * 2);
    for (int i = 0; i < 2 * tips; ++i) {
        points.push_back(onClock(MIDDLE, i % 2 == 0 ? outer : inner, 180.0 * i / tips));
    }
    return points;
}

double notchOfAlignedStar(int tips, int skip) {
    return std::cos(PI * skip / tips) / std::cos(PI * (skip - 1) / tips);
}

std::vector<Point> rectangle(Point low, Point high) {
    return {low, {high.x, low.y}, high, {low.x, high.y}};
}

double Dice::between(double low, double high) {
    const auto span = static_cast<double>(std::minstd_rand::max() - std::minstd_rand::min());
    return low + (high - low) * static_cast<double>(m_engine() - std::minstd_rand::min()) / span;
}

} // namespace orbel::artwork
