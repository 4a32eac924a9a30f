#pragma once

#include "host/AlphaHandling.h"
#include "host/PluginHost.h"
#include "media/Picture.h"

#include <cstddef>
#include <cstdint>

namespace orbel {

/// Fills the whole raster with a picture of the same size: components are converted to the raster's
/// depth (rounded, clamped where an integer is made from a float). Premultiplied, that is done with
/// the format's own arithmetic, which loses a little; straight, they stay as they are, colour 0
/// where alpha is 0. Opaque is taken for straight. Throws std::invalid_argument for another size or
/// for a layout other than the six that are rendered.
void fillRaster(const Picture& picture, const RasterInfo& raster, SourceAlpha alpha);

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
// std::invalid_argument for a layout other than the six. `from` is how the raster carries its
// alpha.

/// Straight alpha. Premultiplied colour is divided by alpha at the destination's own precision,
/// rounded to nearest and clamped; alpha 0 gives colour 0.
void encodeStraight(const RasterInfo& raster, OutputAlpha from,
                    const EncodedView<std::uint8_t>& view);
void encodeStraight(const RasterInfo& raster, OutputAlpha from,
                    const EncodedView<std::uint16_t>& view);

/// Premultiplied, integers as fractions of their maximum.
void encodePremultiplied(const RasterInfo& raster, OutputAlpha from,
                         const EncodedView<float>& view);

/// Composited over black, alpha at its maximum: the premultiplied colour, rounded and clamped.
void encodeOpaque(const RasterInfo& raster, OutputAlpha from,
                  const EncodedView<std::uint8_t>& view);

} // namespace orbel
