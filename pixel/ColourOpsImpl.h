#pragma once

#include "host/Numeric.h"
#include "pixel/ColourOps.h"
#include "pixel/PixelWalk.h"
#include "pixel/RowKernels.h"

#include <array>

namespace orbel {

template<typename P, typename T, typename W, typename F, typename FORMAT>
int Premult(P, PluginHost_API* host, PluginRaster_API* raster) {
    const auto& kernels = rowKernels<P>();
    forEachRow<T>([&](int width, T* row) { kernels.premult(row, width); },
                  describeRaster(host, raster));
    return 0;
}

template<typename P, typename T, typename W, typename F, typename FORMAT>
int UnPremult(P, PluginHost_API* host, PluginRaster_API* raster) {
    const auto& kernels = rowKernels<P>();
    forEachRow<T>([&](int width, T* row) { kernels.unPremult(row, width); },
                  describeRaster(host, raster));
    return 0;
}

template<typename P, typename T, typename W, typename F, typename FORMAT>
int MultiplyAlpha(P, PluginHost_API* host, float amount, PluginRaster_API* raster) {
    const auto& kernels = rowKernels<P>();
    forEachRow<T>([&](int width, T* row) { kernels.multiplyAlpha(row, width, amount); },
                  describeRaster(host, raster));
    return 0;
}

template<typename P, typename T, typename W, typename F, typename FORMAT>
int AVXSetAlpha(P, PluginHost_API* host, PluginRaster_API* raster) {
    forEachPixel<T>([](T* pixel) { pixel[FORMAT::alpha] = static_cast<T>(P::MAX_VALUE()); },
                    describeRaster(host, raster));
    return 0;
}

template<typename P, typename T, typename W, typename F, typename FORMAT>
int AVXUnsetAlpha(P, PluginHost_API* host, PluginRaster_API* first, PluginRaster_API* second) {
    const auto clear = [](auto*... pixels) { ((pixels[FORMAT::alpha] = T{0}), ...); };
    const RasterInfo info = describeRaster(host, first);
    if (second == nullptr) {
        forEachPixel<T>(clear, info);
    } else {
        forEachPixel<T>(clear, info, describeRaster(host, second));
    }
    return 0;
}

template<typename P, typename T, typename W, typename F, typename FORMAT>
int FillColor(P, PluginHost_API* host, const double* colour, PluginRaster_API* raster) {
    std::array<T, componentsPerPixel> pixel{};
    pixel[FORMAT::red] = truncateTo<T>(P::MAX_VALUE() * colour[0]);
    pixel[FORMAT::green] = truncateTo<T>(P::MAX_VALUE() * colour[1]);
    pixel[FORMAT::blue] = truncateTo<T>(P::MAX_VALUE() * colour[2]);
    pixel[FORMAT::alpha] = truncateTo<T>(P::MAX_VALUE() * colour[3]);
    const auto& kernels = rowKernels<P>();
    forEachRow<T>([&](int width, T* row) { kernels.fill(row, width, pixel.data()); },
                  describeRaster(host, raster));
    return 0;
}

template<typename P, typename T, typename W, typename F, typename FORMAT>
int HSLModulate(P, PluginHost_API* host, PluginRaster_API* raster, double lowAlphaValueAdd,
                double lowAlphaHueTurns, double highAlphaSatAdd) {
    const HslAmounts amounts{lowAlphaValueAdd, lowAlphaHueTurns * 360.0, highAlphaSatAdd};
    if (!amounts.any()) {
        return 0;
    }
    const auto& kernels = rowKernels<P>();
    forEachRow<T>([&](int width, T* row) { kernels.hslModulate(row, width, amounts); },
                  describeRaster(host, raster));
    return 0;
}

} // namespace orbel
