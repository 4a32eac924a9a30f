#pragma once

#include "doors/ofx/EffectInstance.h"
#include "doors/ofx/PluginHost_OFX_Impl.h"

namespace orbel::ofx {

/// Time, scale and quality out of the arguments of an action; what is missing or is no number gets
/// its usual value.
[[nodiscard]] OFXRenderTime renderTime(const Properties& arguments);

/// Renders a window of a frame. The core draws whole frames, so a window costs as much as all of
/// it; its pixels are the same.
OfxStatus renderFrame(const EffectInstance& instance, const Properties& arguments);

/// Names the source where nothing is drawn and the output may be the very same picture.
OfxStatus isIdentity(const EffectInstance& instance, const Properties& arguments,
                     const Properties& answer);

} // namespace orbel::ofx
