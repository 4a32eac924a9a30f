#pragma once

#include "host/RasterProxy.h"
#include "pixel/Acceleration.h"
#include "pixel/PixelWalk.h"
#include "render/LayerPainterImpl.h"
#include "render/RenderImpl.h"
#include "render/StrokeFrame.h"
#include "render/StrokeSample.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <optional>
#include <utility>

namespace orbel {

/// Hands the stamps of every span to a sink.
class StampingSpanRenderer final : public SpanRenderer {
public:
    /// `width` and `height` are those of the raster that is drawn into.
    StampingSpanRenderer(PluginHost_API* host, int width, int height, StampSink& sink)
        : m_host(host), m_width(width), m_height(height), m_sink(sink) {}
    int drawSpan(void* path, OutlineChords* chords, const BrushStroke& stroke,
                 const ProjectionSetup& projection) override {
        ProjectionSetup setup = projection;
        setup.width = m_width;
        setup.height = m_height;
        return walkStroke(m_host, nullptr, path, stroke, setup, m_sink, chords);
    }

private:
    PluginHost_API* m_host;
    int m_width;
    int m_height;
    StampSink& m_sink;
};

/// Whether rows of both rasters, of pixels of this size, can be worked on side by side.
[[nodiscard]] inline bool canPairRows(const RasterInfo& a, const RasterInfo& b, int pixelBytes) {
    const auto span = [](const RasterInfo& raster) {
        const std::uint8_t* const top = raster.data;
        const std::uint8_t* const bottom = raster.row(raster.height - 1);
        const std::ptrdiff_t rowSize = std::ptrdiff_t{raster.width} * raster.bytesPerPixel;
        return std::pair{std::min(top, bottom, std::less<>()),
                         std::max(top, bottom, std::less<>()) + rowSize};
    };
    constexpr int largest = std::numeric_limits<std::int16_t>::max(); // of a stamp's box
    if (a.width != b.width || a.height != b.height || a.width < 1 || a.height < 1 ||
        a.width > largest || a.height > largest || a.bytesPerPixel != pixelBytes ||
        b.bytesPerPixel != pixelBytes) {
        return false;
    }
    const auto [beginA, endA] = span(a);
    const auto [beginB, endB] = span(b);
    return !std::less<>()(beginA, endB) || !std::less<>()(beginB, endA);
}

/// Draws all samples of a planned frame. 0, or the first error or abort code; 1 for an exception,
/// so that what was drawn until then is left as it would be after an error.
template<class P>
int drawSamples(const StrokeFrame& frame, const SamplePlan& plan, LayerPainter<P>& painter,
                double* opacity) try {
    StampingSpanRenderer renderer(frame.host, painter.width(), painter.height(), painter);
    FrameChords chords(frame.host);
    AnimatedParameters p = frame.args;
    for (int s = 0; s < plan.levels; ++s) {
        const long time = plan.time(s);
        if (plan.blur) {
            p = animatedParametersAt(frame.host, time, p);
        }
        *opacity = p.opacity * FRACTION_PER_PERCENT;
        painter.beginSample(p);
        if (const int error = drawSample(frame, p, time, renderer, &chords); error != 0) {
            return error;
        }
        painter.endSample();
    }
    return 0;
} catch (...) {
    return 1; // as the frame does
}

/// Renders a frame band by band: the same bytes, errors and calls of the host as those of
/// `StrokeRender`, whose passes over whole rasters are the law. Nothing is returned, and no pixel
/// was touched, when a frame has to go that way. `howToFinish(mode, opacity)` gives the
/// `LayerFinish` for the driver's answers.
template<class P, class HowToFinish>
std::optional<int> renderInBands(PluginHost_API* host, const AlphaHandling& alpha,
                                 PluginRaster_API* input, PluginRaster_API* output,
                                 const HowToFinish& howToFinish) {
    constexpr int pixelBytes = componentsPerPixel * static_cast<int>(sizeof(typename P::Component));
    const StampKernels* const stamps = stampKernels<P>(accelerationLevel());
    typename LayerPainter<P>::Rasters rasters{describeRaster(host, input),
                                              describeRaster(host, output), RasterInfo{}};
    if (stamps == nullptr || host->getAEHost() != nullptr ||
        !canPairRows(rasters.input, rasters.output, pixelBytes)) {
        return std::nullopt;
    }
    const StrokeFrame frame(host);
    if (frame.drawsNothing()) {
        return std::nullopt;
    }
    if (HasFixedShapeProperty(host) != 0) {
        frame.installShape(output);
    }
    int error = 0;
    const SamplePlan plan = frame.planSamples(&error);
    PluginRasterProxy sample(host, nullptr, false, true);
    if (error == 0 && plan.blur) {
        sample.setRaster(allocSample(host, output), true);
        error = sample.getImpl() == nullptr ? 1 : 0;
    }
    if (sample.getImpl() != nullptr) {
        rasters.sample = describeRaster(host, sample.getImpl());
        if (!canPairRows(rasters.sample, rasters.output, pixelBytes)) {
            return std::nullopt;
        }
    }
    LayerPainter<P> painter(rasters, alpha, rowKernels<P>(), *stamps);
    double opacity = frame.opacity();
    if (error == 0) {
        error = drawSamples(frame, plan, painter, &opacity);
    }
    if (error != 0) {
        painter.leave(frame.args, !plan.blur);
    } else {
        painter.finish(howToFinish(frame.transferMode(), opacity));
    }
    return error;
}

} // namespace orbel
