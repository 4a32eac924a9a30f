#pragma once

#include "host/PluginHost.h"
#include "render/FrameTarget.h"

#include <memory>

namespace orbel {

/// What a frame needs to know of its pixel format.
struct FrameFormat {
    /// Makes the target for the host's input and output, both of which have pixels.
    std::unique_ptr<FrameTarget> (*chooseTarget)(PluginHost_API* host, PluginRaster_API* input,
                                                 PluginRaster_API* output);
    bool floatPixels; ///< some transfer modes are combined by other formulas then
};

/// Renders one frame from the host's parameters into its output raster, as `StrokeRender` says.
int RenderFrame(PluginHost_API* host, const FrameFormat& format);

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
