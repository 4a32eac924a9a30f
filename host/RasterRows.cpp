#include "host/RasterRows.h"

#include <algorithm>
#include <cstring>

namespace orbel {

std::size_t rowSize(const RasterInfo& image) {
    return image.data == nullptr ? 0
                                 : static_cast<std::size_t>(std::max(image.width, 0)) *
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
    part.width = std::max(0, std::min<int>(rect.right, image.width - 1) - left + 1);
    part.height = std::max(0, std::min<int>(rect.bottom, image.height - 1) - top + 1);
    if (part.width > 0 && part.height > 0) {
        part.data = image.row(top) + static_cast<std::ptrdiff_t>(left) * image.bytesPerPixel;
    }
    return part;
}

} // namespace orbel
