#pragma once

#include "pixel/PixelTraits.h"
#include "render/StampProfile.h"

#include <array>
#include <cstddef>
#include <cstdint>

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

/// What a pixel becomes under full cover, by its alpha, for the stamps of one strength.
struct FullCoverTable {
    double amount = -1.0; ///< of the stamps that it stands for
    std::array<std::uint32_t, 256> alphas{};
};

/// Ways of stamping one pixel format, all to the same bytes as `HQDrawSphere`.
struct StampKernels {
    /// Makes the pixels that a stamp covers fully opaque, which is what a stamp of full strength
    /// does to them whatever was painted before or comes after.
    void (*fillSolid)(const StampRows&, const PlacedStamp&);
    /// Paints a stamp: all of it, or only what `fillSolid` has left out. The table is kept from
    /// stamp to stamp.
    void (*paint)(const StampRows&, const PlacedStamp&, bool solidIsFilled, FullCoverTable*);
};

/// Whether the kernels may paint a stamp: it lies within the bounds that they reckon with. Others
/// are painted pixel by pixel.
[[nodiscard]] bool kernelsCanPaint(const PlacedStamp& stamp, double maximum);

/// The kernels of a format for a level of `Acceleration.h`; null for level 0.
template<class P>
[[nodiscard]] const StampKernels* stampKernels(int level);

} // namespace orbel
