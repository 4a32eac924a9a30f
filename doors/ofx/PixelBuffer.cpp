#include "doors/ofx/PixelBuffer.h"

#include <new>

namespace orbel::ofx {

int pixelBytes(RasterFormat format) {
    switch (format) {
    case RF_RGBA8:
        return 4;
    case RF_RGBA16:
        return 8;
    case RF_RGBA32F:
        return 16;
    default:
        return 0;
    }
}

PixelBuffer::PixelBuffer(int width, int height, RasterFormat format, float pixelAspect) {
    const int bytes = pixelBytes(format);
    if (width < 1 || height < 1 || width > MAX_SIDE || height > MAX_SIDE || bytes == 0) {
        throw std::bad_alloc();
    }
    m_info.pixelFormat = format;
    m_info.width = width;
    m_info.height = height;
    m_info.rowBytes = width * bytes;
    m_info.bytesPerPixel = bytes;
    m_info.pixelAspect = pixelAspect;
    const auto size = static_cast<std::size_t>(height) * static_cast<std::size_t>(m_info.rowBytes);
    m_memory = std::make_unique_for_overwrite<std::uint8_t[]>(size);
    m_info.data = m_memory.get();
}

} // namespace orbel::ofx
