#pragma once

#include "host/PluginHost.h"
#include "render/StrokeWalk.h"

namespace orbel {

/// Stamps one round, soft-edged disc into the alpha of a raster, in the manner of a screen:
/// coverage builds up toward full alpha. `base` is the first row, `pixelBytes` the size of a pixel;
/// pixel (i, j) has its centre at (i, j). `radius` in pixels, `feather` 0..1, `intensity` 0..255.
/// Computed in double in every format.
template<class P, class T, class W, class F, class Format>
void HQDrawSphere(P pixel, PluginHost_API* host, unsigned char* base, int rowBytes, int pixelBytes,
                  int width, int height, double radius, double x, double y, double feather,
                  double intensity);

} // namespace orbel
