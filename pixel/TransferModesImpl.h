#pragma once

#include "host/Numeric.h"
#include "pixel/PixelWalk.h"
#include "pixel/TransferFunctors.h"
#include "pixel/TransferModes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>

namespace orbel {

/// A pixel in the arithmetic of its format.
template<typename F>
struct BlendPixel {
    F red;
    F green;
    F blue;
    F alpha;
};

/// A component's alpha after opacity; a whole number in the integer formats. There, what an opacity
/// far outside 0 to 1 leads to is limited, so that sums of alphas and products stay in range.
template<typename P, typename F>
F layerAlpha(typename P::Component alpha, float opacity) {
    const float scaled = static_cast<float>(alpha) * opacity;
    if constexpr (P::is32Bit()) {
        return scaled;
    } else {
        constexpr float limit = 16777216.0F;
        return static_cast<F>(truncateTo<int>(std::clamp(scaled, -limit, limit)));
    }
}

/// The colour of a pixel, without the negative components that float formats may hold, and an
/// alpha.
template<typename P, typename FORMAT, typename F>
BlendPixel<F> loadPixel(const typename P::Component* pixel, F alpha) {
    const auto component = [pixel](int channel) {
        const auto value = static_cast<F>(pixel[channel]);
        return P::is32Bit() && value < F{0} ? F{0} : value;
    };
    return {component(FORMAT::red), component(FORMAT::green), component(FORMAT::blue), alpha};
}

template<typename P, typename FORMAT, typename F>
void storeAlpha(typename P::Component* pixel, F alpha) {
    pixel[FORMAT::alpha] = truncateTo<typename P::Component>(P::clamp(alpha));
}

template<typename P, typename FORMAT, typename F>
void storePixel(typename P::Component* pixel, const BlendPixel<F>& value) {
    using T = typename P::Component;
    pixel[FORMAT::red] = truncateTo<T>(P::clamp(value.red));
    pixel[FORMAT::green] = truncateTo<T>(P::clamp(value.green));
    pixel[FORMAT::blue] = truncateTo<T>(P::clamp(value.blue));
    storeAlpha<P, FORMAT>(pixel, value.alpha);
}

/// Copies a pixel whole; source and destination may be the same.
template<typename T>
void copyPixel(T* destination, const T* source) {
    std::memmove(destination, source, componentsPerPixel * sizeof(T));
}

/// Applies `mix(a, b)` to each colour channel of two pixels; the alpha is that of `a`.
template<typename F, typename Mix>
BlendPixel<F> mixColours(const BlendPixel<F>& a, const BlendPixel<F>& b, const Mix& mix) {
    return {mix(a.red, b.red), mix(a.green, b.green), mix(a.blue, b.blue), a.alpha};
}

/// One pixel of `Blend` where the image in front is not transparent. `united` is the alpha of both
/// together.
template<typename P, typename F, typename Functor>
BlendPixel<F> blendPixel(const Functor& functor, const BlendPixel<F>& s, const BlendPixel<F>& d,
                         F united) {
    constexpr auto maximum = static_cast<F>(P::MAX_VALUE());
    BlendPixel<F> c = s;
    if (d.alpha > F{0}) {
        functor.composite(P{}, s.red, s.green, s.blue, s.alpha, d.red, d.green, d.blue, d.alpha,
                          c.red, c.green, c.blue, c.alpha);
        if (d.alpha < maximum && !functor.done()) {
            // Where the image behind is partly transparent, the front's own colour shows.
            c = mixColours(c, s, [rest = maximum - d.alpha, da = d.alpha](F blended, F front) {
                return P::multiply(front, rest) + P::multiply(blended, da);
            });
        }
    }
    if (functor.done()) {
        c.alpha = united;
    } else if (s.alpha != maximum && d.alpha != F{0}) {
        const F k = P::multiply(maximum - c.alpha, d.alpha);
        c = mixColours(c, d, [k, a = c.alpha](F blended, F behind) {
            return P::divide(P::multiply(blended, a) + P::multiply(behind, k), a + k);
        });
        c.alpha = united;
    }
    return c;
}

/// Combines `first` with `second` under the functor's mode, pixel by pixel. Returns 0.
template<typename P, typename T, typename W, typename F, typename FORMAT, typename Functor>
int Blend(P, T, W, F, FORMAT, Functor functor, PluginHost_API* host, float opacity1, float opacity2,
          PluginRaster_API* first, PluginRaster_API* second, PluginRaster_API* out, bool /*unused*/,
          bool opaqueOut) {
    functor.setup(P{}, opacity1, opacity2);
    if (!functor.hasEffect()) {
        return 0;
    }
    forEachPixel<T>(
        [&functor, opacity1, opacity2, opaqueOut](const T* front, const T* behind, T* output) {
            const F sa = layerAlpha<P, F>(front[FORMAT::alpha], opacity1);
            const F da = layerAlpha<P, F>(behind[FORMAT::alpha], opacity2);
            const F united = sa + da - P::multiply(sa, da);
            if (sa == F{0}) {
                copyPixel(output, behind);
                storeAlpha<P, FORMAT>(output, united);
            } else {
                const auto s = loadPixel<P, FORMAT, F>(front, sa);
                const auto d = loadPixel<P, FORMAT, F>(behind, da);
                storePixel<P, FORMAT>(output, blendPixel<P>(functor, s, d, united));
            }
            if (opaqueOut) {
                output[FORMAT::alpha] = static_cast<T>(P::MAX_VALUE());
            }
        },
        describeRaster(host, first), describeRaster(host, second), describeRaster(host, out));
    return 0;
}

/// One pixel of `BlendBehind` where the image `d`, which lies in front here, is partly transparent.
template<typename P, typename F>
BlendPixel<F> blendPixelBehind(const BlendPixel<F>& s, const BlendPixel<F>& d, F united) {
    constexpr auto maximum = static_cast<F>(P::MAX_VALUE());
    const F da = d.alpha;
    auto c = mixColours(s, d, [da, rest = maximum - da](F back, F front) {
        return P::multiply(back, rest) + P::multiply(front, da);
    });
    if (s.alpha != maximum) {
        const F k = P::multiply(maximum - s.alpha, da);
        c = mixColours(c, d, [k, sa = s.alpha](F mixed, F front) {
            return P::divide(P::multiply(mixed, sa) + P::multiply(front, k), k + sa);
        });
    }
    c.alpha = united;
    return c;
}

template<typename P, typename T, typename W, typename F, typename FORMAT>
int BlendBehind(P, T, W, F, FORMAT, PluginHost_API* host, float opacity1, float opacity2,
                PluginRaster_API* first, PluginRaster_API* second, PluginRaster_API* out,
                bool /*unused*/, bool opaqueOut) {
    constexpr auto maximum = static_cast<F>(P::MAX_VALUE());
    forEachPixel<T>(
        [opacity1, opacity2, opaqueOut](const T* back, const T* front, T* output) {
            const F sa = layerAlpha<P, F>(back[FORMAT::alpha], opacity1);
            const F da = layerAlpha<P, F>(front[FORMAT::alpha], opacity2);
            const F united = sa + da - P::multiply(sa, da);
            if (da == F{0}) {
                copyPixel(output, back);
                storeAlpha<P, FORMAT>(output, united);
            } else if (da == maximum) {
                copyPixel(output, front);
            } else {
                const auto s = loadPixel<P, FORMAT, F>(back, sa);
                const auto d = loadPixel<P, FORMAT, F>(front, da);
                storePixel<P, FORMAT>(output, blendPixelBehind<P>(s, d, united));
            }
            if (opaqueOut) {
                output[FORMAT::alpha] = static_cast<T>(P::MAX_VALUE());
            }
        },
        describeRaster(host, first), describeRaster(host, second), describeRaster(host, out));
    return 0;
}

template<typename P, typename T, typename W, typename F, typename FORMAT>
int BlendImages(P, PluginHost_API* host, float amount, PluginRaster_API* from,
                PluginRaster_API* to) {
    if (amount == 0.0F) {
        return 0;
    }
    const RasterInfo source = describeRaster(host, from);
    const RasterInfo target = describeRaster(host, to);
    if (amount == 1.0F) {
        forEachRow<T>(
            [](int width, const T* sourceRow, T* targetRow) {
                const auto components = static_cast<std::size_t>(width) * componentsPerPixel;
                std::memmove(targetRow, sourceRow, components * sizeof(T));
            },
            source, target);
        return 0;
    }
    const float rest = 1.0F - amount;
    forEachRow<T>(
        [amount, rest](int width, const T* sourceRow, T* targetRow) {
            const std::ptrdiff_t components = std::ptrdiff_t{width} * componentsPerPixel;
            for (std::ptrdiff_t i = 0; i < components; ++i) {
                targetRow[i] = truncateTo<T>(static_cast<float>(sourceRow[i]) * amount +
                                             static_cast<float>(targetRow[i]) * rest);
            }
        },
        source, target);
    return 0;
}

/// Which routine each mode number stands for; numbers that are missing do nothing.
template<typename P, typename T, typename W, typename F, typename FORMAT>
struct TransferTable {
    using Routine = int (*)(PluginHost_API*, float, float, PluginRaster_API*, PluginRaster_API*,
                            PluginRaster_API*, bool, bool);

    static int behind(PluginHost_API* host, float opacity1, float opacity2, PluginRaster_API* first,
                      PluginRaster_API* second, PluginRaster_API* out, bool flag,
                      bool /*opaqueOut*/) {
        return BlendBehind<P, T, W, F, FORMAT>(P{}, T{}, W{}, F{}, FORMAT{}, host, opacity1,
                                               opacity2, first, second, out, flag, false);
    }

    template<template<typename, typename, typename, typename, typename> class Functor,
             bool mayForceOpaque = true>
    static int blend(PluginHost_API* host, float opacity1, float opacity2, PluginRaster_API* first,
                     PluginRaster_API* second, PluginRaster_API* out, bool flag, bool opaqueOut) {
        using Mode = Functor<P, T, W, F, FORMAT>;
        return Blend<P, T, W, F, FORMAT, Mode>(P{}, T{}, W{}, F{}, FORMAT{}, Mode{}, host, opacity1,
                                               opacity2, first, second, out, flag,
                                               mayForceOpaque && opaqueOut);
    }

    static constexpr std::array<Routine, 36> makeRoutines() {
        std::array<Routine, 36> routines{};
        routines[1] = &behind;
        routines[2] = &blend<BLEND_IN_FRONT, false>;
        routines[3] = &blend<BLEND_HUE>;
        routines[4] = &blend<BLEND_PLUS>;
        routines[5] = &blend<BLEND_MUTLIPLY>;
        routines[6] = &blend<BLEND_SCREEN>;
        routines[7] = &blend<BLEND_OVERLAY>;
        routines[8] = &blend<BLEND_SOFTLIGHT>;
        routines[9] = &blend<BLEND_HARDLIGHT>;
        routines[10] = &blend<BLEND_DARKEN>;
        routines[11] = &blend<BLEND_LIGHTEN>;
        routines[12] = &blend<BLEND_DIFFERENCE>;
        routines[13] = &blend<BLEND_HUE>;
        routines[14] = &blend<BLEND_SAT>;
        routines[15] = &blend<BLEND_COLOR>;
        routines[16] = &blend<BLEND_LUMA>;
        std::fill(&routines[17], &routines[23], &blend<BLEND_EXCLUSION>);
        routines[23] = &blend<BLEND_COLORDODGE>;
        routines[24] = &blend<BLEND_COLORBURN>;
        routines[25] = &blend<BLEND_EXCLUSION>;
        routines[35] = &blend<BLEND_SCREEN_SPECIAL>;
        return routines;
    }

    /// Null where there is nothing to do.
    static Routine find(int mode) {
        static constexpr std::array<Routine, 36> routines = makeRoutines();
        const auto index = static_cast<std::size_t>(mode);
        return index < routines.size() ? routines[index] : nullptr;
    }
};

template<typename P, typename T, typename W, typename F, typename FORMAT>
int TransferComposite(P, T, W, F, FORMAT, PluginHost_API* host, int mode, double opacity1,
                      double opacity2, PluginRaster_API* first, PluginRaster_API* second,
                      PluginRaster_API* out, bool flag, bool opaqueOut, bool ownBlend) {
    if (host->getAEHost() != nullptr && !ownBlend) {
        return host->blend(mode, opacity1, opacity2, second, out);
    }
    const auto routine = TransferTable<P, T, W, F, FORMAT>::find(mode);
    if (routine == nullptr) {
        return 0;
    }
    return routine(host, static_cast<float>(opacity1), static_cast<float>(opacity2), first, second,
                   out, flag, opaqueOut);
}

} // namespace orbel
