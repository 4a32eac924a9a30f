#include "tests/support/FakePath.h"

#include <algorithm>

namespace orbel::test {

namespace {

const FakeOutline& outlineOf(void* path) {
    return *static_cast<const FakeOutline*>(path);
}

} // namespace

FakeOutline polyline(const std::vector<std::pair<double, double>>& points, bool open) {
    FakeOutline outline{{}, open};
    for (const auto& [x, y] : points) {
        outline.vertices.push_back({x, y, x, y, x, y});
    }
    // Handles at a third of each segment keep the speed along it even.
    const std::size_t count = points.size();
    for (std::size_t i = 0; i < count; ++i) {
        Vx_PathVertex& from = outline.vertices[i];
        Vx_PathVertex& to = outline.vertices[(i + 1) % count];
        from.tanOutX += (to.x - from.x) / 3;
        from.tanOutY += (to.y - from.y) / 3;
        to.tanInX -= (to.x - from.x) / 3;
        to.tanInY -= (to.y - from.y) / 3;
    }
    return outline;
}

FakeOutline circle(double centreX, double centreY, double radius) {
    const double k = radius * 0.5522847498307936;
    FakeOutline outline{{}, false};
    double x = radius;
    double y = 0.0;
    for (int i = 0; i < 4; ++i) {
        const double tx = -y / radius * k;
        const double ty = x / radius * k;
        outline.vertices.push_back({centreX + x - tx, centreY + y - ty, centreX + x, centreY + y,
                                    centreX + x + tx, centreY + y + ty});
        const double turned = -y;
        y = x;
        x = turned;
    }
    return outline;
}

int FakePath::PathVertexInfo(void* const*, void* path, long index, Vx_PathVertex* vertex) {
    const auto& vertices = outlineOf(path).vertices;
    if (vertexStatus != 0 || index < 0 || static_cast<std::size_t>(index) >= vertices.size()) {
        return vertexStatus != 0 ? vertexStatus : 1;
    }
    *vertex = vertices[static_cast<std::size_t>(index)];
    return 0;
}

int FakePath::PathIsOpen(void* const*, void* path, bool* open) {
    *open = outlineOf(path).open;
    return openStatus;
}

int FakePath::PathNumSegments(void* const*, void* path, long* count) {
    const FakeOutline& outline = outlineOf(path);
    const long vertices = static_cast<long>(outline.vertices.size());
    *count = outline.open ? std::max(vertices - 1, 0L) : vertices;
    return segmentsStatus;
}

int FakePath::NumPaths(void* const*, long* count) {
    *count = static_cast<long>(outlines.size() - missing.size());
    return 0;
}

int FakePath::CheckoutPath(void* const*, unsigned long id, long time, long, long, void** path) {
    const bool known = id >= 1 && id <= outlines.size() &&
                       std::find(missing.begin(), missing.end(), id) == missing.end();
    *path = nullptr;
    if (known && checkoutStatus == 0) {
        auto* const copy = new FakeOutline(outlines[id - 1]);
        if (animate) {
            animate(*copy, time);
        }
        *path = copy;
        ++checkedOut;
    }
    return checkoutStatus;
}

int FakePath::CheckinPath(void* const*, unsigned long, bool, void* path) {
    delete static_cast<FakeOutline*>(path);
    --checkedOut;
    return 0;
}

int FakePath::PathInfo(void* const*, long index, unsigned long* id) {
    *id = static_cast<unsigned long>(index);
    return 0;
}

int FakePath::setPathAspectRatio(double, PluginHost_API*) {
    return 0;
}

bool FakePath::setPathScale(double, double, bool flip) {
    return flip;
}

} // namespace orbel::test
