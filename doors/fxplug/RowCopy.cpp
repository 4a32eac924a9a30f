#include "doors/fxplug/RowCopy.h"

#include "host/Numeric.h"

#include <algorithm>
#include <cstring>

namespace orbel {

namespace {

int nearest(int index, int count, int of) {
    const float place =
        static_cast<float>(index) * static_cast<float>(of) / static_cast<float>(count);
    return std::clamp(truncateTo<int>(place), 0, of - 1);
}

} // namespace

RasterInfo everySecondRow(const RasterInfo& image, int first) {
    RasterInfo rows = image;
    rows.data = image.row(first);
    rows.rowBytes = 2 * image.rowBytes;
    rows.height = (image.height - first + 1) / 2;
    return rows;
}

void resampleNearest(const RasterInfo& from, const RasterInfo& to) {
    if (from.width <= 0 || from.height <= 0) {
        return;
    }
    const auto bytes = static_cast<std::size_t>(std::min(from.bytesPerPixel, to.bytesPerPixel));
    for (int y = 0; y < to.height; ++y) {
        const std::uint8_t* const source = from.row(nearest(y, to.height, from.height));
        for (int x = 0; x < to.width; ++x) {
            const int column = nearest(x, to.width, from.width);
            std::memcpy(to.row(y) + static_cast<std::ptrdiff_t>(x) * to.bytesPerPixel,
                        source + static_cast<std::ptrdiff_t>(column) * from.bytesPerPixel, bytes);
        }
    }
}

} // namespace orbel
