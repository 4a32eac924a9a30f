#pragma once

#include "host/PluginHost.h"
#include "pixel/PixelTraits.h"

namespace orbel {

/// The way from a layout code, which a host gives at run time, to code that is written as a
/// template over the traits: calls `action` with the traits of one of the six rendered formats.
/// False, nothing called, for any other. What `action` throws passes through.
template<typename Action>
bool withTraits(RasterFormat format, const Action& action) {
    switch (format) {
    case RF_ARGB8:
        action(PIXEL_ARGB8{});
        return true;
    case RF_RGBA8:
        action(PIXEL_RGBA8{});
        return true;
    case RF_ARGB16:
        action(PIXEL_ARGB16{});
        return true;
    case RF_RGBA16:
        action(PIXEL_RGBA16{});
        return true;
    case RF_ARGB32F:
        action(PIXEL_ARGB32{});
        return true;
    case RF_RGBA32F:
        action(PIXEL_RGBA32{});
        return true;
    default:
        return false;
    }
}

} // namespace orbel
