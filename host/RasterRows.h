#pragma once

#include "host/PluginHost.h"

#include <cstddef>

namespace orbel {

// Images as their records describe them, row by row; row padding is never touched. Images without
// pixels are left alone.

/// Bytes of pixels in a row; 0 for an image without pixels.
[[nodiscard]] std::size_t rowSize(const RasterInfo& image);
/// The lowest address of an image's pixels: where a block of memory for them begins.
[[nodiscard]] inline std::uint8_t* firstByte(const RasterInfo& image) {
    return image.rowBytes < 0 && image.height > 0 ? image.row(image.height - 1) : image.data;
}
/// Sets every pixel to 0.
void clearRows(const RasterInfo& image);
/// Copies rows top-left aligned, as far as both images reach.
void copyRows(const RasterInfo& from, const RasterInfo& to);
/// The part of an image that a rectangle, edges included, covers; may be empty.
[[nodiscard]] RasterInfo croppedTo(const RasterInfo& image, const Vx_Rect& rect);

} // namespace orbel
