#pragma once

#include "host/Numeric.h"
#include "pixel/ColourConversion.h"
#include "pixel/PixelTraits.h"

#include <algorithm>

namespace orbel {

// The transfer modes as functors for `Blend`. Each is set up once per pass with the opacities of
// the two images; `composite` then gives the blended colour of one pixel from the colour s of the
// image in front, the colour d of the image behind and their alphas after opacity. While `done` is
// false the alpha output stays untouched and the caller mixes the colour with both images; where it
// is true the output is final.

/// What all modes share.
template<typename P, typename F>
struct BlendMode {
    /// Opacities of the images in front and behind, as fractions.
    void setup(P, float, float) { maximum = static_cast<F>(P::MAX_VALUE()); }
    /// Whether the pass is worth its time at all.
    [[nodiscard]] bool hasEffect() const { return true; }
    /// Whether `composite` has mixed both images already, alpha included.
    [[nodiscard]] bool done() const { return false; }

    F maximum{}; ///< of the format's range: 255, 65535 or 1
};

/// A mode that works on each channel alone: `Mode` provides `channel(s, d)`.
template<typename Mode, typename P, typename F>
struct ChannelBlendMode : BlendMode<P, F> {
    void composite(P, F sR, F sG, F sB, F, F dR, F dG, F dB, F, F& r, F& g, F& b, F&) const {
        const Mode& mode = static_cast<const Mode&>(*this);
        r = mode.channel(sR, dR);
        g = mode.channel(sG, dG);
        b = mode.channel(sB, dB);
    }
};

/// A channel mode with a threshold at half the maximum, a whole number in the integer formats.
template<typename Mode, typename P, typename F>
struct HalvedBlendMode : ChannelBlendMode<Mode, P, F> {
    void setup(P trait, float opacity1, float opacity2) {
        BlendMode<P, F>::setup(trait, opacity1, opacity2);
        half = P::truncated(0.5F * P::MAX_VALUE());
    }

    F half{};
};

/// A mode that finishes colour and alpha itself: `Mode` provides `mixPremultiplied(s, d, alpha)`
/// for colours premultiplied by their alphas and the alpha of both images together.
template<typename Mode, typename P, typename F>
struct FinishingBlendMode : BlendMode<P, F> {
    void composite(P, F sR, F sG, F sB, F sA, F dR, F dG, F dB, F dA, F& r, F& g, F& b,
                   F& a) const {
        const Mode& mode = static_cast<const Mode&>(*this);
        const F alpha = P::clamp_overflow(sA + dA - P::multiply(sA, dA));
        const auto result = [&](F s, F d) {
            return P::divide(
                mode.mixPremultiplied(premultiplied(s, sA), premultiplied(d, dA), alpha), alpha);
        };
        r = result(sR, dR);
        g = result(sG, dG);
        b = result(sB, dB);
        a = alpha;
    }
    [[nodiscard]] bool done() const { return true; }

private:
    [[nodiscard]] F premultiplied(F colour, F alpha) const {
        return alpha == this->maximum ? colour : P::multiply(colour, alpha);
    }
};

/// Hue in turns, saturation and lightness, each 0 to 1: what `rgb2hsl` gives.
struct HslColour {
    float h;
    float s;
    float l;
};

/// A mode that takes hue, saturation and lightness from one image or the other: `Mode` provides
/// `mix(front, behind)`.
template<typename Mode, typename P, typename T, typename F>
struct HslBlendMode : BlendMode<P, F> {
    void composite(P, F sR, F sG, F sB, F, F dR, F dG, F dB, F, F& r, F& g, F& b, F&) const {
        const HslColour colour = Mode::mix(toHsl(sR, sG, sB), toHsl(dR, dG, dB));
        float red = 0.0F;
        float green = 0.0F;
        float blue = 0.0F;
        hsl2rgb(colour.h, colour.s, colour.l, red, green, blue);
        r = P::fromFloat(red);
        g = P::fromFloat(green);
        b = P::fromFloat(blue);
    }

private:
    static float unit(F value) {
        const float component = P::toFloat(truncateTo<T>(value));
        return P::is32Bit() && Mode::clampsFloat && component > 1.0F ? 1.0F : component;
    }
    static HslColour toHsl(F r, F g, F b) {
        HslColour colour{};
        rgb2hsl(unit(r), unit(g), unit(b), colour.h, colour.s, colour.l);
        return colour;
    }
};

/// "Normal": the colour in front, s.
template<typename P, typename T, typename W, typename F, typename FORMAT>
struct BLEND_IN_FRONT : ChannelBlendMode<BLEND_IN_FRONT<P, T, W, F, FORMAT>, P, F> {
    void setup(P trait, float opacity1, float opacity2) {
        BlendMode<P, F>::setup(trait, opacity1, opacity2);
        opacity = P::truncated(P::MAX_VALUE() * opacity1);
    }
    [[nodiscard]] F channel(F s, F) const { return s; }

    F opacity{}; ///< of the image in front, in the format's range
};

/// "Add": s + d of the premultiplied colours, no brighter than the alpha of both; light adds up in
/// float, which has no such limit.
template<typename P, typename T, typename W, typename F, typename FORMAT>
struct BLEND_PLUS : FinishingBlendMode<BLEND_PLUS<P, T, W, F, FORMAT>, P, F> {
    [[nodiscard]] F mixPremultiplied(F s, F d, F alpha) const {
        return P::is32Bit() ? s + d : std::min(s + d, alpha);
    }
};

/// "Difference": |s - d| of the premultiplied colours.
template<typename P, typename T, typename W, typename F, typename FORMAT>
struct BLEND_DIFFERENCE : FinishingBlendMode<BLEND_DIFFERENCE<P, T, W, F, FORMAT>, P, F> {
    void setup(P trait, float opacity1, float opacity2) {
        BlendMode<P, F>::setup(trait, opacity1, opacity2);
        minimum = static_cast<F>(P::MIN_VALUE());
    }
    [[nodiscard]] F mixPremultiplied(F s, F d, F) const { return d - s < minimum ? s - d : d - s; }

    F minimum{};
};

/// "Multiply": s d. Never brighter than either; the misspelt name is meant.
template<typename P, typename T, typename W, typename F, typename FORMAT>
struct BLEND_MUTLIPLY : ChannelBlendMode<BLEND_MUTLIPLY<P, T, W, F, FORMAT>, P, F> {
    [[nodiscard]] F channel(F s, F d) const { return P::multiply(d, s); }
};

/// "Screen": 1 - (1 - s)(1 - d), of a range of 1. Never darker than either.
template<typename P, typename T, typename W, typename F, typename FORMAT>
struct BLEND_SCREEN : ChannelBlendMode<BLEND_SCREEN<P, T, W, F, FORMAT>, P, F> {
    [[nodiscard]] F channel(F s, F d) const {
        return this->maximum - P::multiply(this->maximum - s, this->maximum - d);
    }
};

/// The same formula as `BLEND_SCREEN`, under a mode number of its own.
template<typename P, typename T, typename W, typename F, typename FORMAT>
struct BLEND_SCREEN_SPECIAL : ChannelBlendMode<BLEND_SCREEN_SPECIAL<P, T, W, F, FORMAT>, P, F> {
    [[nodiscard]] F channel(F s, F d) const {
        return this->maximum - P::multiply(this->maximum - s, this->maximum - d);
    }
};

/// "Overlay": multiplies where the image behind is dark, screens where it is bright.
template<typename P, typename T, typename W, typename F, typename FORMAT>
struct BLEND_OVERLAY : HalvedBlendMode<BLEND_OVERLAY<P, T, W, F, FORMAT>, P, F> {
    [[nodiscard]] F channel(F s, F d) const {
        if (d < this->half) {
            return P::multiply(2 * d, s);
        }
        return d + P::multiply(2 * s - this->maximum, this->maximum - d);
    }
};

/// "Hard Light": overlay with the images changed over, so that the one in front decides.
template<typename P, typename T, typename W, typename F, typename FORMAT>
struct BLEND_HARDLIGHT : HalvedBlendMode<BLEND_HARDLIGHT<P, T, W, F, FORMAT>, P, F> {
    [[nodiscard]] F channel(F s, F d) const {
        if (s < this->half) {
            return P::multiply(2 * s, d);
        }
        return this->maximum - P::multiply(this->maximum - d, 2 * (this->maximum - s));
    }
};

/// "Soft Light": d + (d^2 - d)(1 - 2 s), of a range of 1: d at middle grey, d^2 under black and
/// 2 d - d^2 under white. Without the square root that other programs take above middle grey.
template<typename P, typename T, typename W, typename F, typename FORMAT>
struct BLEND_SOFTLIGHT : ChannelBlendMode<BLEND_SOFTLIGHT<P, T, W, F, FORMAT>, P, F> {
    [[nodiscard]] F channel(F s, F d) const {
        return d + P::multiply(P::multiply(d, d) - d, this->maximum - 2 * s);
    }
};

/// "Darken": the smaller of both, channel by channel.
template<typename P, typename T, typename W, typename F, typename FORMAT>
struct BLEND_DARKEN : ChannelBlendMode<BLEND_DARKEN<P, T, W, F, FORMAT>, P, F> {
    [[nodiscard]] F channel(F s, F d) const { return std::min(s, d); }
};

/// "Lighten": the larger of both, channel by channel.
template<typename P, typename T, typename W, typename F, typename FORMAT>
struct BLEND_LIGHTEN : ChannelBlendMode<BLEND_LIGHTEN<P, T, W, F, FORMAT>, P, F> {
    [[nodiscard]] F channel(F s, F d) const { return std::max(s, d); }
};

/// "Color Dodge": d / (1 - s), of a range of 1, not limited above; s where s is the maximum.
template<typename P, typename T, typename W, typename F, typename FORMAT>
struct BLEND_COLORDODGE : ChannelBlendMode<BLEND_COLORDODGE<P, T, W, F, FORMAT>, P, F> {
    [[nodiscard]] F channel(F s, F d) const {
        return s < this->maximum ? P::divide(d, this->maximum - s) : s;
    }
};

/// "Color Burn": 1 - (1 - d) / s, of a range of 1, at least 0; 0 where s is 0.
template<typename P, typename T, typename W, typename F, typename FORMAT>
struct BLEND_COLORBURN : ChannelBlendMode<BLEND_COLORBURN<P, T, W, F, FORMAT>, P, F> {
    [[nodiscard]] F channel(F s, F d) const {
        if (s == F{0}) {
            return F{0};
        }
        return P::clamp_underflow(this->maximum - P::divide(this->maximum - d, s));
    }
};

/// "Exclusion": d + (1 - 2 d) s, of a range of 1: a softer difference, on straight colours.
template<typename P, typename T, typename W, typename F, typename FORMAT>
struct BLEND_EXCLUSION : ChannelBlendMode<BLEND_EXCLUSION<P, T, W, F, FORMAT>, P, F> {
    [[nodiscard]] F channel(F s, F d) const { return d + P::multiply(this->maximum - 2 * d, s); }
};

// Of the four modes below only saturation and colour limit float components to 1.0 before they
// convert: meant.

/// "Hue": the hue in front with saturation and lightness of what is behind.
template<typename P, typename T, typename W, typename F, typename FORMAT>
struct BLEND_HUE : HslBlendMode<BLEND_HUE<P, T, W, F, FORMAT>, P, T, F> {
    static constexpr bool clampsFloat = false;
    static HslColour mix(const HslColour& front, const HslColour& behind) {
        return {front.h, behind.s, behind.l};
    }
};

/// "Saturation": the saturation in front with hue and lightness of what is behind.
template<typename P, typename T, typename W, typename F, typename FORMAT>
struct BLEND_SAT : HslBlendMode<BLEND_SAT<P, T, W, F, FORMAT>, P, T, F> {
    static constexpr bool clampsFloat = true;
    static HslColour mix(const HslColour& front, const HslColour& behind) {
        return {behind.h, front.s, behind.l};
    }
};

/// "Color": hue and saturation in front with the lightness of what is behind.
template<typename P, typename T, typename W, typename F, typename FORMAT>
struct BLEND_COLOR : HslBlendMode<BLEND_COLOR<P, T, W, F, FORMAT>, P, T, F> {
    static constexpr bool clampsFloat = true;
    static HslColour mix(const HslColour& front, const HslColour& behind) {
        return {front.h, front.s, behind.l};
    }
};

/// "Luminosity": the lightness in front with hue and saturation of what is behind.
template<typename P, typename T, typename W, typename F, typename FORMAT>
struct BLEND_LUMA : HslBlendMode<BLEND_LUMA<P, T, W, F, FORMAT>, P, T, F> {
    static constexpr bool clampsFloat = false;
    static HslColour mix(const HslColour& front, const HslColour& behind) {
        return {behind.h, behind.s, front.l};
    }
};

} // namespace orbel
