#pragma once

#include "host/PluginHost.h"
#include "pixel/PixelTraits.h"

namespace orbel::test {

/// Calls `action` with the traits of one of the six rendered formats.
template<typename Action>
void withTraits(RasterFormat format, const Action& action) {
    switch (format) {
    case RF_ARGB8:
        return action(PIXEL_ARGB8{});
    case RF_RGBA8:
        return action(PIXEL_RGBA8{});
    case RF_ARGB16:
        return action(PIXEL_ARGB16{});
    case RF_RGBA16:
        return action(PIXEL_RGBA16{});
    case RF_ARGB32F:
        return action(PIXEL_ARGB32{});
    default:
        return action(PIXEL_RGBA32{});
    }
}

} // namespace orbel::test
