#include "render/RenderDispatch.h"
#include "render/StrokeRenderImpl.h"

namespace orbel {

ORBEL_STROKE_RENDER(, PIXEL_ARGB8)

int Render_ARGB8(PluginHost_API* host) {
    return strokeRender<PIXEL_ARGB8>(host);
}

} // namespace orbel
