#include "render/RenderDispatch.h"
#include "render/StrokeRenderImpl.h"

namespace orbel {

ORBEL_STROKE_RENDER(, PIXEL_RGBA16)

int Render_RGBA16(PluginHost_API* host) {
    return strokeRender<PIXEL_RGBA16>(host);
}

} // namespace orbel
