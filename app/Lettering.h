#pragma once

#include "host/PluginHost.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace orbel::app {

/// Height and advance of a letter in dots.
inline constexpr int letterHeight = 7;
inline constexpr int letterAdvance = 6;

/// Writes a line of capitals and digits, each dot `scale` pixels wide and high, into an `RF_RGBA8`
/// image; what has no letter is left blank and what lies outside is cut off. For captions, so that
/// no font needs to be installed.
void drawText(const RasterInfo& image, int x, int y, int scale, std::string_view text,
              const std::array<std::uint8_t, 4>& colour);

} // namespace orbel::app
