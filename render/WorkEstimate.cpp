#include "render/WorkEstimate.h"

#include "host/RasterProxy.h"
#include "render/StrokeFrame.h"
#include "render/StrokeSample.h"
#include "shapes/CriticalSection.h"

#include <algorithm>
#include <cmath>

namespace orbel {

namespace {

// A segment is no longer than the polygon of its control points.
double polygonLength(const Vx_PathVertex& from, const Vx_PathVertex& to) {
    return std::hypot(from.tanOutX - from.x, from.tanOutY - from.y) +
           std::hypot(to.tanInX - from.tanOutX, to.tanInY - from.tanOutY) +
           std::hypot(to.x - to.tanInX, to.y - to.tanInY);
}

double outlineLength(PluginPath_API* paths, void* path) {
    long segments = 0;
    bool open = false;
    paths->PathNumSegments(nullptr, path, &segments);
    paths->PathIsOpen(nullptr, path, &open);
    Vx_PathVertex first{};
    paths->PathVertexInfo(nullptr, path, 0, &first);
    Vx_PathVertex from = first;
    double length = 0.0;
    for (long i = 1; i <= segments; ++i) {
        Vx_PathVertex to = first;
        if (open || i < segments) {
            paths->PathVertexInfo(nullptr, path, i, &to);
        }
        length += polygonLength(from, to);
        from = to;
    }
    return length;
}

double lengthOfAll(const StrokeFrame& frame, PluginPath_API* paths) {
    long count = 0;
    paths->NumPaths(nullptr, &count);
    double length = 0.0;
    for (long i = 0; i <= count; ++i) {
        unsigned long id = 0;
        void* path = nullptr;
        paths->PathInfo(nullptr, i, &id);
        if (paths->CheckoutPath(nullptr, id, frame.currentTime, frame.timeStep, frame.timeScale,
                                &path) == 0 &&
            path != nullptr) {
            length += outlineLength(paths, path);
            paths->CheckinPath(nullptr, id, false, path);
        }
    }
    return length;
}

} // namespace

WorkEstimate estimateWork(PluginHost_API* host) {
    const Stroke_CSLock lock(&g_globalCritSection);
    const PluginRasterProxy output(host, host->getOutputRaster(), true, true);
    const StrokeFrame frame(host);
    if (output.getImpl() == nullptr || frame.drawsNothing()) {
        return {};
    }
    if (HasFixedShapeProperty(host) != 0) {
        frame.installShape(output.getImpl());
    }
    const SampleValues values = sampleValues(frame, frame.args);
    if (host->getPathAPI() == nullptr || !(values.sampleLength > 0.0)) {
        return {};
    }
    const double length = lengthOfAll(frame, host->getPathAPI());
    const double drawn = std::clamp(values.end - values.start, 0.0, 1.0) * length;
    const bool repeats = frame.args.enableRepeater && values.instances > 0;
    const double copies =
        1.0 + (repeats ? values.instances * (frame.args.symmetricDoubler ? 2.0 : 1.0) : 0.0);
    int error = 0;
    const double samples = frame.planSamples(&error).levels;
    // Chords are 0.4 to 0.8 of their target; the march of the stamps begins with the outline.
    WorkEstimate work;
    work.evaluations = samples * (1.0 + copies) * length / (0.6 * values.sampleLength);
    work.stamps = samples * copies * drawn / values.globalStep;
    return work;
}

} // namespace orbel
