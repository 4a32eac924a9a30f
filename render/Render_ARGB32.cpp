#include "render/RenderDispatch.h"
#include "render/StrokeRenderImpl.h"

namespace orbel {

ORBEL_STROKE_RENDER(, PIXEL_ARGB32)

int Render_ARGB32(PluginHost_API* host) {
    return strokeRender<PIXEL_ARGB32>(host);
}

} // namespace orbel
