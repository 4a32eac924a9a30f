#pragma once

#include "host/PluginHost.h"

namespace orbel {

/// Draws the stroke layer of one frame into the output: the stroke's colour with the stroke's
/// coverage in alpha, not premultiplied. The leading arguments select the pixel format and are
/// passed through. `transferMode` receives the "Transfer Mode" index + 1, `opacity` the layer's
/// opacity as a fraction (under motion blur that of the last sample); both tell the compositing
/// what to do with the layer. With `useShape` the shape comes from "Shape" and "Presets", else from
/// the path that the host already carries. With `fillFirst` the output is filled with the colour
/// first. 0 on success, otherwise the first error or abort code; what was drawn until then stays.
template<class P, class T, class W, class F, class Format>
int Render(P pixel, T maximum, W wide, F single, Format format, PluginHost_API* host,
           int& transferMode, double& opacity, bool useShape, bool fillFirst);

} // namespace orbel
