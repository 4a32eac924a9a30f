#include "studio/Overlay.h"

#include "doors/memory/PluginHost_MEMORY_Impl.h"
#include "params/InstanceData.h"
#include "params/ParameterTable.h"
#include "render/PathOverlay.h"

#include <algorithm>
#include <cmath>

namespace orbel::studio {

namespace {

/// A hundredth of a pixel is finer than any screen.
double rounded(double value) {
    return std::round(value * 100) / 100;
}

json lineJson(const std::vector<PathOverlay::Point>& points) {
    json line = json::array();
    for (const auto& [x, y] : points) {
        if (std::isfinite(x) && std::isfinite(y)) {
            line.push_back(rounded(x));
            line.push_back(rounded(y));
        }
    }
    return line;
}

json pointJson(const std::optional<PathOverlay::Point>& point) {
    json line = point ? lineJson({*point}) : json::array();
    return line.empty() ? json(nullptr) : line;
}

/// What part of its way the stroke has run at each point of each outline.
json fractionsJson(const PathOverlay& overlay) {
    double total = 0.0;
    for (const PathOverlay::Outline& outline : overlay.outlines) {
        total += outline.length;
    }
    json all = json::array();
    double before = 0.0;
    for (const PathOverlay::Outline& outline : overlay.outlines) {
        const double whole = overlay.asOne ? total : outline.length;
        json fractions = json::array();
        for (std::size_t i = 0; i < outline.points.size(); ++i) {
            const double along =
                std::min(static_cast<double>(i) * outline.step, outline.length) + before;
            fractions.push_back(std::round(along / whole * 1e5) / 1e5);
        }
        before += overlay.asOne ? outline.length : 0.0;
        all.push_back(std::move(fractions));
    }
    return all;
}

/// The plan's pictures without their pixels.
RasterInfo emptyRaster(const ScenePlan& plan) {
    RasterInfo info;
    info.pixelFormat = plan.format;
    info.width = plan.size.width;
    info.height = plan.size.height;
    info.bytesPerPixel = bytesPerPixel(plan.format);
    info.rowBytes = info.width * info.bytesPerPixel;
    info.pixelAspect = static_cast<float>(plan.pixelAspect);
    return info;
}

} // namespace

json overlayJson(ScenePlan& plan, long frame) {
    MemoryHostSettings settings;
    settings.frame = static_cast<double>(frame);
    settings.renderScaleX = plan.renderScaleX;
    settings.renderScaleY = plan.renderScaleY;
    const RasterInfo raster = emptyRaster(plan);
    PluginHost_MEMORY_Impl host(raster, raster, &plan.parameters, settings);
    Orbel_UserData shape;
    setUserDataPath(&shape, plan.shapePath.c_str());
    host.setUserData(&shape);
    host.setShapeText(plan.shapeText);
    const PathOverlay overlay = pathOverlay(&host);
    json paths = json::array();
    for (const PathOverlay::Outline& outline : overlay.outlines) {
        paths.push_back(lineJson(outline.points));
    }
    ParameterValue camera{};
    plan.parameters.evaluate(PARAM_CAMERA_XY, static_cast<double>(frame), camera);
    return {
        {"paths", std::move(paths)},
        {"fractions", fractionsJson(overlay)},
        {"start", pointJson(overlay.start)},
        {"end", pointJson(overlay.end)},
        {"position", pointJson(overlay.position)},
        {"positionAxes",
         {lineJson({overlay.positionAxes[0]}), lineJson({overlay.positionAxes[1]})}},
        {"camera", {rounded(camera[0] * plan.size.width), rounded(camera[1] * plan.size.height)}}};
}

} // namespace orbel::studio
