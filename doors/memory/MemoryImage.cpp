#include "doors/memory/MemoryImage.h"

#include <cstring>
#include <limits>
#include <stdexcept>
#include <string>

namespace orbel {

int bytesPerPixel(RasterFormat format) {
    switch (format) {
    case RF_ARGB8:
    case RF_RGBA8:
        return 4;
    case RF_ARGB16:
    case RF_RGBA16:
        return 8;
    case RF_ARGB32F:
    case RF_RGBA32F:
        return 16;
    default:
        return 0;
    }
}

MemoryImage::MemoryImage(int width, int height, RasterFormat format, RowLayout layout,
                         NewPixels pixels) {
    constexpr int largest = std::numeric_limits<std::int16_t>::max();
    if (width < 1 || height < 1 || width > largest || height > largest) {
        throw std::invalid_argument("image size " + std::to_string(width) + " x " +
                                    std::to_string(height) + " is outside 1 to 32767");
    }
    const int pixel = bytesPerPixel(format);
    if (pixel == 0 || layout.padding < 0) {
        throw std::invalid_argument("pixel format " + std::to_string(format) + " is not rendered");
    }
    const int stride = width * pixel + layout.padding;
    const std::size_t bytes = static_cast<std::size_t>(height) * static_cast<std::size_t>(stride);
    m_memory = pixels == NewPixels::Zero ? std::make_unique<std::uint8_t[]>(bytes)
                                         : std::make_unique_for_overwrite<std::uint8_t[]>(bytes);
    m_info.data = m_memory.get();
    m_info.pixelFormat = format;
    m_info.width = width;
    m_info.height = height;
    m_info.rowBytes = stride;
    m_info.bytesPerPixel = pixel;
    if (layout.bottomUp) {
        m_info.data = m_info.row(height - 1);
        m_info.rowBytes = -stride;
    }
}

std::size_t MemoryImage::rowSize() const {
    return static_cast<std::size_t>(m_info.width) * static_cast<std::size_t>(m_info.bytesPerPixel);
}

void MemoryImage::copyFrom(const MemoryImage& other) {
    for (int y = 0; y < m_info.height; ++y) {
        std::memcpy(m_info.row(y), other.m_info.row(y), rowSize());
    }
}

} // namespace orbel
