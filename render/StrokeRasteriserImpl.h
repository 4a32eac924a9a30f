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

} // namespace orbel
