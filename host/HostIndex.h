#pragma once

namespace orbel {

/// Which host application runs the effect: 0 Final Cut Pro, 1 Motion, 2 Final Cut Express. Set by
/// the FxPlug door when the host makes an instance; every writer computes the same value.
extern int g_hostIndex;

} // namespace orbel
