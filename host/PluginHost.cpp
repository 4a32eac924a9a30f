#include "host/PluginHost.h"

#include "host/HostIndex.h"
#include "host/RasterRows.h"

namespace orbel {

int g_hostIndex = 0;

void PluginHost_API::fill(PluginRaster_API* raster, Vx_Rect* rect) {
    if (rect == nullptr) {
        fill(raster);
        return;
    }
    RasterInfo info;
    getRasterInfo(raster, &info);
    clearRows(croppedTo(info, *rect));
}

} // namespace orbel
