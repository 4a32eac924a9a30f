#include "render/StrokeFrame.h"

#include "params/ParameterTable.h"
#include "render/BezierPath.h"
#include "render/Camera.h"
#include "render/Units.h"
#include "shapes/ShapeCache.h"

#include <algorithm>

namespace orbel {

namespace {

constexpr int BLUR_OFF = 1;
constexpr int MODE_NONE = 1;

int sampleCount(double levels) {
    const double most = findParameter(PARAM_LEVELS)->bounds().max;
    return saturateTo<int>(std::min(levels + 0.5, most));
}

} // namespace

StrokeFrame::StrokeFrame(PluginHost_API* renderHost)
    : host(renderHost),
      args(),
      geometry(frameGeometry(renderHost)),
      timeStep(renderHost->getTimeStep()),
      currentTime(renderHost->getCurrentTime()),
      timeScale(renderHost->getTimeScale()) {
    ParamsRetrieveValues(host, &args);
    blurMode = menuNumber(truncateTo<int>(GetMBlurValue(host)));
    // One outline after another neither wraps nor squeezes its taper.
    compressToFit = args.compressToFit && !args.strokeSequentially;
    loop = args.loop && !args.strokeSequentially;
}

double StrokeFrame::opacity() const {
    return args.opacity * FRACTION_PER_PERCENT;
}

bool StrokeFrame::drawsNothing() const {
    return args.start * FRACTION_PER_PERCENT >= args.end * FRACTION_PER_PERCENT &&
           blurMode == BLUR_OFF;
}

void StrokeFrame::passThrough(int* mode, double* layerOpacity) const {
    if (transferMode() == MODE_NONE) {
        host->fillOutput();
        return;
    }
    host->copyInputToOutput();
    *mode = MODE_NONE;
    *layerOpacity = 1.0;
}

void StrokeFrame::installShape(PluginRaster_API* output) const {
    PluginPath_API* const shape = getSVGShape(host);
    host->setPathAPI(shape);
    shape->setPathAspectRatio(host->geAspectRatio(output), host);
    shape->setPathScale(args.scaleX, args.scaleY, false);
}

SamplePlan StrokeFrame::planSamples(int* error) const {
    const double angle = args.shutterAngle / 360.0;
    const double phase = args.shutterPhase / 360.0;
    const int levels = sampleCount(args.levels);
    const bool shutter = blurMode != BLUR_OFF;
    const auto ticks = [](double time) { return static_cast<long>(saturateTo<int>(time)); };
    const auto current = static_cast<double>(currentTime);
    const long first = shutter ? ticks(timeStep * phase + current) : currentTime;
    const SamplePlan single{false, 1, 0.0, first, first};
    if (!shutter || angle == 0.0 || levels <= 1) {
        return single;
    }
    SamplePlan plan{true, levels, timeStep * angle / levels, first, first};
    plan.lastTime = ticks((levels - 1) * plan.sampleStep + static_cast<double>(first));
    return isStill(plan, error) ? single : plan;
}

void StrokeFrame::readSample(long time, RenderArguments* sample) const {
    HostParameterReader reader(host, timeObjectAt(host, time));
    readSampledArguments(reader, sample);
}

bool StrokeFrame::isStill(const SamplePlan& plan, int* error) const {
    RenderArguments first = args;
    RenderArguments last = args;
    readSample(plan.firstTime, &first);
    readSample(plan.lastTime, &last);
    Vx_Matrix4 firstCamera;
    Vx_Matrix4 lastCamera;
    double firstZoom = 0.0;
    double lastZoom = 0.0;
    *error = UGetCameraMatrix(host, &args, &firstCamera, &firstZoom, plan.firstTime, timeScale,
                              geometry);
    if (*error == 0) {
        *error = UGetCameraMatrix(host, &args, &lastCamera, &lastZoom, plan.lastTime, timeScale,
                                  geometry);
    }
    if (*error != 0) {
        warnOfMissingCamera(host, CameraWarning::Planning, args.shutterPhase);
        return false;
    }
    return sameSampledArguments(first, last) && CmpMatrix(&firstCamera, &lastCamera) != 0 &&
           firstZoom == lastZoom && host->getPathAPI() != nullptr &&
           CmpMasks(host, nullptr, nullptr, 1, GetMaskID(host), plan.firstTime, plan.lastTime,
                    timeStep, timeScale) != 0;
}

// The wordings differ by a ">" between the two places, which is meant.
void warnOfMissingCamera(PluginHost_API* host, CameraWarning when, double shutterPhase) {
    if (shutterPhase < 0.0) {
        host->showWarning("Could not find camera at current time.\n"
                          "Shutter Phase is negative - this requires a camera that starts\n"
                          "one frame ahead of the layer that Orbel is applied to.");
    } else if (when == CameraWarning::Planning) {
        host->showWarning("Could not find camera at current time.\n"
                          "Choose Layer>New>Camera to create a camera.");
    } else {
        host->showWarning("Could not find camera at current time.\n"
                          "Choose Layer>New Camera to create a camera.");
    }
}

} // namespace orbel
