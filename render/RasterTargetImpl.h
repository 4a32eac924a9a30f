#pragma once

#include "pixel/ColourOps.h"
#include "pixel/HiddenColour.h"
#include "pixel/TransferModes.h"
#include "render/FrameTarget.h"
#include "render/SampleRaster.h"
#include "render/StrokeRasteriserImpl.h"

namespace orbel {

/// Draws a frame in passes over whole rasters, one after another: the reference implementation.
/// Input and output may be of different sizes, and share memory.
template<class P>
class RasterTarget final : public FrameTarget {
    using T = typename P::Component;
    using W = typename P::Wide;
    using F = typename P::Float;
    using Format = typename P::FORMAT;

public:
    /// Borrows the rasters, and makes the input straight. `alpha` is how the host carries alpha in
    /// the input and wants it in the output.
    RasterTarget(PluginHost_API* host, const AlphaHandling& alpha, PluginRaster_API* input,
                 PluginRaster_API* output)
        : m_host(host),
          m_alpha(alpha),
          m_input(input),
          m_output(output),
          m_sample(host),
          m_drawn(describeRaster(host, output)) {
        if (alpha.source == SourceAlpha::Premultiplied) {
            UnPremult<P, T, W, F, Format>(P{}, host, input);
        } else if (alpha.source == SourceAlpha::Opaque) {
            AVXSetAlpha<P, T, W, F, Format>(P{}, host, input);
        }
    }

    [[nodiscard]] int width() const override { return m_drawn.width; }
    [[nodiscard]] int height() const override { return m_drawn.height; }

    void fill(const SampleLook& look) override { fill(look, m_output); }

    int prepareSamples() override {
        const int error = m_sample.allocate(m_output);
        if (error == 0) {
            m_drawn = m_sample.info();
        }
        return error;
    }

    void beginSample(const SampleLook& look) override {
        m_look = look;
        if (averages()) {
            fill(look, m_sample.raster());
        }
    }

    void stamp(const Stamp& s) override {
        HQDrawSphere<P, T, W, F, Format>(P{}, m_host, m_drawn.data, m_drawn.rowBytes,
                                         m_drawn.bytesPerPixel, m_drawn.width, m_drawn.height,
                                         s.radius, s.x, s.y, s.feather, s.intensity);
    }

    void endSample() override {
        HSLModulate<P, T, W, F, Format>(P{}, m_host, averages() ? m_sample.raster() : m_output,
                                        m_look.highAlphaBrightness, m_look.lowAlphaHueTurns,
                                        m_look.lowAlphaSaturation);
        if (averages()) {
            BlendImages<P, T, W, F, Format>(P{}, m_host, static_cast<float>(1.0 / ++m_samples),
                                            m_sample.raster(), m_output);
        }
    }

    int finish(const LayerFinish& how) override {
        if (how.code != 0) {
            if (const int error = TransferComposite<P, T, W, F, Format>(
                    P{}, T{}, W{}, F{}, Format{}, m_host, how.code, how.opacity, 1.0, m_output,
                    m_input, m_output, false, false, false);
                error != 0) {
                return error;
            }
        } else if (how.opacity != 1.0) {
            MultiplyAlpha<P, T, W, F, Format>(P{}, m_host, static_cast<float>(how.opacity),
                                              m_output);
        }
        if (m_alpha.source == SourceAlpha::Premultiplied) {
            Premult<P, T, W, F, Format>(P{}, m_host, m_input);
        }
        if (m_alpha.output == OutputAlpha::Premultiplied) {
            Premult<P, T, W, F, Format>(P{}, m_host, m_output);
        } else {
            forEachRow<T>([](int width, const T* before,
                             T* after) { clearHiddenColour<P>(before, after, width); },
                          describeRaster(m_host, m_input), describeRaster(m_host, m_output));
        }
        return 0;
    }

    void leave() override {}

private:
    [[nodiscard]] bool averages() const { return m_sample.raster() != nullptr; }
    void fill(const SampleLook& look, PluginRaster_API* raster) {
        FillColor<P, T, W, F, Format>(P{}, m_host, look.colour.data(), raster);
    }

    PluginHost_API* m_host;
    AlphaHandling m_alpha;
    PluginRaster_API* m_input;
    PluginRaster_API* m_output;
    SampleRaster m_sample;
    RasterInfo m_drawn; // what stamps are placed on
    SampleLook m_look{};
    int m_samples = 0;
};

} // namespace orbel
