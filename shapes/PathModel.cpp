#include "shapes/PathModel.h"

#include "host/Numeric.h"
#include "host/PluginHost.h"

#include <algorithm>

namespace orbel {

namespace {

using Outline = PluginPath_Impl::Vx_PathOutline;

constexpr int ok = 0;
constexpr int error = 1;

const Outline* outlineOf(void* path) {
    return static_cast<const Outline*>(path);
}

/// One axis of a mapping: position times `scale` plus `offset`.
struct Axis {
    double scale;
    double offset;

    [[nodiscard]] double map(double position) const { return position * scale + offset; }
};

/// One axis of the way from the shape's own box into the unit square.
struct BoxAxis {
    double low;
    double extent;
    double targetLow;
    double targetHigh;

    [[nodiscard]] double map(double position) const {
        return (position - low) / extent * (targetHigh - targetLow) + targetLow;
    }
};

/// The box's target: the longer side fills 0.25 to 0.75, the shorter keeps the aspect.
void fitTarget(BoxAxis& longer, BoxAxis& shorter) {
    const double half = (0.75 - 0.25) * (shorter.extent / longer.extent) * 0.5;
    longer.targetLow = 0.25;
    longer.targetHigh = 0.75;
    shorter.targetLow = 0.5 - half;
    shorter.targetHigh = 0.5 + half;
}

template<typename MapX, typename MapY>
Vx_PathVertex mapPoints(const Vx_PathVertex& vertex, const MapX& mapX, const MapY& mapY) {
    return {mapX(vertex.tanInX), mapY(vertex.tanInY),  mapX(vertex.x),
            mapY(vertex.y),      mapX(vertex.tanOutX), mapY(vertex.tanOutY)};
}

} // namespace

int PluginPath_Impl::PathVertexInfo(void* const* /*effectRef*/, void* path, long index,
                                    Vx_PathVertex* vertex) {
    const Outline* const outline = outlineOf(path);
    if (outline == nullptr || index < 0 ||
        static_cast<std::size_t>(index) >= outline->vertices.size()) {
        return error;
    }
    *vertex = toOutput(outline->vertices[static_cast<std::size_t>(index)]);
    return ok;
}

int PluginPath_Impl::PathIsOpen(void* const* /*effectRef*/, void* path, bool* open) {
    const Outline* const outline = outlineOf(path);
    if (outline == nullptr) {
        return error;
    }
    *open = outline->isOpen;
    return ok;
}

int PluginPath_Impl::PathNumSegments(void* const* /*effectRef*/, void* path, long* count) {
    const Outline* const outline = outlineOf(path);
    if (outline == nullptr) {
        return error;
    }
    const long vertices = static_cast<long>(outline->vertices.size());
    // An open outline without vertices has none, rather than minus one.
    *count = outline->isOpen ? std::max(vertices - 1, 0L) : vertices;
    return ok;
}

int PluginPath_Impl::NumPaths(void* const* /*effectRef*/, long* count) {
    *count = static_cast<long>(m_outlines.size());
    return ok;
}

int PluginPath_Impl::CheckoutPath(void* const* /*effectRef*/, unsigned long id, long /*time*/,
                                  long /*timeStep*/, long /*timeScale*/, void** path) {
    // One-based, although `PathInfo` hands its index back unchanged: the pairing is meant.
    const bool known = id >= 1 && id <= m_outlines.size();
    *path = known ? &m_outlines[id - 1] : nullptr;
    return ok;
}

int PluginPath_Impl::CheckinPath(void* const* /*effectRef*/, unsigned long /*id*/, bool /*changed*/,
                                 void* /*path*/) {
    return ok;
}

int PluginPath_Impl::PathInfo(void* const* /*effectRef*/, long index, unsigned long* id) {
    *id = static_cast<unsigned long>(index);
    return ok;
}

int PluginPath_Impl::setPathAspectRatio(double aspect, PluginHost_API* host) {
    m_scaleX = host->getScaleX();
    m_scaleY = host->getScaleY();
    m_outputWidth = host->getOutputWidth();
    m_outputHeight = host->getOutputHeight();
    const int side = truncateTo<int>(std::min(m_outputWidth, m_outputHeight));
    m_baseWidth = side / aspect;
    m_baseHeight = side;
    centre();
    return ok;
}

bool PluginPath_Impl::setPathScale(double x, double y, bool flip) {
    m_scaleX = x;
    m_scaleY = y;
    m_flipY = flip;
    centre();
    return m_flipY;
}

void PluginPath_Impl::addOutline(const Vx_PathOutline& outline) {
    m_outlines.push_back(outline);
}

void PluginPath_Impl::clamp(double x, double y, double* box) {
    if (box[2] < box[0] || box[3] < box[1]) {
        box[0] = box[2] = x;
        box[1] = box[3] = y;
        return;
    }
    box[0] = std::min(box[0], x);
    box[1] = std::min(box[1], y);
    box[2] = std::max(box[2], x);
    box[3] = std::max(box[3], y);
}

void PluginPath_Impl::normalize() {
    double box[4] = {1.0, 1.0, 0.0, 0.0};
    for (const Vx_PathOutline& outline : m_outlines) {
        for (const Vx_PathVertex& vertex : outline.vertices) {
            clamp(vertex.tanInX, vertex.tanInY, box);
            clamp(vertex.x, vertex.y, box);
            clamp(vertex.tanOutX, vertex.tanOutY, box);
        }
    }
    BoxAxis x{box[0], box[2] - box[0], 0.0, 0.0};
    BoxAxis y{box[1], box[3] - box[1], 0.0, 0.0};
    if (x.extent > y.extent) {
        fitTarget(x, y);
    } else {
        fitTarget(y, x);
    }
    const auto mapX = [&](double position) { return x.map(position); };
    const auto mapY = [&](double position) {
        const double mapped = y.map(position);
        return m_flipY ? 1.0 - mapped : mapped;
    };
    for (Vx_PathOutline& outline : m_outlines) {
        for (Vx_PathVertex& vertex : outline.vertices) {
            vertex = mapPoints(vertex, mapX, mapY);
        }
    }
}

void PluginPath_Impl::centre() {
    m_centerOffsetX = m_scaleX * m_baseWidth * 0.5;
    m_centerOffsetY = m_scaleY * m_baseHeight * 0.5;
}

Vx_PathVertex PluginPath_Impl::toOutput(const Vx_PathVertex& vertex) const {
    const Axis x{m_scaleX * m_baseWidth, m_outputWidth * 0.5 - m_centerOffsetX};
    const Axis y{m_scaleY * m_baseHeight, m_outputHeight * 0.5 - m_centerOffsetY};
    return mapPoints(
        vertex, [&](double position) { return x.map(position); },
        [&](double position) { return y.map(position); });
}

} // namespace orbel
