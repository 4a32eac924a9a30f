#pragma once

#include "host/Numeric.h"
#include "pixel/ColourReferenceImpl.h"
#include "pixel/RowKernels.h"
#include "pixel/TransferFunctors.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>

namespace orbel {

// The transfer modes over one row, pixel by pixel: the reference that vector kernels have to match
// to the byte.

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
        return P::truncated(std::clamp(scaled, -limit, limit));
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

/// One pixel of `Blend` where the image in front is not transparent. `unionAlpha` is the alpha of
/// both together.
template<typename P, typename F, typename Functor>
BlendPixel<F> blendPixel(const Functor& functor, const BlendPixel<F>& s, const BlendPixel<F>& d,
                         F unionAlpha) {
    constexpr auto maximum = static_cast<F>(P::MAX_VALUE());
    BlendPixel<F> c = s;
    if (d.alpha > F{0}) {
        functor.composite(P{}, s.red, s.green, s.blue, s.alpha, d.red, d.green, d.blue, d.alpha,
                          c.red, c.green, c.blue, c.alpha);
        if (d.alpha < maximum && !functor.done()) {
            // Where the image behind is partly transparent, the front's own colour shows.
            c = mixColours(c, s, [inverse = maximum - d.alpha, da = d.alpha](F blended, F front) {
                return P::multiply(front, inverse) + P::multiply(blended, da);
            });
        }
    }
    if (functor.done()) {
        c.alpha = unionAlpha;
    } else if (s.alpha != maximum && d.alpha != F{0}) {
        const F k = P::multiply(maximum - c.alpha, d.alpha);
        c = mixColours(c, d, [k, a = c.alpha](F blended, F behind) {
            return P::divide(P::multiply(blended, a) + P::multiply(behind, k), a + k);
        });
        c.alpha = unionAlpha;
    }
    return c;
}

/// Combines `front` with `behind` under the mode of a functor that is set up.
template<typename P, typename Functor>
void blendRow(const Functor& functor, const typename P::Component* front,
              const typename P::Component* behind, typename P::Component* output, int pixels,
              float opacity1, float opacity2) {
    using F = typename P::Float;
    using FORMAT = typename P::FORMAT;
    for (int x = 0; x < pixels; ++x) {
        const F sa = layerAlpha<P, F>(front[FORMAT::alpha], opacity1);
        const F da = layerAlpha<P, F>(behind[FORMAT::alpha], opacity2);
        const F unionAlpha = sa + da - P::multiply(sa, da);
        if (sa == F{0}) {
            copyPixel(output, behind);
            storeAlpha<P, FORMAT>(output, unionAlpha);
        } else {
            const auto s = loadPixel<P, FORMAT, F>(front, sa);
            const auto d = loadPixel<P, FORMAT, F>(behind, da);
            storePixel<P, FORMAT>(output, blendPixel<P>(functor, s, d, unionAlpha));
        }
        front += componentsPerPixel;
        behind += componentsPerPixel;
        output += componentsPerPixel;
    }
}

/// The same under the mode of a functor's type.
template<typename P, typename Functor>
void blendRowBy(const typename P::Component* front, const typename P::Component* behind,
                typename P::Component* output, int pixels, float opacity1, float opacity2) {
    Functor functor;
    functor.setup(P{}, opacity1, opacity2);
    if (functor.hasEffect()) {
        blendRow<P>(functor, front, behind, output, pixels, opacity1, opacity2);
    }
}

/// One pixel of `blendBehindRow` where the image `d`, which lies in front here, is partly
/// transparent.
template<typename P, typename F>
BlendPixel<F> blendPixelBehind(const BlendPixel<F>& s, const BlendPixel<F>& d, F unionAlpha) {
    constexpr auto maximum = static_cast<F>(P::MAX_VALUE());
    const F da = d.alpha;
    auto c = mixColours(s, d, [da, inverse = maximum - da](F back, F front) {
        return P::multiply(back, inverse) + P::multiply(front, da);
    });
    if (s.alpha != maximum) {
        const F k = P::multiply(maximum - s.alpha, da);
        c = mixColours(c, d, [k, sa = s.alpha](F mixed, F front) {
            return P::divide(P::multiply(mixed, sa) + P::multiply(front, k), k + sa);
        });
    }
    c.alpha = unionAlpha;
    return c;
}

/// Puts `back` behind `front`.
template<typename P>
void blendBehindRow(const typename P::Component* back, const typename P::Component* front,
                    typename P::Component* output, int pixels, float opacity1, float opacity2) {
    using F = typename P::Float;
    using FORMAT = typename P::FORMAT;
    constexpr auto maximum = static_cast<F>(P::MAX_VALUE());
    for (int x = 0; x < pixels; ++x) {
        const F sa = layerAlpha<P, F>(back[FORMAT::alpha], opacity1);
        const F da = layerAlpha<P, F>(front[FORMAT::alpha], opacity2);
        const F unionAlpha = sa + da - P::multiply(sa, da);
        if (da == F{0}) {
            copyPixel(output, back);
            storeAlpha<P, FORMAT>(output, unionAlpha);
        } else if (da == maximum) {
            copyPixel(output, front);
        } else {
            const auto s = loadPixel<P, FORMAT, F>(back, sa);
            const auto d = loadPixel<P, FORMAT, F>(front, da);
            storePixel<P, FORMAT>(output, blendPixelBehind<P>(s, d, unionAlpha));
        }
        back += componentsPerPixel;
        front += componentsPerPixel;
        output += componentsPerPixel;
    }
}

/// Cross-fades in single precision and truncates.
template<typename T>
void blendImagesRow(const T* from, T* to, std::ptrdiff_t components, float amount) {
    const float inverse = 1.0F - amount;
    for (std::ptrdiff_t i = 0; i < components; ++i) {
        to[i] = truncateTo<T>(static_cast<float>(from[i]) * amount +
                              static_cast<float>(to[i]) * inverse);
    }
}

template<typename P>
using CompositeRow = typename RowKernels<P>::Composite;

/// What a code without a mode does.
template<typename P>
void compositeNothing(const typename P::Component*, const typename P::Component*,
                      typename P::Component*, int, float, float) {}

/// The steps of finishing a row, one after another.
template<typename P, CompositeRow<P> composite>
void finishRow(typename P::Component* input, typename P::Component* layer, int pixels,
               float opacity) {
    ColourReference<P>::unPremult(input, pixels);
    composite(layer, input, layer, pixels, opacity, 1.0F);
    ColourReference<P>::premult(input, pixels);
    ColourReference<P>::premult(layer, pixels);
}

template<typename P>
void finishTransparentRow(typename P::Component* input, typename P::Component* layer, int pixels) {
    using F = typename P::Float;
    using FORMAT = typename P::FORMAT;
    ColourReference<P>::unPremult(input, pixels);
    const auto* behind = input;
    auto* output = layer;
    for (int x = 0; x < pixels; ++x) {
        const auto alpha = static_cast<F>(behind[FORMAT::alpha]);
        copyPixel(output, behind);
        storeAlpha<P, FORMAT>(output, alpha - P::multiply(F{0}, alpha));
        behind += componentsPerPixel;
        output += componentsPerPixel;
    }
    ColourReference<P>::premult(input, pixels);
    ColourReference<P>::premult(layer, pixels);
}

} // namespace orbel
