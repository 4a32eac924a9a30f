#pragma once

#include "pixel/PixelTraits.h"
#include "pixel/RowKernels.h"
#include "render/FrameTarget.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace orbel {

/// The part of a sample that the stamps of one batch belong to.
template<class P>
struct SampleSlice {
    using T = typename P::Component;
    using Pixel = std::array<T, componentsPerPixel>;

    /// How many alphas a format of single bytes has; that of others is too many for a table.
    static constexpr std::size_t ALPHAS = sizeof(T) == 1 ? 256 : 0;

    int sample;             ///< number, from 0
    Pixel colour;           ///< of the sample, at alpha 0
    HslAmounts modulation;  ///< of the colour by alpha
    bool begins = true;     ///< the sample begins in this batch
    bool ends = false;      ///< and ends in it
    bool isOrdinary = true; ///< the kernels can paint all of its stamps
    std::size_t last = 0;   ///< the number of the stamp behind its last one
    Pixel background{};     ///< what untouched pixels come to in the sample
    Pixel meanBefore{};     ///< and in the mean of the samples before
    Pixel meanAfter{};      ///< and in that mean with this sample
    /// The colour at every alpha, as pixels lie in memory, if there is modulation.
    std::array<std::uint32_t, ALPHAS> modulated{};

    SampleSlice(int number, const SampleLook& look, const RowKernels<P>& kernels)
        : sample(number),
          colour(pixelOf(look)),
          modulation{look.highAlphaBrightness, look.lowAlphaHueTurns * 360.0,
                     look.lowAlphaSaturation},
          background(colour) {
        if (modulation.any()) {
            kernels.hslModulate(background.data(), 1, modulation);
            fillTable(kernels);
        }
    }

    /// A pixel of the colour, as `FillColor` fills it in.
    static Pixel pixelOf(const SampleLook& look) {
        Pixel pixel{};
        pixel[P::FORMAT::red] = truncateTo<T>(P::MAX_VALUE() * look.colour[0]);
        pixel[P::FORMAT::green] = truncateTo<T>(P::MAX_VALUE() * look.colour[1]);
        pixel[P::FORMAT::blue] = truncateTo<T>(P::MAX_VALUE() * look.colour[2]);
        pixel[P::FORMAT::alpha] = truncateTo<T>(P::MAX_VALUE() * look.colour[3]);
        return pixel;
    }

private:
    void fillTable(const RowKernels<P>& kernels) {
        if constexpr (ALPHAS > 0) {
            std::array<Pixel, ALPHAS> pixels{};
            for (std::size_t alpha = 0; alpha < ALPHAS; ++alpha) {
                pixels[alpha] = colour;
                pixels[alpha][P::FORMAT::alpha] = static_cast<T>(alpha);
            }
            kernels.hslModulate(pixels[0].data(), static_cast<int>(ALPHAS), modulation);
            std::memcpy(modulated.data(), pixels.data(), sizeof(modulated));
        }
    }
};

/// The pixel at a place of a raster.
template<class P>
[[nodiscard]] typename P::Component* pixelsAt(const RasterInfo& raster, int y, int x) {
    return static_cast<typename P::Component*>(static_cast<void*>(raster.row(y))) +
           std::ptrdiff_t{x} * componentsPerPixel;
}

} // namespace orbel
