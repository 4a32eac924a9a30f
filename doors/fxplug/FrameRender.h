#pragma once

#include "doors/fxplug/PluginHost_FXPLUG_Impl.h"

namespace orbel {

/// Renders one frame that a host asked for. Everything is borrowed.
struct FrameRender {
    id<PROAPIAccessing> manager;
    id<FxParameterRetrievalAPI> retrieval;
    id<Fx3DAPI> threeD;

    /// Renders `input` into `output` and marks the output premultiplied. A single field, outside
    /// Motion, is rendered as the full frame that its doubled lines make. The output is left as it
    /// was when a bitmap is missing or cannot be made. `info` is as before afterwards.
    void render(FxBitmap* input, FxBitmap* output, FxRenderInfo* info) const;

private:
    [[nodiscard]] PluginHost_FXPLUG_Impl hostOf(FxBitmap* input, FxBitmap* output,
                                                const FxRenderInfo* info) const;
    void renderField(FxBitmap* input, FxBitmap* output, FxRenderInfo* info) const;
};

} // namespace orbel
