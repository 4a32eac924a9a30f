#pragma once

#include "host/HostIndex.h"

namespace orbel {

/// Motion keeps its pictures and points upside down and delivers single fields at full height.
[[nodiscard]] inline bool isMotion() {
    return g_hostIndex == 1;
}

[[nodiscard]] inline bool isFinalCutPro() {
    return g_hostIndex == 0;
}

} // namespace orbel
