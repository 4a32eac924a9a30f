#pragma once

#include "render/Render.h"

#include "host/RasterProxy.h"
#include "pixel/ColourOps.h"
#include "pixel/TransferModes.h"
#include "render/StrokeFrame.h"
#include "render/StrokeRasteriserImpl.h"
#include "render/StrokeSample.h"
#include "render/Units.h"

#include <array>

namespace orbel {

/// Draws spans into one raster of one pixel format.
template<class P, class T, class W, class F, class Format>
class RasterSpanRenderer final : public SpanRenderer {
public:
    RasterSpanRenderer(PluginHost_API* host, PluginRaster_API* target)
        : m_host(host), m_target(target) {}
    int drawSpan(void* path, OutlineChords* chords, const BrushStroke& stroke,
                 const ProjectionSetup& projection) override {
        return DrawBezierPathLin<P, T, W, F, Format>(P{}, m_host, m_target, nullptr, path, chords,
                                                     stroke, projection);
    }

private:
    PluginHost_API* m_host;
    PluginRaster_API* m_target;
};

/// Fills with the stroke's colour at alpha 0: coverage builds up from nothing.
template<class P, class T, class W, class F, class Format>
int fillWithColor(PluginHost_API* host, const AnimatedParameters& p, PluginRaster_API* raster) {
    const std::array<double, 4> color{p.colorRed, p.colorGreen, p.colorBlue, 0.0};
    return FillColor<P, T, W, F, Format>(P{}, host, color.data(), raster);
}

/// One sample of the frame: stroke, copies, colour modulation.
template<class P, class T, class W, class F, class Format>
int renderSample(const StrokeFrame& frame, const AnimatedParameters& p, long time,
                 PluginRaster_API* target, FrameChords* chords) {
    RasterSpanRenderer<P, T, W, F, Format> renderer(frame.host, target);
    if (const int error = drawSample(frame, p, time, renderer, chords); error != 0) {
        return error;
    }
    return HSLModulate<P, T, W, F, Format>(
        P{}, frame.host, target, p.hiAlphaBrightBoost * FRACTION_PER_PERCENT,
        p.lowAlphaHueRotation * TURNS_PER_DEGREE, p.lowAlphaSatBoost * FRACTION_PER_PERCENT);
}

/// A raster like the output, to draw a sample in; null when the host has none.
inline PluginRaster_API* allocSample(PluginHost_API* host, PluginRaster_API* output) {
    int rowBytes = 0;
    return host->allocRaster(output->getWidth(), output->getHeight(), output->getPixelType(),
                             rowBytes, 0);
}

/// All samples of a blurred frame, averaged into the output by a running mean.
template<class P, class T, class W, class F, class Format>
int renderBlurred(const StrokeFrame& frame, const SamplePlan& plan, PluginRaster_API* output,
                  double& opacity) {
    PluginHost_API* const host = frame.host;
    const PluginRasterProxy sample(host, allocSample(host, output), true, true);
    if (sample.getImpl() == nullptr) {
        return 1;
    }
    FrameChords chords(host);
    AnimatedParameters p = frame.args;
    for (int s = 0; s < plan.levels; ++s) {
        const long time = plan.time(s);
        p = animatedParametersAt(host, time, p);
        opacity = p.opacity * FRACTION_PER_PERCENT;
        fillWithColor<P, T, W, F, Format>(host, p, sample.getImpl());
        if (const int error =
                renderSample<P, T, W, F, Format>(frame, p, time, sample.getImpl(), &chords);
            error != 0) {
            return error;
        }
        BlendImages<P, T, W, F, Format>(P{}, host, static_cast<float>(1.0 / (s + 1)),
                                        sample.getImpl(), output);
    }
    return 0;
}

template<class P, class T, class W, class F, class Format>
int Render(P /*pixel*/, T /*maximum*/, W /*wide*/, F /*single*/, Format /*format*/,
           PluginHost_API* host, int& transferMode, double& opacity, bool useShape,
           bool fillFirst) {
    const StrokeFrame frame(host);
    transferMode = frame.transferMode();
    opacity = frame.opacity();
    if (frame.drawsNothing()) {
        frame.passThrough(&transferMode, &opacity);
        return 0;
    }
    const PluginRasterProxy output(host, host->getOutputRaster(), true, true);
    if (output.getImpl() == nullptr) {
        return 1;
    }
    if (fillFirst) {
        fillWithColor<P, T, W, F, Format>(host, frame.args, output.getImpl());
    }
    if (useShape && HasFixedShapeProperty(host) != 0) {
        frame.installShape(output.getImpl());
    }
    int error = 0;
    const SamplePlan plan = frame.planSamples(&error);
    if (error != 0) {
        return error;
    }
    if (plan.blur) {
        return renderBlurred<P, T, W, F, Format>(frame, plan, output.getImpl(), opacity);
    }
    FrameChords chords(host);
    return renderSample<P, T, W, F, Format>(frame, frame.args, plan.firstTime, output.getImpl(),
                                            &chords);
}

} // namespace orbel
