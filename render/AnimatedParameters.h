#pragma once

#include "params/RenderArguments.h"

namespace orbel {

/// The parameters of one motion-blur sample, as the user sees them: those that may move within a
/// frame read again at its time, all others as at the frame's own time.
using AnimatedParameters = RenderArguments;

/// `now` with every such parameter that the host answers replaced by its value at `time` ticks.
[[nodiscard]] AnimatedParameters animatedParametersAt(PluginHost_API* host, long time,
                                                      const AnimatedParameters& now);

} // namespace orbel
