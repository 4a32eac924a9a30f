#pragma once

#include "render/StrokeRasteriser.h"

#include "pixel/PixelTraits.h"
#include "render/StampProfile.h"

namespace orbel {

template<class P, class T, class W, class F, class Format>
void HQDrawSphere(P /*pixel*/, PluginHost_API* host, unsigned char* base, int rowBytes,
                  int pixelBytes, int width, int height, double radius, double x, double y,
                  double feather, double intensity) {
    if (!(radius > 0.0)) {
        return;
    }
    PlacedStamp stamp({x, y, radius, feather, intensity}, P::MAX_VALUE());
    if (!stamp.trim(width, height)) {
        return;
    }
    const auto squareRoot = [host](double q) { return host->math_sqrt(q); };
    for (int j = stamp.box.top; j <= stamp.box.bottom; ++j) {
        stampPixels<P>(base + static_cast<std::ptrdiff_t>(j) * rowBytes, pixelBytes, stamp, j,
                       stamp.box.left, stamp.box.right, squareRoot);
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
