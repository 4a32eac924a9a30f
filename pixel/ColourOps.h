#pragma once

#include "host/PluginHost.h"
#include "pixel/PixelTraits.h"

namespace orbel {

// Passes over a whole raster, in place. Each returns 0. `P` names the raster's format, the other
// four arguments follow from it (`PixelTypes`); they are instantiated for the six formats.
//
// The host is asked once what the raster is over, and nothing else; a raster without pixels is left
// alone. Any thread may call them, as long as nobody else touches the pixels. Alphas outside the
// range, NaN and infinities are no error: what becomes of them is defined, if not useful.

/// Multiplies the colour of every pixel by its alpha. 8-bit products divide by 256 with rounding,
/// so that white under full alpha comes out as 254: see `PixelArithmetic8::multiply`.
template<typename P, typename T, typename W, typename F, typename FORMAT>
int Premult(P, PluginHost_API* host, PluginRaster_API* raster);

/// Divides the colour of every pixel by its alpha, limiting overflow (floats are not limited).
/// Pixels whose alpha is not above 0 stay as they are. Not the inverse of `Premult`: both lose
/// precision in the integer formats.
template<typename P, typename T, typename W, typename F, typename FORMAT>
int UnPremult(P, PluginHost_API* host, PluginRaster_API* raster);

/// Multiplies every alpha by `amount`, where 1.0 stands for the maximum.
template<typename P, typename T, typename W, typename F, typename FORMAT>
int MultiplyAlpha(P, PluginHost_API* host, float amount, PluginRaster_API* raster);

/// Sets every alpha to the maximum.
template<typename P, typename T, typename W, typename F, typename FORMAT>
int AVXSetAlpha(P, PluginHost_API* host, PluginRaster_API* raster);

/// Sets every alpha of `first` to 0. With a `second` raster (it may be null) the pass covers the
/// area of the second, and sets the alpha to 0 in both.
template<typename P, typename T, typename W, typename F, typename FORMAT>
int AVXUnsetAlpha(P, PluginHost_API* host, PluginRaster_API* first, PluginRaster_API* second);

/// Sets every pixel to a colour: red, green, blue and alpha in 0 to 1. Truncates; does not clamp.
template<typename P, typename T, typename W, typename F, typename FORMAT>
int FillColor(P, PluginHost_API* host, const double* colour, PluginRaster_API* raster);

/// Changes the colour of every pixel by its alpha: the more transparent, the more value and hue (in
/// turns) are added; the more opaque, the more saturation. Alpha stays. Amounts of 0.0 all three
/// leave the raster untouched; any other amounts leave every pixel whose saturation is above one
/// percent fully saturated.
template<typename P, typename T, typename W, typename F, typename FORMAT>
int HSLModulate(P, PluginHost_API* host, PluginRaster_API* raster, double lowAlphaValueAdd,
                double lowAlphaHueTurns, double highAlphaSatAdd);

#define ORBEL_COLOUR_OPS(linkage, P)                                                               \
    linkage template int Premult<ORBEL_LAYER_ARGS(P)>(P, PluginHost_API*, PluginRaster_API*);      \
    linkage template int UnPremult<ORBEL_LAYER_ARGS(P)>(P, PluginHost_API*, PluginRaster_API*);    \
    linkage template int MultiplyAlpha<ORBEL_LAYER_ARGS(P)>(P, PluginHost_API*, float,             \
                                                            PluginRaster_API*);                    \
    linkage template int AVXSetAlpha<ORBEL_LAYER_ARGS(P)>(P, PluginHost_API*, PluginRaster_API*);  \
    linkage template int AVXUnsetAlpha<ORBEL_LAYER_ARGS(P)>(P, PluginHost_API*, PluginRaster_API*, \
                                                            PluginRaster_API*);                    \
    linkage template int FillColor<ORBEL_LAYER_ARGS(P)>(P, PluginHost_API*, const double*,         \
                                                        PluginRaster_API*);                        \
    linkage template int HSLModulate<ORBEL_LAYER_ARGS(P)>(P, PluginHost_API*, PluginRaster_API*,   \
                                                          double, double, double);

#define ORBEL_EXTERN_COLOUR_OPS(P) ORBEL_COLOUR_OPS(extern, P)
ORBEL_FOR_EACH_PIXEL_FORMAT(ORBEL_EXTERN_COLOUR_OPS)
#undef ORBEL_EXTERN_COLOUR_OPS

} // namespace orbel
