#include "tools/shapes/Regular.h"

#include "tools/shapes/Drawing.h"

namespace orbel::artwork {

std::vector<Point> regularPolygon(int corners, double radius, double first) {
    std::vector<Point> points;
    for (int i = 0; i < corners; ++i) {
        points.push_back(onClock(MIDDLE, radius, first + 360.0 * i / corners));
    }
    return points;
}

std::vector<Point> starPolygon(int tips, double outer, double inner) {
    std::vector<Point> points;
    for (int i = 0; i < 2 * tips; ++i) {
        points.push_back(onClock(MIDDLE, i % 2 == 0 ? outer : inner, 180.0 * i / tips));
    }
    return points;
}

} // namespace orbel::artwork
