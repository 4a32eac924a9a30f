// Modulating colours by alpha on vectors; `ColourReferenceImpl.h` and `ColourConversion.cpp` are
// the reference implementation.

#if defined(ORBEL_MODULATE_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef ORBEL_MODULATE_INL_H
#undef ORBEL_MODULATE_INL_H
#else
#define ORBEL_MODULATE_INL_H
#endif

#include "pixel/RowReference.h"
#include "pixel/kernels/BlockWalk-inl.h"
#include "pixel/kernels/Hue-inl.h"

HWY_BEFORE_NAMESPACE();
namespace orbel::HWY_NAMESPACE {

using Doubles = hn::Repartition<double, Floats>;
using HalfFloats = hn::Half<Floats>;

/// As many values in double precision as a vector has in single precision.
struct Wide {
    hn::Vec<Doubles> low;
    hn::Vec<Doubles> high;
};

HWY_INLINE Wide widened(FloatV v) {
    return {hn::PromoteTo(Doubles(), hn::LowerHalf(v)),
            hn::PromoteTo(Doubles(), hn::UpperHalf(HalfFloats(), v))};
}

HWY_INLINE Wide wide(double value) {
    return {hn::Set(Doubles(), value), hn::Set(Doubles(), value)};
}

HWY_INLINE FloatV narrowed(const Wide& v) {
    return hn::Combine(Floats(), hn::DemoteTo(HalfFloats(), v.high),
                       hn::DemoteTo(HalfFloats(), v.low));
}

HWY_INLINE Wide operator+(const Wide& a, const Wide& b) {
    return {hn::Add(a.low, b.low), hn::Add(a.high, b.high)};
}
HWY_INLINE Wide operator-(const Wide& a, const Wide& b) {
    return {hn::Sub(a.low, b.low), hn::Sub(a.high, b.high)};
}
HWY_INLINE Wide operator*(const Wide& a, const Wide& b) {
    return {hn::Mul(a.low, b.low), hn::Mul(a.high, b.high)};
}
HWY_INLINE Wide operator/(const Wide& a, const Wide& b) {
    return {hn::Div(a.low, b.low), hn::Div(a.high, b.high)};
}

/// `RGB_to_HSL`.
HWY_INLINE Triple hueInDegreesOf(const Triple& c) {
    const FloatV mx = maxOf(maxOf(c.x, c.y), c.z);
    const FloatV mn = minOf(minOf(c.x, c.y), c.z);
    const FloatV delta = hn::Sub(mx, mn);
    const FloatV s = narrowed(widened(delta) * wide(100.0) / widened(mx));
    const FloatV k = hn::Div(single(60.0F), delta);
    const auto redMost = hn::Eq(c.x, mx);
    const auto greenMost = hn::Eq(c.y, mx);
    const FloatV turn = hn::IfThenElseZero(hn::Gt(c.z, c.y), single(360.0F));
    const FloatV red = hn::Add(hn::Mul(hn::Sub(c.y, c.z), k), turn);
    const FloatV green = hn::Add(single(120.0F), hn::Mul(hn::Sub(c.z, c.x), k));
    const FloatV blue = hn::Add(single(240.0F), hn::Mul(hn::Sub(c.x, c.y), k));
    const FloatV h = hn::IfThenElse(redMost, red, hn::IfThenElse(greenMost, green, blue));
    const auto coloured = hn::Gt(mx, mn);
    return {hn::IfThenElseZero(coloured, h), hn::IfThenElseZero(coloured, s), mx};
}

/// `HSL_to_RGB`; a negative hue leaves the colour that was there.
HWY_INLINE Triple colourOfDegrees(FloatV h, FloatV s, FloatV v, const Triple& before) {
    const FloatV lo = hn::Mul(hn::Sub(single(1.0F), s), v);
    const FloatV k = hn::Div(hn::Sub(v, lo), single(60.0F));
    const auto rising = [=](float from)
                            HWY_ATTR { return hn::Add(hn::Mul(hn::Sub(h, single(from)), k), lo); };
    const auto falling = [=](float to) HWY_ATTR {
        return hn::Add(hn::Mul(hn::Neg(hn::Sub(h, single(to))), k), lo);
    };
    Triple c{v, lo, falling(360.0F)};
    const auto choose = [&c, h](float end, FloatV x, FloatV y, FloatV z) HWY_ATTR {
        const auto here = hn::Le(h, single(end));
        c.x = hn::IfThenElse(here, x, c.x);
        c.y = hn::IfThenElse(here, y, c.y);
        c.z = hn::IfThenElse(here, z, c.z);
    };
    choose(300.0F, rising(240.0F), lo, v);
    choose(240.0F, lo, falling(240.0F), v);
    choose(180.0F, lo, v, rising(120.0F));
    choose(120.0F, falling(120.0F), v, lo);
    choose(60.0F, v, rising(0.0F), lo);
    const auto changes = hn::Ge(h, single(0.0F));
    return {hn::IfThenElse(changes, c.x, before.x), hn::IfThenElse(changes, c.y, before.y),
            hn::IfThenElse(changes, c.z, before.z)};
}

/// Whether all sizes stay below a limit; NaN does not.
HWY_INLINE bool allWithin(FloatV v, float limit) {
    return hn::AllTrue(Floats(), hn::Lt(hn::Abs(v), single(limit)));
}

HWY_INLINE FloatV atMostOne(FloatV v) {
    return hn::IfThenElse(hn::Gt(v, single(1.0F)), single(1.0F), v);
}

template<typename P>
struct ModulateBlock {
    using T = typename P::Component;
    using A = VectorOf<P>;
    const HslAmounts& amounts;

    /// Values too large for the vectors' whole numbers are left to the reference.
    HWY_INLINE void operator()(T* block) const {
        PixelsOf<P> p = loadPixels<P>(block);
        if (modulate(p)) {
            storePixels<P>(block, p);
        } else {
            rowReference<P>().hslModulate(block, PIXELS_AT_ONCE, amounts);
        }
    }

private:
    static HWY_INLINE FloatV normalised(typename A::V component) {
        const FloatV value = A::toSingle(component);
        return A::isInteger ? narrowed(widened(value) * wide(P::RECIP_VALUE())) : value;
    }

    HWY_INLINE bool modulate(PixelsOf<P>& p) const {
        // Green and blue change places, as in the reference.
        const Triple colour{normalised(p.r), normalised(p.b), normalised(p.g)};
        const Triple hsv = hueInDegreesOf(colour);
        const Wide alpha = widened(normalised(p.a));
        const Wide transparency = wide(1.0) - alpha;
        const FloatV h = narrowed(widened(hsv.x) + transparency * wide(amounts.lowAlphaHueDegrees));
        const FloatV v = narrowed(widened(hsv.z) + transparency * wide(amounts.lowAlphaValue));
        const FloatV s = narrowed(widened(hsv.y) + alpha * wide(amounts.highAlphaSat));
        if (!allWithin(h, 16777216.0F)) {
            return false;
        }
        const FloatV degrees = hn::Trunc(h);
        const FloatV full = single(360.0F);
        const FloatV turns = hn::Trunc(hn::Div(degrees, full));
        const FloatV hue = hn::Sub(degrees, hn::Mul(turns, full));
        const Triple c = colourOfDegrees(hue, atMostOne(s), atMostOne(v), colour);
        return setComponent(p.r, c.x) && setComponent(p.b, c.y) && setComponent(p.g, c.z);
    }

    static HWY_INLINE bool setComponent(typename A::V& component, FloatV value) {
        constexpr auto maximum = static_cast<float>(P::MAX_VALUE());
        const FloatV scaled = hn::Mul(single(maximum), value);
        component = A::wrapSingle(scaled);
        return !A::isInteger || allWithin(scaled, 2147483648.0F);
    }
};

template<typename P>
void hslModulate(typename P::Component* row, int pixels, const HslAmounts& amounts) {
    forEachBlock(ModulateBlock<P>{amounts}, row, pixels);
}

} // namespace orbel::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
