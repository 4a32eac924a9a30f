#pragma once

#include "render/StrokeRasteriser.h"

#include "host/Numeric.h"
#include "pixel/PixelTraits.h"
#include "render/TrimRect.h"

#include <algorithm>

namespace orbel {

/// The profile of a brush: full cover up to `inner`, a smooth step down to nothing at `outer`.
struct BrushProfile {
    double outer;
    double inner;
    double ringScale; ///< 1 / (outer - inner)

    BrushProfile(double radius, double feather) : outer(radius + 0.5) {
        const double edge = std::clamp(1.0 + (outer - 1.5) * 4.0, 1.0, 3.0);
        inner = std::max(outer - outer * feather - edge, 0.0);
        ringScale = 1.0 / (outer - inner);
    }
};

/// The pixels that a brush can touch, right and bottom inclusive. The edges saturate, so that a
/// brush far larger than the picture covers it instead of wrapping round.
[[nodiscard]] inline Vx_Rect brushBox(double x, double y, double outer) {
    return {saturateTo<std::int16_t>(y - 0.5 - outer), saturateTo<std::int16_t>(x - 0.5 - outer),
            saturateTo<std::int16_t>(0.5 + y + outer), saturateTo<std::int16_t>(0.5 + x + outer)};
}

template<class P, class T, class W, class F, class Format>
void HQDrawSphere(P /*pixel*/, PluginHost_API* host, unsigned char* base, int rowBytes,
                  int pixelBytes, int width, int height, double radius, double x, double y,
                  double feather, double intensity) {
    if (!(radius > 0.0)) {
        return;
    }
    if (radius < 2.0) {
        intensity *= radius * 0.5; // small brushes get fainter instead of smaller than a pixel
    }
    const BrushProfile brush(radius, feather);
    Vx_Rect box = brushBox(x, y, brush.outer);
    if (Vx_TrimRect(&box, width, height) == 0) {
        return;
    }
    const auto full = static_cast<T>(P::MAX_VALUE());
    const double amount = P::MAX_VALUE() * intensity / 255.0;
    const auto half = static_cast<double>(P::halfRoundPixel());
    const double reciprocal = P::RECIP_VALUE();
    const double outer2 = brush.outer * brush.outer;
    const double inner2 = brush.inner * brush.inner;
    for (int j = box.top; j <= box.bottom; ++j) {
        unsigned char* const row = base + static_cast<std::ptrdiff_t>(j) * rowBytes;
        const double dy = j - y;
        for (int i = box.left; i <= box.right; ++i) {
            T& alpha = reinterpret_cast<T*>(row + static_cast<std::ptrdiff_t>(i) *
                                                      pixelBytes)[Format::alpha];
            const double dx = i - x;
            const double q = dx * dx + dy * dy;
            if (alpha == full || q > outer2) {
                continue;
            }
            double cover = 1.0;
            if (q > inner2) {
                const double s = (brush.outer - host->math_sqrt(q)) * brush.ringScale;
                cover = (3 - 2 * s) * s * s;
            }
            const auto a = static_cast<double>(alpha);
            alpha = truncateTo<T>(a + (1 - a * reciprocal) * cover * amount + half);
        }
    }
}

/// Draws every stamp at once, in the order of the walk.
template<class P, class T, class W, class F, class Format>
class RasterStampSink final : public StampSink {
public:
    RasterStampSink(PluginHost_API* host, const RasterInfo& matte) : m_host(host), m_matte(matte) {}
    void stamp(const Stamp& s) override {
        HQDrawSphere<P, T, W, F, Format>(P{}, m_host, m_matte.data, m_matte.rowBytes,
                                         m_matte.bytesPerPixel, m_matte.width, m_matte.height,
                                         s.radius, s.x, s.y, s.feather, s.intensity);
    }

private:
    PluginHost_API* m_host;
    RasterInfo m_matte;
};

template<class P, class T, class W, class F, class Format>
int DrawBezierPathLin(P /*pixel*/, PluginHost_API* host, PluginRaster_API* matte, void** effectRef,
                      void* path, OutlineChords* chords, const BrushStroke& stroke,
                      ProjectionSetup projection) {
    RasterInfo info;
    host->getRasterInfo(matte, &info);
    projection.width = info.width;
    projection.height = info.height;
    RasterStampSink<P, T, W, F, Format> sink(host, info);
    return walkStroke(host, effectRef, path, stroke, projection, sink, chords);
}

} // namespace orbel
