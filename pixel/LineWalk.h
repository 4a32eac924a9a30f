#pragma once

#include <cstdint>

namespace orbel {

/// Walks the one-pixel line from (x0, y0) to (x1, y1), both ends included, and calls `plot(x, y)`
/// at every point inside an image of the given size. The walk is not clipped in advance: it takes
/// as many steps as the longer axis has. A 45-degree line steps along x.
template<typename Plot>
void walkLine(int x0, int y0, int x1, int y1, int width, int height, const Plot& plot) {
    struct Axis {
        std::int64_t position;
        std::int64_t extent;
        int step;
    };
    const auto makeAxis = [](std::int64_t from, std::int64_t to) {
        return from > to ? Axis{from, from - to, -1} : Axis{from, to - from, 1};
    };
    Axis x = makeAxis(x0, x1);
    Axis y = makeAxis(y0, y1);
    const bool alongY = x.extent < y.extent;
    Axis& major = alongY ? y : x;
    Axis& minor = alongY ? x : y;

    std::int64_t error = 2 * minor.extent - major.extent;
    for (std::int64_t point = 0; point <= major.extent; ++point) {
        if (x.position >= 0 && x.position < width && y.position >= 0 && y.position < height) {
            plot(static_cast<int>(x.position), static_cast<int>(y.position));
        }
        major.position += major.step;
        if (error < 0) {
            error += 2 * minor.extent;
        } else {
            error += 2 * (minor.extent - major.extent);
            minor.position += minor.step;
        }
    }
}

} // namespace orbel
