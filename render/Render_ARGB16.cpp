#include "render/RenderDispatch.h"
#include "render/StrokeRenderImpl.h"

namespace orbel {

ORBEL_STROKE_RENDER(, PIXEL_ARGB16)

int Render_ARGB16(PluginHost_API* host) {
    return strokeRender<PIXEL_ARGB16>(host);
}

} // namespace orbel
