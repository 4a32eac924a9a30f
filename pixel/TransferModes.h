#pragma once

#include "host/PluginHost.h"
#include "pixel/PixelTraits.h"
#include "pixel/TransferCodes.h"
#include "pixel/TransferFunctors.h"

namespace orbel {

// Ways of combining two rasters. Opacities scale the alphas, 1.0 leaving them. The passes cover the
// area that all rasters have in common; `out` may be one of the inputs. Colours are straight. `P`
// names the format of all rasters, the other four arguments follow from it
// (`PixelTypes`); they are instantiated for the six formats. Any thread may call them, as long as
// nobody else touches the pixels.

/// Combines `first`, in front, with `second`, behind it, into `out` under the mode of a functor of
/// TransferFunctors.h, which is set up here. `opaqueOut` makes the output's alpha the maximum.
/// Returns 0. This is the reference, pixel by pixel; `TransferComposite` gives the same bytes
/// faster.
template<typename P, typename T, typename W, typename F, typename FORMAT, typename Functor>
int Blend(P, T, W, F, FORMAT, Functor functor, PluginHost_API* host, float opacity1, float opacity2,
          PluginRaster_API* first, PluginRaster_API* second, PluginRaster_API* out, bool unused,
          bool opaqueOut);

/// Combines `first`, in front, with `second`, behind it, into `out` under a `TransferCode`; every
/// other number does nothing and returns 0. `flag` has no meaning. `opaqueOut` makes the output's
/// alpha the maximum where the code's row allows it. An AE host blends `second` and `out` itself,
/// unless `ownBlend` forbids it; its status is returned then.
template<typename P, typename T, typename W, typename F, typename FORMAT>
int TransferComposite(P, T, W, F, FORMAT, PluginHost_API* host, int mode, double opacity1,
                      double opacity2, PluginRaster_API* first, PluginRaster_API* second,
                      PluginRaster_API* out, bool flag, bool opaqueOut, bool ownBlend);

/// Puts `first` behind `second`. `opaqueOut` makes the output's alpha the maximum. Returns 0.
template<typename P, typename T, typename W, typename F, typename FORMAT>
int BlendBehind(P, T, W, F, FORMAT, PluginHost_API* host, float opacity1, float opacity2,
                PluginRaster_API* first, PluginRaster_API* second, PluginRaster_API* out,
                bool unused, bool opaqueOut);

/// Cross-fades: `to` becomes from x amount + to x (1 - amount), in single precision, truncated. 1.0
/// copies, 0.0 does nothing. Returns 0.
template<typename P, typename T, typename W, typename F, typename FORMAT>
int BlendImages(P, PluginHost_API* host, float amount, PluginRaster_API* from,
                PluginRaster_API* to);

#define ORBEL_BLEND(linkage, P, Functor)                                                           \
    linkage template int Blend<ORBEL_LAYER_ARGS(P), Functor<ORBEL_LAYER_ARGS(P)>>(                 \
        ORBEL_LAYER_ARGS(P), Functor<ORBEL_LAYER_ARGS(P)>, PluginHost_API*, float, float,          \
        PluginRaster_API*, PluginRaster_API*, PluginRaster_API*, bool, bool);

#define ORBEL_TRANSFER_MODES(linkage, P)                                                           \
    ORBEL_BLEND(linkage, P, BLEND_IN_FRONT)                                                        \
    ORBEL_BLEND(linkage, P, BLEND_PLUS)                                                            \
    ORBEL_BLEND(linkage, P, BLEND_MUTLIPLY)                                                        \
    ORBEL_BLEND(linkage, P, BLEND_SCREEN)                                                          \
    ORBEL_BLEND(linkage, P, BLEND_OVERLAY)                                                         \
    ORBEL_BLEND(linkage, P, BLEND_SOFTLIGHT)                                                       \
    ORBEL_BLEND(linkage, P, BLEND_HARDLIGHT)                                                       \
    ORBEL_BLEND(linkage, P, BLEND_DARKEN)                                                          \
    ORBEL_BLEND(linkage, P, BLEND_LIGHTEN)                                                         \
    ORBEL_BLEND(linkage, P, BLEND_DIFFERENCE)                                                      \
    ORBEL_BLEND(linkage, P, BLEND_COLORDODGE)                                                      \
    ORBEL_BLEND(linkage, P, BLEND_COLORBURN)                                                       \
    ORBEL_BLEND(linkage, P, BLEND_EXCLUSION)                                                       \
    ORBEL_BLEND(linkage, P, BLEND_HUE)                                                             \
    ORBEL_BLEND(linkage, P, BLEND_SAT)                                                             \
    ORBEL_BLEND(linkage, P, BLEND_COLOR)                                                           \
    ORBEL_BLEND(linkage, P, BLEND_LUMA)                                                            \
    ORBEL_BLEND(linkage, P, BLEND_SCREEN_SPECIAL)                                                  \
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
