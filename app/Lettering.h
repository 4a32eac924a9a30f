#pragma once

#include "host/PluginHost.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace orbel::app {

/// Height of a capital above the baseline, in units of the letters' grid.
inline constexpr int capitalHeight = 6;

/// Where and how large a line of text is written.
struct TextPlace {
    double x;        ///< pixels; left end of the line
    double baseline; ///< pixels from the top
    double unit;     ///< pixels per unit of the grid
};

/// The length of a line of text in units of the grid.
[[nodiscard]] double textWidth(std::string_view text);

/// Writes a line of letters and digits of the basic alphabet with a thin round pen into an
/// `RF_RGBA8` image; what has no letter is left blank and what lies outside is cut off. For
/// captions, so that no font needs to be installed.
void drawText(const RasterInfo& image, const TextPlace& place, std::string_view text,
              const std::array<std::uint8_t, 3>& colour);

} // namespace orbel::app
