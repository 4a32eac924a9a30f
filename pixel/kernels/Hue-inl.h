// Hue, saturation and lightness on vectors; `ColourConversion.cpp` is the reference implementation.
// Every operation is made in its order; branches become selections, also where NaN goes.

#if defined(ORBEL_HUE_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef ORBEL_HUE_INL_H
#undef ORBEL_HUE_INL_H
#else
#define ORBEL_HUE_INL_H
#endif

#include "pixel/kernels/Lanes-inl.h"

HWY_BEFORE_NAMESPACE();
namespace orbel::HWY_NAMESPACE {

HWY_INLINE FloatV single(float value) {
    return hn::Set(Floats(), value);
}

/// As `std::max`: the first of two that do not compare.
HWY_INLINE FloatV maxOf(FloatV a, FloatV b) {
    return hn::IfThenElse(hn::Lt(a, b), b, a);
}

/// As `std::min`.
HWY_INLINE FloatV minOf(FloatV a, FloatV b) {
    return hn::IfThenElse(hn::Lt(b, a), b, a);
}

/// Three components, or hue, saturation and lightness.
struct Triple {
    FloatV x;
    FloatV y;
    FloatV z;
};

HWY_INLINE FloatV lumaOf(const Triple& c) {
    const FloatV redGreen = hn::Add(hn::Mul(single(0.299F), c.x), hn::Mul(single(0.587F), c.y));
    return hn::Add(redGreen, hn::Mul(single(0.114F), c.z));
}

/// `rgb2hsl`.
HWY_INLINE Triple hslOf(const Triple& c) {
    const FloatV nearlyNothing = single(0.0001F);
    const FloatV mx = maxOf(maxOf(c.x, c.y), c.z);
    const FloatV mn = minOf(minOf(c.x, c.y), c.z);
    const FloatV delta = hn::Sub(mx, mn);
    const FloatV sum = hn::Add(mx, mn);
    const auto dark = hn::Lt(mx, nearlyNothing);
    const auto grey = hn::Or(dark, hn::Lt(delta, nearlyNothing));
    const FloatV s = hn::Div(
        delta, hn::IfThenElse(hn::Lt(sum, single(1.0F)), sum, hn::Sub(single(2.0F), delta)));
    const auto redMost = hn::Eq(c.x, mx);
    const auto greenMost = hn::Eq(c.y, mx);
    const FloatV difference =
        hn::IfThenElse(redMost, hn::Sub(c.y, c.z),
                       hn::IfThenElse(greenMost, hn::Sub(c.z, c.x), hn::Sub(c.x, c.y)));
    const FloatV quotient = hn::Div(difference, delta);
    const FloatV start = hn::IfThenElse(greenMost, single(2.0F), single(4.0F));
    FloatV h = hn::IfThenElse(redMost, quotient, hn::Add(start, quotient));
    h = hn::IfThenElse(hn::Lt(h, single(0.0F)), hn::Add(h, single(6.0F)), h);
    return {hn::IfThenZeroElse(grey, h), hn::IfThenZeroElse(grey, s),
            hn::IfThenZeroElse(dark, lumaOf(c))};
}

/// `hueColour`: the sector is a whole number as far as `int` goes, and 0 for NaN.
HWY_INLINE Triple hueColourOf(FloatV h, FloatV hi, FloatV lo) {
    const FloatV farthest = single(2147483648.0F);
    const FloatV limited = hn::Min(hn::Max(hn::Trunc(h), hn::Neg(farthest)), farthest);
    // Adding 0 makes no number of -0.
    const FloatV sector = hn::IfThenElseZero(hn::Eq(h, h), hn::Add(limited, hn::Zero(Floats())));
    const FloatV fraction = hn::Sub(h, sector);
    const FloatV range = hn::Sub(hi, lo);
    const FloatV rising = hn::Add(lo, hn::Mul(range, fraction));
    const FloatV falling = hn::Add(lo, hn::Mul(range, hn::Sub(single(1.0F), fraction)));
    Triple c{hi, lo, falling};
    const auto choose = [&c, sector](float number, FloatV x, FloatV y, FloatV z) HWY_ATTR {
        const auto here = hn::Eq(sector, single(number));
        c.x = hn::IfThenElse(here, x, c.x);
        c.y = hn::IfThenElse(here, y, c.y);
        c.z = hn::IfThenElse(here, z, c.z);
    };
    choose(0.0F, hi, rising, lo);
    choose(1.0F, falling, hi, lo);
    choose(2.0F, lo, hi, rising);
    choose(3.0F, lo, falling, hi);
    choose(4.0F, rising, lo, hi);
    return c;
}

HWY_INLINE FloatV lightened(FloatV c, FloatV darkness, FloatV room) {
    return hn::Sub(single(1.0F), hn::Div(hn::Mul(hn::Sub(single(1.0F), c), darkness), room));
}

/// `hsl2rgb`.
HWY_INLINE Triple rgbOf(FloatV h, FloatV s, FloatV l) {
    const FloatV hi = hn::Add(single(0.5F), hn::Mul(single(0.5F), s));
    const Triple c = hueColourOf(h, hi, hn::Sub(single(1.0F), hi));
    const FloatV y = lumaOf(c);
    const auto darken = hn::Ge(y, l);
    const FloatV scale = hn::Div(l, y);
    const FloatV darkness = hn::Sub(single(1.0F), l);
    const FloatV room = hn::Sub(single(1.0F), y);
    return {hn::IfThenElse(darken, hn::Mul(c.x, scale), lightened(c.x, darkness, room)),
            hn::IfThenElse(darken, hn::Mul(c.y, scale), lightened(c.y, darkness, room)),
            hn::IfThenElse(darken, hn::Mul(c.z, scale), lightened(c.z, darkness, room))};
}

} // namespace orbel::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
