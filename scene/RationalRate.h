#pragma once

#include "host/FrameRate.h"

namespace orbel {

/// The fraction that a decimal frame rate stands for: 29.97 and its relatives are 30000/1001 and so
/// on, everything else is rounded to a thousandth. `framesPerSecond` lies in 0.001 to 1000000.
[[nodiscard]] FrameRate rationalRate(double framesPerSecond);

} // namespace orbel
