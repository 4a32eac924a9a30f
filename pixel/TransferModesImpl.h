#pragma once

#include "pixel/PixelWalk.h"
#include "pixel/RowKernels.h"
#include "pixel/TransferModes.h"

#include <cstddef>
#include <cstring>

namespace orbel {

/// Composites the rows that three rasters have in common.
template<typename P, typename FORMAT>
void compositeRasters(typename RowKernels<P>::Composite composite, PluginHost_API* host,
                      float opacity1, float opacity2, PluginRaster_API* first,
                      PluginRaster_API* second, PluginRaster_API* out, bool opaqueOut) {
    using T = typename P::Component;
    forEachRow<T>(
        [=](int width, const T* front, const T* behind, T* output) {
            composite(front, behind, output, width, opacity1, opacity2);
            for (int x = 0; opaqueOut && x < width; ++x) {
                output[componentsPerPixel * std::ptrdiff_t{x} + FORMAT::alpha] =
                    static_cast<T>(P::MAX_VALUE());
            }
        },
        describeRaster(host, first), describeRaster(host, second), describeRaster(host, out));
}

inline constexpr int CODE_BEHIND = 1;
inline constexpr int CODE_IN_FRONT = 2;

template<typename P, typename T, typename W, typename F, typename FORMAT>
int BlendBehind(P, T, W, F, FORMAT, PluginHost_API* host, float opacity1, float opacity2,
                PluginRaster_API* first, PluginRaster_API* second, PluginRaster_API* out,
                bool /*unused*/, bool opaqueOut) {
    compositeRasters<P, FORMAT>(rowKernels<P>().composite[CODE_BEHIND], host, opacity1, opacity2,
                                first, second, out, opaqueOut);
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
    const auto& composites = rowKernels<P>().composite;
    const auto index = static_cast<std::size_t>(mode);
    if (index >= composites.size() || composites[index] == nullptr) {
        return 0;
    }
    const bool mayForceOpaque = mode != CODE_BEHIND && mode != CODE_IN_FRONT;
    compositeRasters<P, FORMAT>(composites[index], host, static_cast<float>(opacity1),
                                static_cast<float>(opacity2), first, second, out,
                                mayForceOpaque && opaqueOut);
    return 0;
}

} // namespace orbel
