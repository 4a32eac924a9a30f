#pragma once

#include "host/PluginHost.h"

#include <cstdint>
#include <memory>

namespace orbel::ofx {

/// The longest side of an image that is rendered.
inline constexpr int MAX_SIDE = 32767;

/// Bytes of one pixel of a format that hosts of this kind deliver (4, 8 or 16); 0 for any other.
[[nodiscard]] int pixelBytes(RasterFormat format);

/// An image on the heap, top row first, rows tightly packed. Owns its pixels, which are not
/// initialised.
class PixelBuffer {
public:
    PixelBuffer() = default;
    /// Throws `std::bad_alloc` when there is no memory, or no such image: sides from 1 to
    /// `MAX_SIDE`.
    PixelBuffer(int width, int height, RasterFormat format, float pixelAspect);

    /// The record of the pixels; valid as long as the buffer lives.
    [[nodiscard]] const RasterInfo& info() const { return m_info; }

private:
    std::unique_ptr<std::uint8_t[]> m_memory;
    RasterInfo m_info;
};

} // namespace orbel::ofx
