#pragma once

#include "doors/ofx/EffectInstance.h"

namespace orbel::ofx {

/// Enables and disables parameters as the values of an instance that was just made or loaded say.
void applyAllRules(const EffectInstance& instance);

/// Follows a change: enables and disables what depends on the parameter; a file or text that the
/// user chose for the shape switches "Presets" to none, so that it takes effect.
OfxStatus instanceChanged(const EffectInstance& instance, const Properties& arguments);

} // namespace orbel::ofx
