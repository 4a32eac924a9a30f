#pragma once

#include "host/PluginHost.h"
#include "pixel/LineWalk.h"
#include "pixel/PixelTraits.h"
#include "pixel/RasterFormats.h"

#include <array>
#include <cstddef>
#include <cstring>

namespace orbel {

/// Draws red one-pixel points of component type `T`, as `drawLine` below says.
template<typename T>
void drawRedLine(const RasterInfo& raster, T maximum, T alphaValue, int x0, int y0, int x1,
                 int y1) {
    std::array<int, componentsPerPixel> order{1, 2, 3, 0}; // what an unknown layout gets
    getRasterChannelOrder(raster.pixelFormat, order[0], order[1], order[2], order[3]);
    std::array<T, componentsPerPixel> pixel{};
    if (raster.bytesPerPixel < static_cast<int>(sizeof(pixel))) {
        return;
    }
    pixel[static_cast<std::size_t>(order[0])] = maximum;
    pixel[static_cast<std::size_t>(order[3])] = alphaValue;
    walkLine(x0, y0, x1, y1, raster.width, raster.height, [&](int x, int y) {
        std::memcpy(raster.row(y) + static_cast<std::ptrdiff_t>(x) * raster.bytesPerPixel,
                    pixel.data(), sizeof(pixel));
    });
}

/// Overlays a red one-pixel line on a host raster, both ends included, for looking at what the
/// renderer does. Points outside the raster are skipped. The two AVX hosts keep inverted alpha, so
/// there the line's alpha is 0, else the maximum.
inline void drawLine(PluginHost_API* host, PluginHost_API::RasterInfo& raster, int x0, int y0,
                     int x1, int y1) {
    const bool clearAlpha = host->getAVX2Host() != nullptr || host->getAVX1Host() != nullptr;
    const auto draw = [&]<typename T>(T maximum) {
        drawRedLine<T>(raster, maximum, clearAlpha ? T{0} : maximum, x0, y0, x1, y1);
    };
    if (raster.bytesPerPixel == 4) {
        draw(std::uint8_t{255});
    } else if (raster.bytesPerPixel < 9) {
        const int depth = convertToPixelDepth(raster.pixelFormat);
        draw(static_cast<std::uint16_t>((std::uint64_t{1} << depth) - 1));
    } else {
        draw(1.0F);
    }
}

} // namespace orbel
