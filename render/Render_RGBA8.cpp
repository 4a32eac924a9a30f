#include "render/RenderDispatch.h"
#include "render/StrokeRenderImpl.h"

namespace orbel {

ORBEL_STROKE_RENDER(, PIXEL_RGBA8)

int Render_RGBA8(PluginHost_API* host) {
    return strokeRender<PIXEL_RGBA8>(host);
}

} // namespace orbel
