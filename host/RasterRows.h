#pragma once

#include "host/PluginHost.h"

#include <cstddef>

namespace orbel {

// Images as their records describe them, row by row; row padding is never touched. Images without
// pixels are left alone.

/// Bytes of pixels in a row.
[[nodiscard]] std::size_t rowSize(const RasterInfo& image);
/// Sets every pixel to 0.
void clearRows(const RasterInfo& image);
/// Copies rows top-left aligned, as far as both images reach.
void copyRows(const RasterInfo& from, const RasterInfo& to);
/// The part of an image that a rectangle with exclusive right and bottom edges covers.
[[nodiscard]] RasterInfo croppedTo(const RasterInfo& image, const Vx_Rect& rect);

} // namespace orbel
