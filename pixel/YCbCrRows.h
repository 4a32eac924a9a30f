#pragma once

#include "pixel/PixelTraits.h"

#include <array>
#include <cstdint>

namespace orbel {

/// How samples of Y'CbCr become red, green and blue: factors in units of 2^-21 for samples of 16
/// bits, made by `yCbCrWeights`.
struct YCbCrWeights {
    std::int32_t black; ///< the luma sample that stands for 0
    std::int32_t luma;
    std::int32_t redByCr;
    std::int32_t greenByCb;
    std::int32_t greenByCr;
    std::int32_t blueByCb;
};

/// For a matrix given by the shares of red and blue in luma, as 0.2126 and 0.0722 of BT.709.
/// Limited range runs from 16 to 235 (240 for chroma) of 256; samples of full range from 0 to
/// 65535.
[[nodiscard]] YCbCrWeights yCbCrWeights(double redShare, double blueShare, bool fullRange);

/// Rows of pixels of 8 bits to and from Y'CbCr: one immutable table per level of acceleration, all
/// of the same effect to the byte.
template<typename P>
struct YCbCrRows {
    /// Neighbours, from top to bottom.
    using Rows = std::array<const std::uint8_t*, 4>;
    /// What two rows come to: two of luma, and one of each chroma at half their width.
    struct Halved {
        std::uint8_t* top;
        std::uint8_t* bottom;
        std::uint8_t* cb;
        std::uint8_t* cr;
    };
    /// Samples of 16 bits, chroma as wide as luma, where 128 of 256 is no colour.
    struct Samples {
        const std::uint16_t* luma;
        const std::uint16_t* cb;
        const std::uint16_t* cr;
    };

    /// Codes the second and the third of four rows of an even number of pixels by the matrix of
    /// BT.709 in limited range, rounded. Chroma lies in the middle of two by two pixels; those
    /// around them are weighed with it, -1 9 9 -1 each way, which keeps edges sharper than their
    /// mean. At the edge of a picture the row or pixel there is repeated. Alpha is not read.
    void (*code)(const Rows& rows, int pixels, const Halved& out);
    /// The same of straight pixels over black: colours times alpha, rounded, are coded.
    void (*codeOverBlack)(const Rows& rows, int pixels, const Halved& out);
    /// Makes opaque pixels, rounded and limited to 0 and 255.
    void (*decode)(const Samples& samples, int pixels, const YCbCrWeights& weights,
                   std::uint8_t* row);
};

/// The functions of a level; levels above the best one give the best.
template<typename P>
const YCbCrRows<P>& yCbCrRows(int level);

/// The functions of the level in use.
template<typename P>
const YCbCrRows<P>& yCbCrRows();

} // namespace orbel
