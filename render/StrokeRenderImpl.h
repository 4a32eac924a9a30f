#pragma once

#include "render/StrokeRender.h"

#include "pixel/Acceleration.h"
#include "pixel/PixelWalk.h"
#include "render/BandTarget.h"
#include "render/RasterTargetImpl.h"
#include "render/Render.h"

#include <memory>

namespace orbel {

/// The target of a frame, chosen from the host's rasters alone: bands where there are kernels for
/// them and rows lie side by side; the reference implementation for all others.
template<class P>
std::unique_ptr<FrameTarget> chooseTarget(PluginHost_API* host, PluginRaster_API* input,
                                          PluginRaster_API* output) {
    const AlphaHandling alpha = host->getAlphaHandling();
    const RasterInfo in = describeRaster(host, input);
    const RasterInfo out = describeRaster(host, output);
    const StampKernels* const stamps = stampKernels<P>(accelerationLevel());
    if (stamps != nullptr && host->getAEHost() == nullptr && BandTarget<P>::suits(in, out)) {
        return std::make_unique<BandTarget<P>>(host, alpha, in, output, out, *stamps);
    }
    return std::make_unique<RasterTarget<P>>(host, alpha, input, output);
}

template<class P, class T, class W, class F, class Format>
int StrokeRender(P /*pixel*/, T /*maximum*/, W /*wide*/, F /*single*/, Format /*format*/,
                 PluginHost_API* host) {
    return RenderFrame(host, {chooseTarget<P>, P::is32Bit()});
}

} // namespace orbel
