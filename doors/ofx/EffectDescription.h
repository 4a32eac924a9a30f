#pragma once

#include "doors/ofx/HostSuites.h"

namespace orbel::ofx {

inline constexpr const char* PLUGIN_IDENTIFIER = "org.orbel.Orbel";

/// Sets what the effect is and what it can do.
OfxStatus describe(const HostSuites& suites, OfxImageEffectHandle descriptor);

/// Defines clips and parameters for a context; `STAT_ERR_UNSUPPORTED` for one the effect has no
/// meaning in.
OfxStatus describeInContext(const HostSuites& suites, OfxImageEffectHandle descriptor,
                            const Properties& arguments);

} // namespace orbel::ofx
