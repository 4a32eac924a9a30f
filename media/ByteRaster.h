#pragma once

#include "media/PixelConversion.h"

#include <cstdint>
#include <vector>

namespace orbel {

/// A raster of 8-bit pixels in the layout RF_RGBA8, for coders that take nothing finer.
class ByteRaster {
public:
    ByteRaster(int width, int height)
        : m_pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) *
                   componentsPerPixel) {
        m_info.data = m_pixels.data();
        m_info.pixelFormat = RF_RGBA8;
        m_info.width = width;
        m_info.height = height;
        m_info.rowBytes = width * componentsPerPixel;
        m_info.bytesPerPixel = componentsPerPixel;
    }
    ByteRaster(const ByteRaster&) = delete;
    ByteRaster& operator=(const ByteRaster&) = delete;
    ~ByteRaster() = default;

    [[nodiscard]] const RasterInfo& info() const { return m_info; }
    /// With straight alpha; `from` is how the raster, of the same size, carries its own.
    void fillStraight(const RasterInfo& raster, OutputAlpha from) {
        encodeStraight(raster, from, view());
    }

private:
    static constexpr int componentsPerPixel = 4;

    EncodedView<std::uint8_t> view() {
        auto* const pixels = m_pixels.data();
        return {pixels, pixels + 1, pixels + 2, pixels + 3, componentsPerPixel, m_info.rowBytes};
    }

    std::vector<std::uint8_t> m_pixels;
    RasterInfo m_info;
};

} // namespace orbel
