#pragma once

#include "host/PluginHost.h"

#include <cstdint>
#include <memory>

namespace orbel {

/// Bytes of one pixel of a rendered format (4, 8 or 16); 0 for a layout that is not rendered.
[[nodiscard]] int bytesPerPixel(RasterFormat format);

/// How the rows of an image lie in memory.
struct RowLayout {
    int padding = 0;       ///< bytes between the end of a row and the next one in memory
    bool bottomUp = false; ///< the top row is the last one in memory: negative row stride
};

/// What the pixels of a new image are.
enum class NewPixels {
    Zero,
    Undefined, ///< whatever the memory held: for who writes every pixel before reading it
};

/// An image on the heap in one of the six rendered formats. Movable, owns its pixels.
class MemoryImage {
public:
    MemoryImage() = default;
    /// Throws `std::invalid_argument` for a size outside 1..32767 or a format that is not rendered,
    /// `std::bad_alloc` when there is no memory.
    MemoryImage(int width, int height, RasterFormat format, RowLayout layout,
                NewPixels pixels = NewPixels::Zero);

    /// The record of the pixels; valid as long as the image lives.
    [[nodiscard]] const RasterInfo& info() const { return m_info; }
    void setPixelAspect(float aspect) { m_info.pixelAspect = aspect; }
    /// Bytes of pixels in a row, padding left out.
    [[nodiscard]] std::size_t rowSize() const;
    /// Copies the pixels of an image of the same size and format; row layouts may differ.
    void copyFrom(const MemoryImage& other);

private:
    std::unique_ptr<std::uint8_t[]> m_memory;
    RasterInfo m_info;
};

} // namespace orbel
