#pragma once

#include "host/PluginHost.h"
#include "pixel/PixelTraits.h"

#include <algorithm>

namespace orbel {

/// The description of a raster, asked once per pass.
inline RasterInfo describeRaster(PluginHost_API* host, PluginRaster_API* raster) {
    RasterInfo info;
    host->getRasterInfo(raster, &info);
    return info;
}

/// Calls `visit(width, row...)` for every row, top to bottom, with the row's first component in
/// each raster. Covers the area that all the rasters have in common. Rows must be aligned for `T`.
template<typename T, typename Visit, typename... Infos>
void forEachRow(const Visit& visit, const Infos&... rasters) {
    const int width = std::min({rasters.width...});
    const int height = std::min({rasters.height...});
    for (int y = 0; y < height; ++y) {
        visit(width, static_cast<T*>(static_cast<void*>(rasters.row(y)))...);
    }
}

/// Calls `visit(pixel...)` for every pixel, row by row, with the pixel's first component in each
/// raster; area and alignment as in `forEachRow`.
template<typename T, typename Visit, typename... Infos>
void forEachPixel(const Visit& visit, const Infos&... rasters) {
    const auto visitRow = [&visit](int width, auto*... pixels) {
        for (int x = 0; x < width; ++x) {
            visit(pixels...);
            ((pixels += componentsPerPixel), ...);
        }
    };
    forEachRow<T>(visitRow, rasters...);
}

} // namespace orbel
