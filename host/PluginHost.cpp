#include "host/PluginHost.h"

#include "host/HostIndex.h"

#include <algorithm>
#include <cstring>

namespace orbel {

int g_hostIndex = 0;

void PluginHost_API::fill(PluginRaster_API* raster, Vx_Rect* rect) {
    if (rect == nullptr) {
        fill(raster);
        return;
    }
    RasterInfo info;
    getRasterInfo(raster, &info);
    const int left = std::clamp<int>(rect->left, 0, info.width);
    const int right = std::clamp<int>(rect->right, left, info.width);
    const int top = std::clamp<int>(rect->top, 0, info.height);
    const int bottom = std::clamp<int>(rect->bottom, top, info.height);
    const auto pixel = static_cast<std::size_t>(info.bytesPerPixel);
    for (int y = top; y < bottom; ++y) {
        std::memset(info.row(y) + static_cast<std::size_t>(left) * pixel, 0,
                    static_cast<std::size_t>(right - left) * pixel);
    }
}

} // namespace orbel
