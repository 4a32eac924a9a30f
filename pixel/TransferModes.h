#pragma once

#include "host/PluginHost.h"
#include "pixel/PixelTraits.h"

namespace orbel {

// Ways of combining two rasters. Opacities scale the alphas, 1.0 leaving them. The passes cover the
// area of the second raster; `out` may be one of the inputs. Colours are not premultiplied. `P`
// names the format of all rasters, the other four arguments follow from it (`PixelTypes`); they are
// instantiated for the six formats.

/// Combines `first`, in front, with `second`, behind it, into `out` under a transfer mode:
///  1 behind, 2 in front, 3 and 13 hue, 4 plus, 5 multiply, 6 screen, 7 overlay, 8 soft light,
///  9 hard light, 10 darken, 11 lighten, 12 difference, 14 saturation, 15 colour, 16 luma,
///  17 to 22 and 25 exclusion, 23 colour dodge, 24 colour burn, 35 special screen.
/// Every other number does nothing and returns 0. `flag` has no meaning. `opaqueOut` makes the
/// output's alpha the maximum, except in modes 1 and 2. An AE host blends `second` and `out`
/// itself, unless `ownBlend` forbids it; its status is returned then.
template<typename P, typename T, typename W, typename F, typename FORMAT>
int TransferComposite(P, T, W, F, FORMAT, PluginHost_API* host, int mode, double opacity1,
                      double opacity2, PluginRaster_API* first, PluginRaster_API* second,
                      PluginRaster_API* out, bool flag, bool opaqueOut, bool ownBlend);

/// Puts `first` behind `second`. Returns 0.
template<typename P, typename T, typename W, typename F, typename FORMAT>
int BlendBehind(P, T, W, F, FORMAT, PluginHost_API* host, float opacity1, float opacity2,
                PluginRaster_API* first, PluginRaster_API* second, PluginRaster_API* out,
                bool unused, bool opaqueOut);

/// Cross-fades: `to` becomes from x amount + to x (1 - amount), in single precision, truncated. 1.0
/// copies, 0.0 does nothing. Returns 0.
template<typename P, typename T, typename W, typename F, typename FORMAT>
int BlendImages(P, PluginHost_API* host, float amount, PluginRaster_API* from,
                PluginRaster_API* to);

#define ORBEL_TRANSFER_MODES(linkage, P)                                                           \
    linkage template int TransferComposite<ORBEL_LAYER_ARGS(P)>(                                   \
        ORBEL_LAYER_ARGS(P), PluginHost_API*, int, double, double, PluginRaster_API*,              \
        PluginRaster_API*, PluginRaster_API*, bool, bool, bool);                                   \
    linkage template int BlendBehind<ORBEL_LAYER_ARGS(P)>(                                         \
        ORBEL_LAYER_ARGS(P), PluginHost_API*, float, float, PluginRaster_API*, PluginRaster_API*,  \
        PluginRaster_API*, bool, bool);                                                            \
    linkage template int BlendImages<ORBEL_LAYER_ARGS(P)>(P, PluginHost_API*, float,               \
                                                          PluginRaster_API*, PluginRaster_API*);

#define ORBEL_EXTERN_TRANSFER_MODES(P) ORBEL_TRANSFER_MODES(extern, P)
ORBEL_FOR_EACH_PIXEL_FORMAT(ORBEL_EXTERN_TRANSFER_MODES)
#undef ORBEL_EXTERN_TRANSFER_MODES

} // namespace orbel
