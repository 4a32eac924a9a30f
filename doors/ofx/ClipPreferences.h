#pragma once

#include "doors/ofx/EffectInstance.h"

namespace orbel::ofx {

/// What the effect makes of its clips: whether frames differ where no parameter does, and the state
/// of the output's alpha where the source's would lose the stroke's.
OfxStatus getClipPreferences(const EffectInstance& instance, const Properties& answer);

/// The project's frame for an effect over nothing; where there is a source its region is right.
OfxStatus getRegionOfDefinition(const EffectInstance& instance, const Properties& answer);

/// A pixel of the result needs no other pixel of the source.
OfxStatus getRegionsOfInterest(const Properties& arguments, const Properties& answer);

} // namespace orbel::ofx
