#include "render/RenderDispatch.h"

#include "shapes/CriticalSection.h"

namespace orbel {

int Render(PluginHost_API* host) {
    const Stroke_CSLock lock(&g_globalCritSection);
    RasterInfo output;
    // A host leaves the record alone when the layout is unknown to it.
    output.pixelFormat = static_cast<RasterFormat>(-1);
    host->getOutputRasterInfo(&output);
    host->dependOnOrigin();
    switch (output.pixelFormat) {
    case RF_ARGB8:
        return Render_ARGB8(host);
    case RF_RGBA8:
        return Render_RGBA8(host);
    case RF_ARGB16:
        return Render_ARGB16(host);
    case RF_RGBA16:
        return Render_RGBA16(host);
    case RF_ARGB32F:
        return Render_ARGB32(host);
    case RF_RGBA32F:
        return Render_RGBA32(host);
    default:
        return 1;
    }
}

} // namespace orbel
