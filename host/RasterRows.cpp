#include "host/RasterRows.h"

#include <algorithm>
#include <cstring>

namespace orbel {

std::size_t rowSize(const RasterInfo& image) {
    return static_cast<std::size_t>(std::max(image.width, 0)) *
           static_cast<std::size_t>(image.bytesPerPixel);
}

void clearRows(const RasterInfo& image) {
    const std::size_t bytes = rowSize(image);
    for (int y = 0; y < image.height && bytes > 0; ++y) {
        std::memset(image.row(y), 0, bytes);
    }
}

void copyRows(const RasterInfo& from, const RasterInfo& to) {
    const int rows = std::min(from.height, to.height);
    const std::size_t bytes = std::min(rowSize(from), rowSize(to));
    for (int y = 0; y < rows && bytes > 0; ++y) {
        std::memmove(to.row(y), from.row(y), bytes);
    }
}

RasterInfo croppedTo(const RasterInfo& image, const Vx_Rect& rect) {
    const int left = std::clamp<int>(rect.left, 0, image.width);
    const int top = std::clamp<int>(rect.top, 0, image.height);
    RasterInfo part = image;
    part.data = image.row(top) + static_cast<std::ptrdiff_t>(left) * image.bytesPerPixel;
    part.width = std::clamp<int>(rect.right, left, image.width) - left;
    part.height = std::clamp<int>(rect.bottom, top, image.height) - top;
    return part;
}

} // namespace orbel
