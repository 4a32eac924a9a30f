#pragma once

#include "host/Numeric.h"
#include "pixel/ColourConversion.h"
#include "pixel/RowKernels.h"

#include <algorithm>
#include <array>

namespace orbel {

// The colour passes over one row, pixel by pixel: the reference that vector kernels have to match
// to the byte.

/// Calls `visit(pixel)` with the first component of every pixel of a row.
template<typename T, typename Visit>
void forEachPixelOfRow(T* row, int pixels, const Visit& visit) {
    for (int x = 0; x < pixels; ++x) {
        visit(row);
        row += componentsPerPixel;
    }
}

template<typename P>
struct ColourReference {
    using T = typename P::Component;
    using F = typename P::Float;
    using FORMAT = typename P::FORMAT;

    static void fill(T* row, int pixels, const T* colour) {
        const std::array<T, componentsPerPixel> c{colour[0], colour[1], colour[2], colour[3]};
        forEachPixelOfRow(row, pixels, [&c](T* pixel) { std::copy(c.begin(), c.end(), pixel); });
    }

    static void premult(T* row, int pixels) {
        forEachPixelOfRow(row, pixels, [](T* pixel) {
            const auto alpha = static_cast<F>(pixel[FORMAT::alpha]);
            for (const int channel : FORMAT::colours) {
                pixel[channel] = truncateTo<T>(P::multiply(static_cast<F>(pixel[channel]), alpha));
            }
        });
    }

    static void unPremult(T* row, int pixels) {
        constexpr auto maximum = static_cast<F>(P::MAX_VALUE());
        forEachPixelOfRow(row, pixels, [](T* pixel) {
            const auto alpha = static_cast<F>(pixel[FORMAT::alpha]);
            if (!(alpha > F{0})) {
                return;
            }
            for (const int channel : FORMAT::colours) {
                const F quotient = static_cast<F>(pixel[channel]) * maximum / alpha;
                pixel[channel] = truncateTo<T>(P::clamp_overflow(quotient));
            }
        });
    }

    static void multiplyAlpha(T* row, int pixels, float amount) {
        const F factor = P::fromFloat(amount);
        forEachPixelOfRow(row, pixels, [factor](T* pixel) {
            T& alpha = pixel[FORMAT::alpha];
            alpha = truncateTo<T>(P::multiply(static_cast<F>(alpha), factor));
        });
    }

    static void hslModulate(T* row, int pixels, const HslAmounts& amounts) {
        constexpr auto maximum = static_cast<float>(P::MAX_VALUE());
        const auto normalised = [](T component) {
            return static_cast<float>(component * P::RECIP_VALUE());
        };
        forEachPixelOfRow(row, pixels, [&](T* pixel) {
            float red = normalised(pixel[FORMAT::red]);
            float green = normalised(pixel[FORMAT::green]);
            float blue = normalised(pixel[FORMAT::blue]);
            modulateColour(amounts, normalised(pixel[FORMAT::alpha]), red, green, blue);
            pixel[FORMAT::red] = truncateTo<T>(maximum * red);
            pixel[FORMAT::green] = truncateTo<T>(maximum * green);
            pixel[FORMAT::blue] = truncateTo<T>(maximum * blue);
        });
    }

    /// Modulates one colour, components in 0 to 1, by its alpha.
    static void modulateColour(const HslAmounts& amounts, float alpha, float& red, float& green,
                               float& blue) {
        float h = 0.0F;
        float s = 0.0F;
        float v = 0.0F;
        // Green and blue change places on the way in and out, so that hues turn the other way:
        // meant.
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
};

} // namespace orbel
