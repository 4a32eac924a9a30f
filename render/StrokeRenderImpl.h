#pragma once

#include "render/StrokeRender.h"

#include "host/RasterProxy.h"
#include "pixel/ColourOps.h"
#include "pixel/HiddenColour.h"
#include "pixel/PixelWalk.h"
#include "pixel/TransferModes.h"
#include "render/BandRenderImpl.h"
#include "render/RenderImpl.h"

#include <cstddef>

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

/// Makes the host's picture straight, as the core works on it.
template<class P, class T, class W, class F, class Format>
void straightenInput(P pixel, PluginHost_API* host, SourceAlpha alpha, PluginRaster_API* input) {
    if (alpha == SourceAlpha::Premultiplied) {
        UnPremult<P, T, W, F, Format>(pixel, host, input);
    } else if (alpha == SourceAlpha::Opaque) {
        AVXSetAlpha<P, T, W, F, Format>(pixel, host, input);
    }
}

/// Gives the straight pictures back as the host carries alpha.
template<class P, class T, class W, class F, class Format>
void deliverAlpha(P pixel, PluginHost_API* host, const AlphaHandling& alpha,
                  PluginRaster_API* input, PluginRaster_API* output) {
    if (alpha.source == SourceAlpha::Premultiplied) {
        Premult<P, T, W, F, Format>(pixel, host, input);
    }
    if (alpha.output == OutputAlpha::Premultiplied) {
        Premult<P, T, W, F, Format>(pixel, host, output);
    } else {
        forEachRow<T>([](int width, const T* before,
                         T* after) { clearHiddenColour<P>(before, after, width); },
                      describeRaster(host, input), describeRaster(host, output));
    }
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

template<class P, class T, class W, class F, class Format>
int compositeLayer(P pixel, T maximum, W wide, F single, Format format, PluginHost_API* host,
                   int mode, double opacity, PluginRaster_API* input, PluginRaster_API* output) {
    const LayerFinish how = layerFinish<P>(host, mode, opacity);
    if (how.code != 0) {
        return TransferComposite<P, T, W, F, Format>(pixel, maximum, wide, single, format, host,
                                                     how.code, how.opacity, 1.0, output, input,
                                                     output, false, false, false);
    }
    if (how.opacity != 1.0) {
        return MultiplyAlpha<P, T, W, F, Format>(pixel, host, static_cast<float>(how.opacity),
                                                 output);
    }
    return 0;
}

template<class P, class T, class W, class F, class Format>
int StrokeRender(P pixel, T maximum, W wide, F single, Format format, PluginHost_API* host) try {
    const PluginRasterProxy input(host, host->getInputRaster(0), true, true);
    const PluginRasterProxy output(host, host->getOutputRaster(), true, true);
    if (input.getImpl() == nullptr || output.getImpl() == nullptr ||
        describeRaster(host, input.getImpl()).data == nullptr ||
        describeRaster(host, output.getImpl()).data == nullptr) {
        return 1;
    }
    const AlphaHandling alpha = host->getAlphaHandling();
    if (const auto result = renderInBands<P>(
            host, alpha, input.getImpl(), output.getImpl(),
            [host](int mode, double opacity) { return layerFinish<P>(host, mode, opacity); })) {
        return *result;
    }
    straightenInput<P, T, W, F, Format>(pixel, host, alpha.source, input.getImpl());
    int mode = MODE_LAYER_ALONE;
    double opacity = 1.0;
    if (const int error =
            Render(pixel, maximum, wide, single, format, host, mode, opacity, true, true);
        error != 0) {
        return error;
    }
    if (const int error = compositeLayer(pixel, maximum, wide, single, format, host, mode, opacity,
                                         input.getImpl(), output.getImpl());
        error != 0) {
        return error;
    }
    deliverAlpha<P, T, W, F, Format>(pixel, host, alpha, input.getImpl(), output.getImpl());
    return 0;
} catch (...) {
    return 1;
}

} // namespace orbel
