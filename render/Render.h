#pragma once

#include "host/PluginHost.h"
#include "render/FrameTarget.h"

namespace orbel {

/// Draws the stroke layer of one frame into a target: the stroke's colour with the stroke's
/// coverage in alpha, not premultiplied. `transferMode` receives the "Transfer Mode" index + 1,
/// `opacity` the layer's opacity as a fraction (under motion blur that of the last sample); both
/// tell the compositing what to do with the layer. With `useShape` the shape comes from "Shape" and
/// "Presets", else from the path that the host already carries. With `fillFirst` the output is
/// filled with the colour first. 0 on success, and the target is to be finished; otherwise the
/// first error or abort code, 1 for whatever was thrown, and the target has been left.
int Render(PluginHost_API* host, PluginRaster_API* output, FrameTarget& target, int& transferMode,
           double& opacity, bool useShape, bool fillFirst);

} // namespace orbel
