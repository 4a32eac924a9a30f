#include "render/Render.h"

#include "host/RasterProxy.h"
#include "pixel/PixelWalk.h"
#include "pixel/TransferCodes.h"
#include "render/StrokeFrame.h"
#include "render/StrokeSample.h"
#include "render/Units.h"

#include <cstddef>

namespace orbel {

// A frame from its first step to its last: `RenderFrame` at the end takes the rasters and a target,
// `Render` has the stroke drawn into it, sample by sample, and what was drawn is combined with the
// picture.

namespace {

constexpr int MODE_LAYER_ALONE = 1; // "None"
constexpr int MODE_NORMAL = 2;

// The compositing code of a mode (menu index + 1); `TRANSFER_NOTHING` for no menu entry.
int transferCode(int mode, bool floatPixels) {
    if (mode < 1 || mode > static_cast<int>(TRANSFER_MENU.size())) {
        return TRANSFER_NOTHING;
    }
    const TransferMenuEntry& entry = TRANSFER_MENU[static_cast<std::size_t>(mode - 1)];
    return floatPixels ? entry.floatCode : entry.code;
}

// What becomes of the layer under a "Transfer Mode".
LayerFinish layerFinish(PluginHost_API* host, int mode, double opacity, bool floatPixels) {
    if (mode == MODE_NORMAL && host->ignoreNormalComposite()) {
        mode = MODE_LAYER_ALONE;
    }
    if (mode == MODE_LAYER_ALONE) {
        return {0, opacity};
    }
    const int code = transferCode(mode, floatPixels);
    return {code, code == 0 ? 1.0 : opacity}; // a mode that is none leaves the layer as it is
}

bool hasPixels(PluginHost_API* host, const PluginRasterProxy& raster) {
    return raster.getImpl() != nullptr && describeRaster(host, raster.getImpl()).data != nullptr;
}

SampleLook sampleLook(const RenderArguments& p) {
    return {{p.colorRed, p.colorGreen, p.colorBlue, 0.0},
            p.hiAlphaBrightBoost * FRACTION_PER_PERCENT,
            p.lowAlphaHueRotation * TURNS_PER_DEGREE,
            p.lowAlphaSatBoost * FRACTION_PER_PERCENT};
}

/// All samples of a planned frame, each with the parameters of its own time.
int drawSamples(const StrokeFrame& frame, const SamplePlan& plan, FrameTarget& target,
                double& opacity) {
    FrameChords chords(frame.host);
    RenderArguments p = frame.args;
    for (int s = 0; s < plan.levels; ++s) {
        const long time = plan.time(s);
        if (plan.blur) {
            frame.readSample(time, &p);
            opacity = p.opacity * FRACTION_PER_PERCENT;
        }
        target.beginSample(sampleLook(p));
        StampingSpanRenderer renderer(frame.host, target, target.width(), target.height());
        if (const int error = drawSample(frame, p, time, renderer, &chords); error != 0) {
            return error;
        }
        target.endSample();
    }
    return 0;
}

int drawFrame(PluginHost_API* host, PluginRaster_API* output, FrameTarget& target,
              int& transferMode, double& opacity, bool useShape, bool fillFirst) {
    const StrokeFrame frame(host);
    transferMode = frame.transferMode();
    opacity = frame.opacity();
    if (frame.drawsNothing()) {
        target.leave();
        frame.passThrough(&transferMode, &opacity);
        return 0;
    }
    if (fillFirst) {
        target.fill(sampleLook(frame.args));
    }
    if (useShape && HasFixedShapeProperty(host) != 0) {
        frame.installShape(output);
    }
    int error = 0;
    const SamplePlan plan = frame.planSamples(&error);
    if (error == 0 && plan.blur) {
        error = target.prepareSamples();
    }
    return error != 0 ? error : drawSamples(frame, plan, target, opacity);
}

} // namespace

int Render(PluginHost_API* host, PluginRaster_API* output, FrameTarget& target, int& transferMode,
           double& opacity, bool useShape, bool fillFirst) {
    int error = 1;
    try {
        error = drawFrame(host, output, target, transferMode, opacity, useShape, fillFirst);
    } catch (...) {
        // An error like any other: what was drawn until then stays.
    }
    if (error != 0) {
        target.leave();
    }
    return error;
}

int RenderFrame(PluginHost_API* host, const FrameFormat& format) try {
    const PluginRasterProxy input(host, host->getInputRaster(0), true, true);
    const PluginRasterProxy output(host, host->getOutputRaster(), true, true);
    if (!hasPixels(host, input) || !hasPixels(host, output)) {
        return 1;
    }
    const auto target = format.chooseTarget(host, input.getImpl(), output.getImpl());
    int mode = MODE_LAYER_ALONE;
    double opacity = 1.0;
    const int error = Render(host, output.getImpl(), *target, mode, opacity, true, true);
    return error != 0 ? error
                      : target->finish(layerFinish(host, mode, opacity, format.floatPixels));
} catch (...) {
    return 1;
}

} // namespace orbel
