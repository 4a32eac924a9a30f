#pragma once

#include "pixel/BlendReferenceImpl.h"
#include "pixel/PixelWalk.h"
#include "pixel/RowKernels.h"
#include "pixel/TransferModes.h"

#include <cstddef>
#include <cstring>

namespace orbel {

/// Calls `composite(front, behind, output, width)` for the rows that three rasters have in common,
/// and makes the output opaque if asked to.
template<typename P, typename Composite>
void compositeRasters(const Composite& composite, PluginHost_API* host, PluginRaster_API* first,
                      PluginRaster_API* second, PluginRaster_API* out, bool opaqueOut) {
    using T = typename P::Component;
    forEachRow<T>(
        [&](int width, const T* front, const T* behind, T* output) {
            composite(front, behind, output, width);
            for (int x = 0; opaqueOut && x < width; ++x) {
                output[componentsPerPixel * std::ptrdiff_t{x} + P::FORMAT::alpha] =
                    static_cast<T>(P::MAX_VALUE());
            }
        },
        describeRaster(host, first), describeRaster(host, second), describeRaster(host, out));
}

template<typename P, typename T, typename W, typename F, typename FORMAT, typename Functor>
int Blend(P trait, T, W, F, FORMAT, Functor functor, PluginHost_API* host, float opacity1,
          float opacity2, PluginRaster_API* first, PluginRaster_API* second, PluginRaster_API* out,
          bool /*unused*/, bool opaqueOut) {
    functor.setup(trait, opacity1, opacity2);
    if (!functor.hasEffect()) {
        return 0;
    }
    compositeRasters<P>(
        [&](const T* front, const T* behind, T* output, int width) {
            blendRow<P>(functor, front, behind, output, width, opacity1, opacity2);
        },
        host, first, second, out, opaqueOut);
    return 0;
}

/// The same by the fastest way there is for a code.
template<typename P>
void compositeByCode(int code, PluginHost_API* host, float opacity1, float opacity2,
                     PluginRaster_API* first, PluginRaster_API* second, PluginRaster_API* out,
                     bool opaqueOut) {
    using T = typename P::Component;
    const auto composite = rowKernels<P>().composite.at(static_cast<std::size_t>(code));
    compositeRasters<P>(
        [=](const T* front, const T* behind, T* output, int width) {
            composite(front, behind, output, width, opacity1, opacity2);
        },
        host, first, second, out, opaqueOut);
}

template<typename P, typename T, typename W, typename F, typename FORMAT>
int BlendBehind(P, T, W, F, FORMAT, PluginHost_API* host, float opacity1, float opacity2,
                PluginRaster_API* first, PluginRaster_API* second, PluginRaster_API* out,
                bool /*unused*/, bool opaqueOut) {
    compositeByCode<P>(TRANSFER_BEHIND, host, opacity1, opacity2, first, second, out, opaqueOut);
    return 0;
}

template<typename P, typename T, typename W, typename F, typename FORMAT>
int BlendImages(P, PluginHost_API* host, float amount, PluginRaster_API* from,
                PluginRaster_API* to) {
    if (amount == 0.0F) {
        return 0;
    }
    const auto& kernels = rowKernels<P>();
    forEachRow<T>(
        [&](int width, const T* source, T* target) {
            const auto components = std::ptrdiff_t{width} * componentsPerPixel;
            if (amount == 1.0F) {
                std::memmove(target, source, static_cast<std::size_t>(components) * sizeof(T));
            } else {
                kernels.blendImages(source, target, components, amount);
            }
        },
        describeRaster(host, from), describeRaster(host, to));
    return 0;
}

template<typename P, typename T, typename W, typename F, typename FORMAT>
int TransferComposite(P, T, W, F, FORMAT, PluginHost_API* host, int mode, double opacity1,
                      double opacity2, PluginRaster_API* first, PluginRaster_API* second,
                      PluginRaster_API* out, bool /*flag*/, bool opaqueOut, bool ownBlend) {
    if (host->getAEHost() != nullptr && !ownBlend) {
        return host->blend(mode, opacity1, opacity2, second, out);
    }
    const TransferRow* const row = findTransfer(mode);
    if (row == nullptr) {
        return 0;
    }
    const auto front = static_cast<float>(opacity1);
    const auto behind = static_cast<float>(opacity2);
    const bool opaque = row->mayBeOpaque && opaqueOut;
    if (row->mode == TransferMode::Behind) {
        return BlendBehind<P, T, W, F, FORMAT>({}, {}, {}, {}, {}, host, front, behind, first,
                                               second, out, false, opaque);
    }
    compositeByCode<P>(mode, host, front, behind, first, second, out, opaque);
    return 0;
}

} // namespace orbel
