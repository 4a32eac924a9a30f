#pragma once

#include "doors/ofx/HostSuites.h"

namespace orbel::ofx {

/// Declares the parameters in a descriptor by walking the one table: groups, ranges, menus, and one
/// page with all of them. `STAT_OK`, or the host's answer to the first parameter it refuses.
OfxStatus declareParameters(const HostSuites& suites, OfxImageEffectHandle descriptor);

} // namespace orbel::ofx
