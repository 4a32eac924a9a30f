#include "pixel/YCbCrRows.h"

#include "pixel/Acceleration.h"
#include "pixel/YCbCrMatrix.h"
#include "pixel/kernels/VectorKernels.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace orbel {
namespace {

/// Colours of a pixel, or sums of several.
struct Rgb {
    std::int32_t red = 0;
    std::int32_t green = 0;
    std::int32_t blue = 0;

    Rgb operator+(const Rgb& other) const {
        return {red + other.red, green + other.green, blue + other.blue};
    }
};

Rgb weighed(const Rgb& middle, const Rgb& beside) {
    return {chromaWeighed(middle.red, beside.red), chromaWeighed(middle.green, beside.green),
            chromaWeighed(middle.blue, beside.blue)};
}

std::uint8_t lumaOf(const Rgb& c) {
    const std::int32_t sum =
        Bt709::lumaRed * c.red + Bt709::lumaGreen * c.green + Bt709::lumaBlue * c.blue;
    return static_cast<std::uint8_t>((sum + Bt709::lumaBase) >> Bt709::lumaBits);
}

std::uint8_t chromaOf(std::int32_t sum) {
    return static_cast<std::uint8_t>(
        std::clamp((sum + Bt709::chromaBase) >> Bt709::chromaBits, 0, 255));
}

template<typename P, bool overBlack>
Rgb coloursOf(const std::uint8_t* pixel) {
    const auto colour = [&](int component) -> std::int32_t {
        const std::int32_t value = pixel[component];
        if constexpr (overBlack) {
            return (value * pixel[P::FORMAT::alpha] + 127) / 255;
        }
        return value;
    };
    return {colour(P::FORMAT::red), colour(P::FORMAT::green), colour(P::FORMAT::blue)};
}

template<typename P, bool overBlack>
void codeRows(const typename YCbCrRows<P>::Rows& rows, int pixels,
              const typename YCbCrRows<P>::Halved& out) {
    const auto at = [&](std::size_t row, int x) {
        return coloursOf<P, overBlack>(rows[row] + std::ptrdiff_t{x} * componentsPerPixel);
    };
    const auto column = [&](int x) {
        const int inside = std::clamp(x, 0, pixels - 1);
        return weighed(at(1, inside) + at(2, inside), at(0, inside) + at(3, inside));
    };
    for (int x = 0; x < pixels; ++x) {
        out.top[x] = lumaOf(at(1, x));
        out.bottom[x] = lumaOf(at(2, x));
    }
    for (int x = 0; x < pixels; x += 2) {
        const Rgb sum = weighed(column(x) + column(x + 1), column(x - 1) + column(x + 2));
        out.cb[x / 2] = chromaOf(Bt709::cbRed * sum.red + Bt709::cbGreen * sum.green +
                                 Bt709::cbBlue * sum.blue);
        out.cr[x / 2] = chromaOf(Bt709::crRed * sum.red + Bt709::crGreen * sum.green +
                                 Bt709::crBlue * sum.blue);
    }
}

std::uint8_t decodedComponent(std::int32_t sum) {
    constexpr std::int32_t half = 1 << (decodedBits - 1);
    return static_cast<std::uint8_t>(std::clamp((sum + half) >> decodedBits, 0, 255));
}

template<typename P>
void decodeRow(const typename YCbCrRows<P>::Samples& samples, int pixels,
               const YCbCrWeights& weights, std::uint8_t* row) {
    using Format = typename P::FORMAT;
    std::uint8_t* pixel = row;
    for (std::ptrdiff_t x = 0; x < pixels; ++x, pixel += componentsPerPixel) {
        const std::int32_t luma = weights.luma * (samples.luma[x] - weights.black);
        const std::int32_t cb = samples.cb[x] - 32768;
        const std::int32_t cr = samples.cr[x] - 32768;
        pixel[Format::red] = decodedComponent(luma + weights.redByCr * cr);
        pixel[Format::green] =
            decodedComponent(luma + weights.greenByCb * cb + weights.greenByCr * cr);
        pixel[Format::blue] = decodedComponent(luma + weights.blueByCb * cb);
        pixel[Format::alpha] = 255;
    }
}

template<typename P>
using Levels = std::array<YCbCrRows<P>, ACCELERATION_LEVELS>;

template<typename P>
Levels<P> makeLevels() {
    Levels<P> levels;
    levels.fill({&codeRows<P, false>, &codeRows<P, true>, &decodeRow<P>});
#if ORBEL_HAVE_HIGHWAY
    for (int level = 1; level <= bestAccelerationLevel(); ++level) {
        enterYCbCrKernels(level, levels[static_cast<std::size_t>(level)]);
    }
#endif
    return levels;
}

} // namespace

YCbCrWeights yCbCrWeights(double redShare, double blueShare, bool fullRange) {
    const double greenShare = 1.0 - redShare - blueShare;
    const double luma = fullRange ? 255.0 / 65535.0 : 255.0 / (219.0 * 256.0);
    const double chroma = fullRange ? 255.0 / 65535.0 : 255.0 / (224.0 * 256.0);
    const double redByCr = 2.0 * (1.0 - redShare);
    const double blueByCb = 2.0 * (1.0 - blueShare);
    const auto weight = [](double factor) {
        return static_cast<std::int32_t>(std::lround(std::ldexp(factor, decodedBits)));
    };
    return {fullRange ? 0 : 16 * 256,
            weight(luma),
            weight(chroma * redByCr),
            weight(-chroma * blueByCb * blueShare / greenShare),
            weight(-chroma * redByCr * redShare / greenShare),
            weight(chroma * blueByCb)};
}

template<typename P>
const YCbCrRows<P>& yCbCrRows(int level) {
    static const Levels<P> levels = makeLevels<P>();
    return levels[static_cast<std::size_t>(std::clamp(level, 0, bestAccelerationLevel()))];
}

template<typename P>
const YCbCrRows<P>& yCbCrRows() {
    return yCbCrRows<P>(accelerationLevel());
}

template const YCbCrRows<PIXEL_ARGB8>& yCbCrRows<PIXEL_ARGB8>(int level);
template const YCbCrRows<PIXEL_RGBA8>& yCbCrRows<PIXEL_RGBA8>(int level);
template const YCbCrRows<PIXEL_ARGB8>& yCbCrRows<PIXEL_ARGB8>();
template const YCbCrRows<PIXEL_RGBA8>& yCbCrRows<PIXEL_RGBA8>();

} // namespace orbel
