#include "render/Render.h"

#include "render/StrokeFrame.h"
#include "render/StrokeSample.h"
#include "render/Units.h"

namespace orbel {

namespace {

SampleLook sampleLook(const AnimatedParameters& p) {
    return {{p.colorRed, p.colorGreen, p.colorBlue, 0.0},
            p.hiAlphaBrightBoost * FRACTION_PER_PERCENT,
            p.lowAlphaHueRotation * TURNS_PER_DEGREE,
            p.lowAlphaSatBoost * FRACTION_PER_PERCENT};
}

/// All samples of a planned frame, each with the parameters of its own time.
int drawSamples(const StrokeFrame& frame, const SamplePlan& plan, FrameTarget& target,
                double& opacity) {
    FrameChords chords(frame.host);
    AnimatedParameters p = frame.args;
    for (int s = 0; s < plan.levels; ++s) {
        const long time = plan.time(s);
        if (plan.blur) {
            p = animatedParametersAt(frame.host, time, p);
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

} // namespace orbel
