#include "render/RenderDispatch.h"
#include "render/StrokeRenderImpl.h"

namespace orbel {

ORBEL_STROKE_RENDER(, PIXEL_RGBA32)

int Render_RGBA32(PluginHost_API* host) {
    return strokeRender<PIXEL_RGBA32>(host);
}

} // namespace orbel
