#include "media/EvenFilmWriter.h"

#include <algorithm>
#include <cstddef>

namespace orbel {

namespace {

constexpr std::size_t mostBytesPerPixel = 16;

int even(int size) {
    return size + size % 2;
}

} // namespace

WriterSpec EvenFilmWriter::evenSpec(WriterSpec spec) {
    spec.width = even(spec.width);
    spec.height = even(spec.height);
    return spec;
}

std::vector<std::uint64_t> EvenFilmWriter::pixelsOf(const WriterSpec& spec) {
    const std::size_t count =
        static_cast<std::size_t>(even(spec.width)) * static_cast<std::size_t>(even(spec.height));
    return std::vector<std::uint64_t>(count * mostBytesPerPixel / sizeof(std::uint64_t));
}

void EvenFilmWriter::write(const RasterInfo& raster, long frame) {
    void* const pixels = m_pixels.data();
    RasterInfo whole = raster;
    whole.data = static_cast<std::uint8_t*>(pixels);
    whole.width = even(raster.width);
    whole.height = even(raster.height);
    whole.rowBytes = whole.width * raster.bytesPerPixel;
    const std::ptrdiff_t used = std::ptrdiff_t{raster.width} * raster.bytesPerPixel;
    for (int y = 0; y < whole.height; ++y) {
        const std::uint8_t* const from =
            raster.data + std::ptrdiff_t{std::min(y, raster.height - 1)} * raster.rowBytes;
        std::uint8_t* const to = whole.data + std::ptrdiff_t{y} * whole.rowBytes;
        std::copy_n(from, used, to);
        if (whole.width != raster.width) {
            std::copy_n(from + used - raster.bytesPerPixel, raster.bytesPerPixel, to + used);
        }
    }
    m_film->write(whole, frame);
}

} // namespace orbel
