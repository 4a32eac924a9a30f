#pragma once

#include "host/Numeric.h"
#include "host/PluginHost.h"

namespace orbel {

inline constexpr double PI = 3.14159265358979323846;
inline constexpr double RADIANS_PER_DEGREE = 0.017453292519943295;

/// Percent to fraction; a multiplication, not a division by 100, everywhere.
inline constexpr double FRACTION_PER_PERCENT = 0.01;

/// Degrees of hue to turns. Meant to be cut off like that, although 1/360 goes on.
inline constexpr double TURNS_PER_DEGREE = 0.0027777;

/// A menu's index as the drawing counts it, from 1.
[[nodiscard]] inline int menuNumber(int index) {
    return saturateTo<int>(1.0 + index);
}

/// A parameter read at `time` ticks.
[[nodiscard]] inline PluginHost_API::TimeObject timeObjectAt(PluginHost_API* host, long time) {
    return {saturateTo<std::int32_t>(static_cast<double>(time)), host->getTimeStep(), 0};
}

} // namespace orbel
