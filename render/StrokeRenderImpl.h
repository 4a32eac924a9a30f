#pragma once

#include "render/StrokeRender.h"

#include "host/RasterProxy.h"
#include "pixel/Acceleration.h"
#include "pixel/PixelWalk.h"
#include "pixel/TransferModes.h"
#include "render/BandTarget.h"
#include "render/RasterTargetImpl.h"
#include "render/Render.h"

#include <cstddef>
#include <memory>

namespace orbel {

inline constexpr int MODE_LAYER_ALONE = 1; ///< "None"
inline constexpr int MODE_NORMAL = 2;

/// The compositing code of a mode (menu index + 1); `TRANSFER_NOTHING` for no menu entry.
[[nodiscard]] inline int transferCode(int mode, bool floatPixels) {
    if (mode < 1 || mode > static_cast<int>(TRANSFER_MENU.size())) {
        return TRANSFER_NOTHING;
    }
    const TransferMenuEntry& entry = TRANSFER_MENU[static_cast<std::size_t>(mode - 1)];
    return floatPixels ? entry.floatCode : entry.code;
}

/// What becomes of the layer under a "Transfer Mode".
template<class P>
LayerFinish layerFinish(PluginHost_API* host, int mode, double opacity) {
    if (mode == MODE_NORMAL && host->ignoreNormalComposite()) {
        mode = MODE_LAYER_ALONE;
    }
    if (mode == MODE_LAYER_ALONE) {
        return {0, opacity};
    }
    const int code = transferCode(mode, P::is32Bit());
    return {code, code == 0 ? 1.0 : opacity}; // a mode that is none leaves the layer as it is
}

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
                 PluginHost_API* host) try {
    const PluginRasterProxy input(host, host->getInputRaster(0), true, true);
    const PluginRasterProxy output(host, host->getOutputRaster(), true, true);
    if (input.getImpl() == nullptr || output.getImpl() == nullptr ||
        describeRaster(host, input.getImpl()).data == nullptr ||
        describeRaster(host, output.getImpl()).data == nullptr) {
        return 1;
    }
    const auto target = chooseTarget<P>(host, input.getImpl(), output.getImpl());
    int mode = MODE_LAYER_ALONE;
    double opacity = 1.0;
    const int error = Render(host, output.getImpl(), *target, mode, opacity, true, true);
    return error != 0 ? error : target->finish(layerFinish<P>(host, mode, opacity));
} catch (...) {
    return 1;
}

} // namespace orbel
