#pragma once

#include "host/PluginHost.h"
#include "media/Picture.h"

#include <cstddef>
#include <cstdint>

namespace orbel {

/// Fills the whole raster with a picture of the same size: components are converted to the raster's
/// depth (rounded, clamped where an integer is made from a float), then premultiplied with the
/// format's own arithmetic, as every other input of a frame is. Throws std::invalid_argument for
/// another size or for a layout other than the six that are rendered.
void fillRaster(const Picture& picture, const RasterInfo& raster);

/// Where the pixels of a raster go on the way to an encoder: packed or planar, any order. Steps
/// count components, not bytes.
template<typename T>
struct EncodedView {
    T* red = nullptr;
    T* green = nullptr;
    T* blue = nullptr;
    T* alpha = nullptr;
    std::ptrdiff_t pixelStep = 0;
    std::ptrdiff_t rowStep = 0;
};

// The ways out. Each walks the raster top-down, whatever its row stride, and throws
// std::invalid_argument for a layout other than the six.

/// Straight alpha: colour divided by alpha at the destination's own precision, rounded to nearest
/// and clamped; alpha 0 gives colour 0.
void encodeStraight(const RasterInfo& raster, const EncodedView<std::uint8_t>& view);
void encodeStraight(const RasterInfo& raster, const EncodedView<std::uint16_t>& view);

/// Premultiplied as it is, integers as fractions of their maximum.
void encodePremultiplied(const RasterInfo& raster, const EncodedView<float>& view);

/// Composited over black, alpha at its maximum: the premultiplied colour, clamped.
void encodeOpaque(const RasterInfo& raster, const EncodedView<std::uint8_t>& view);

} // namespace orbel
