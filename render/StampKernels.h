#pragma once

#include "pixel/PixelTraits.h"
#include "render/StampProfile.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>

namespace orbel {

/// Rows of a raster that stamps are painted into. Rows must be aligned for a component.
struct StampRows {
    std::uint8_t* data;      ///< first byte of row 0 of the raster
    std::ptrdiff_t rowBytes; ///< negative when bottom-up
    int width;               ///< pixels
    int first;               ///< only rows from here on are painted
    int last;                ///< the last one that is

    [[nodiscard]] std::uint8_t* row(int y) const { return data + y * rowBytes; }
};

/// Paints one stamp pixel by pixel.
template<class P>
void stampRows(const StampRows& rows, const PlacedStamp& stamp) {
    constexpr int pixelBytes = componentsPerPixel * static_cast<int>(sizeof(typename P::Component));
    const int last = std::min<int>(rows.last, stamp.box.bottom);
    for (int y = std::max<int>(rows.first, stamp.box.top); y <= last; ++y) {
        stampPixels<P>(rows.row(y), pixelBytes, stamp, y, stamp.box.left, stamp.box.right,
                       [](double q) { return std::sqrt(q); });
    }
}

/// How a sample goes into the mean of those before, in pixels of four bytes as they lie in memory.
struct MeanStep {
    float amount;                 ///< of the sample, 0 to 1
    const std::uint32_t* byAlpha; ///< what each alpha of the sample stands for; null: for itself
    std::uint32_t blank;          ///< where nothing was drawn: in the sample
    std::uint32_t before;         ///< in the mean
    std::uint32_t after;          ///< and in the mean with this sample
};

/// How to stamp one pixel format, to the same bytes as `HQDrawSphere`.
struct StampKernels {
    /// Paints the stamps with the given numbers, in that order. With `solidFirst` stamps of full
    /// strength may make opaque what they cover before it is their turn: a pixel that they cover
    /// ends up opaque whatever else is painted there. At most `mostRows` rows at a time. Vectors
    /// begin in a stamp's box, or with the last pixels of a row: up to `mostBeside` more pixels are
    /// read, and written back as they are.
    void (*paint)(const StampRows& rows, const PlacedStamp* stamps,
                  std::span<const std::uint32_t> order, bool solidFirst);
    /// Replaces pixels of four bytes by those of a table that stand for their alphas; null for the
    /// formats of other sizes. `row` is the first of so many pixels.
    void (*recolour)(std::uint8_t* row, int pixels, const std::uint32_t* byAlpha);

    /// Takes pixels of a sample of four bytes into a mean; null for the formats of other sizes.
    /// Both are the first of so many pixels.
    void (*takeIntoMean)(const std::uint8_t* sample, std::uint8_t* mean, int pixels,
                         const MeanStep& step);

    static constexpr int mostRows = 64;
    static constexpr int mostBeside = 15; ///< one less than a vector has pixels
};

/// Whether the kernels may paint a stamp: it lies within the bounds that they reckon with. Others
/// are to be painted pixel by pixel.
[[nodiscard]] inline bool kernelsCanPaint(const PlacedStamp& stamp, double maximum) {
    constexpr double largest = 1e6; // whole numbers up to here, and some more, are exact in float
    const BrushProfile& brush = stamp.brush;
    return stamp.amount >= 0.0 && stamp.amount <= maximum && std::fabs(stamp.x) <= largest &&
           std::fabs(stamp.y) <= largest && brush.outer <= largest && brush.inner >= 0.0 &&
           brush.inner < brush.outer;
}

/// The kernels of a format for a level of `Acceleration.h`; null for level 0.
template<class P>
[[nodiscard]] const StampKernels* stampKernels(int level);

} // namespace orbel
