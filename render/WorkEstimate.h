#pragma once

#include "host/PluginHost.h"

namespace orbel {

/// About how much work a frame is, guessed from the lengths of its outlines without walking them.
struct WorkEstimate {
    double evaluations = 0.0; ///< of outlines, while measuring and drawing
    double stamps = 0.0;      ///< placed, seen or not

    /// On one thread of an ordinary processor; right within a factor of some.
    [[nodiscard]] double seconds() const { return evaluations * 2e-8 + stamps * 1e-7; }
};

/// The work of the host's frame at its current time: reads the parameters and the shape, draws
/// nothing, and leaves the shape with the host. The process-wide lock is taken meanwhile.
[[nodiscard]] WorkEstimate estimateWork(PluginHost_API* host);

} // namespace orbel
