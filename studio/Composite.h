#pragma once

#include "host/AlphaHandling.h"
#include "host/PluginHost.h"
#include "media/Picture.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orbel::studio {

/// What a picture is shown on.
struct Ground {
    bool grid = true; ///< squares of two greys, else `colour`
    std::array<std::uint8_t, 3> colour{};
};

/// "grid", "black", "white" or "#rrggbb".
[[nodiscard]] std::optional<Ground> groundOf(std::string_view text);

/// A picture as a screen shows it: opaque, R, G, B, 255, rows top-down and tightly packed.
struct ShownPicture {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> rgba;
};

/// A raster in any rendered format over the ground; `alpha` says how it carries its own. Over black
/// it is what a film without alpha gets; the ground is added times 255 - alpha in 8 bits, divided
/// by 255 and rounded.
[[nodiscard]] ShownPicture showRaster(const RasterInfo& raster, OutputAlpha alpha,
                                      const Ground& ground);

/// A straight 8-bit picture over the ground.
[[nodiscard]] ShownPicture showPicture(const Picture& picture, const Ground& ground);

struct ShownRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

/// The smallest rectangle outside which two pictures of one size are the same; empty (0 x 0) when
/// they are the same everywhere.
[[nodiscard]] ShownRect changedRect(const ShownPicture& before, const ShownPicture& after);

/// The pixels inside a rectangle, tightly packed.
[[nodiscard]] std::string cut(const ShownPicture& picture, const ShownRect& rect);

} // namespace orbel::studio
