#include "doors/fxplug/FrameRender.h"

#include "doors/fxplug/FieldLines.h"
#include "doors/fxplug/HostKind.h"
#include "doors/fxplug/Owned.h"
#include "render/RenderDispatch.h"

namespace orbel {

void FrameRender::render(FxBitmap* input, FxBitmap* output, FxRenderInfo* info) const {
    const Owned<FxBitmap*> source = getSameSizedInputAsOutput(input, output);
    if (source.get() != nil && (fieldOf(*info) == 0 || isMotion())) {
        PluginHost_FXPLUG_Impl host = hostOf(source.get(), output, info);
        Render(&host);
    } else if (source.get() != nil) {
        renderField(source.get(), output, info);
    }
    if ([output respondsToSelector:@selector(setIsPremultiplied:)]) {
        [output setIsPremultiplied:YES];
    }
}

PluginHost_FXPLUG_Impl FrameRender::hostOf(FxBitmap* input, FxBitmap* output,
                                           const FxRenderInfo* info) const {
    PluginHost_FXPLUG_Impl host(nil, retrieval, input, output, info, nil, nil);
    host.set3DApi(threeD);
    host.setHostVersionNum(manager);
    return host;
}

// The odd lines carry the result back whichever field it is, which is meant.
void FrameRender::renderField(FxBitmap* input, FxBitmap* output, FxRenderInfo* info) const {
    const auto field = fieldOf(*info);
    fieldOf(*info) = 0;
    const Owned<FxBitmap*> doubledInput = render_lineDouble(input);
    const Owned<FxBitmap*> doubledOutput = render_lineDouble(output);
    if (doubledInput.get() != nil && doubledOutput.get() != nil) {
        PluginHost_FXPLUG_Impl host = hostOf(doubledInput.get(), doubledOutput.get(), info);
        Render(&host);
        render_lineHalf(doubledOutput.get(), output, true);
    }
    fieldOf(*info) = field;
}

} // namespace orbel
