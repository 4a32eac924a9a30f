#pragma once

#include "host/Numeric.h"
#include "pixel/ColourConversion.h"
#include "pixel/ColourOps.h"
#include "pixel/PixelWalk.h"

namespace orbel {

template<typename P, typename T, typename W, typename F, typename FORMAT>
int Premult(P, PluginHost_API* host, PluginRaster_API* raster) {
    forEachPixel<T>(
        [](T* pixel) {
            const auto alpha = static_cast<F>(pixel[FORMAT::alpha]);
            for (const int channel : FORMAT::colours) {
                pixel[channel] = truncateTo<T>(P::multiply(static_cast<F>(pixel[channel]), alpha));
            }
        },
        describeRaster(host, raster));
    return 0;
}

template<typename P, typename T, typename W, typename F, typename FORMAT>
int UnPremult(P, PluginHost_API* host, PluginRaster_API* raster) {
    constexpr auto maximum = static_cast<F>(P::MAX_VALUE());
    forEachPixel<T>(
        [](T* pixel) {
            const auto alpha = static_cast<F>(pixel[FORMAT::alpha]);
            if (!(alpha > F{0})) {
                return;
            }
            for (const int channel : FORMAT::colours) {
                const F quotient = static_cast<F>(pixel[channel]) * maximum / alpha;
                pixel[channel] = truncateTo<T>(P::clamp_overflow(quotient));
            }
        },
        describeRaster(host, raster));
    return 0;
}

template<typename P, typename T, typename W, typename F, typename FORMAT>
int MultiplyAlpha(P, PluginHost_API* host, float amount, PluginRaster_API* raster) {
    const F factor = P::fromFloat(amount);
    forEachPixel<T>(
        [factor](T* pixel) {
            T& alpha = pixel[FORMAT::alpha];
            alpha = truncateTo<T>(P::multiply(static_cast<F>(alpha), factor));
        },
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
    const T red = truncateTo<T>(P::MAX_VALUE() * colour[0]);
    const T green = truncateTo<T>(P::MAX_VALUE() * colour[1]);
    const T blue = truncateTo<T>(P::MAX_VALUE() * colour[2]);
    const T alpha = truncateTo<T>(P::MAX_VALUE() * colour[3]);
    forEachPixel<T>(
        [=](T* pixel) {
            pixel[FORMAT::red] = red;
            pixel[FORMAT::green] = green;
            pixel[FORMAT::blue] = blue;
            pixel[FORMAT::alpha] = alpha;
        },
        describeRaster(host, raster));
    return 0;
}

/// The amounts of `HSLModulate`, with the hue in degrees.
struct HslAmounts {
    double lowAlphaValue;
    double lowAlphaHueDegrees;
    double highAlphaSat;
};

/// Modulates one colour, components in 0 to 1, by its alpha.
inline void modulateColour(const HslAmounts& amounts, float alpha, float& red, float& green,
                           float& blue) {
    float h = 0.0F;
    float s = 0.0F;
    float v = 0.0F;
    // Green and blue change places on the way in and out, so that hues turn the other way: meant.
    RGB_to_HSL(red, blue, green, h, s, v);
    const double transparency = 1.0 - alpha;
    h = static_cast<float>(h + transparency * amounts.lowAlphaHueDegrees);
    v = static_cast<float>(v + transparency * amounts.lowAlphaValue);
    s = static_cast<float>(s + alpha * amounts.highAlphaSat);
    const int hue = truncateTo<int>(h) % 360; // keeps its sign
    // A percentage limited to 1.0, so that all but greys come out fully saturated: meant.
    s = s > 1.0F ? 1.0F : s;
    v = v > 1.0F ? 1.0F : v;
    HSL_to_RGB(static_cast<float>(hue), s, v, red, blue, green);
}

template<typename P, typename T, typename W, typename F, typename FORMAT>
int HSLModulate(P, PluginHost_API* host, PluginRaster_API* raster, double lowAlphaValueAdd,
                double lowAlphaHueTurns, double highAlphaSatAdd) {
    if (lowAlphaValueAdd == 0.0 && lowAlphaHueTurns == 0.0 && highAlphaSatAdd == 0.0) {
        return 0;
    }
    constexpr auto maximum = static_cast<float>(P::MAX_VALUE());
    const HslAmounts amounts{lowAlphaValueAdd, lowAlphaHueTurns * 360.0, highAlphaSatAdd};
    const auto normalised = [](T component) {
        return static_cast<float>(component * P::RECIP_VALUE());
    };
    forEachPixel<T>(
        [&](T* pixel) {
            float red = normalised(pixel[FORMAT::red]);
            float green = normalised(pixel[FORMAT::green]);
            float blue = normalised(pixel[FORMAT::blue]);
            modulateColour(amounts, normalised(pixel[FORMAT::alpha]), red, green, blue);
            pixel[FORMAT::red] = truncateTo<T>(maximum * red);
            pixel[FORMAT::green] = truncateTo<T>(maximum * green);
            pixel[FORMAT::blue] = truncateTo<T>(maximum * blue);
        },
        describeRaster(host, raster));
    return 0;
}

} // namespace orbel
