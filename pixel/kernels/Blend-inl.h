// Combining two rows on vectors; `BlendReferenceImpl.h` is the reference implementation. All lanes
// go through all steps, and selections take what its branches would have given.

#if defined(ORBEL_BLEND_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef ORBEL_BLEND_INL_H
#undef ORBEL_BLEND_INL_H
#else
#define ORBEL_BLEND_INL_H
#endif

#include "pixel/RowReference.h"
#include "pixel/kernels/BlockWalk-inl.h"
#include "pixel/kernels/Colour-inl.h"
#include "pixel/kernels/Modes-inl.h"

HWY_BEFORE_NAMESPACE();
namespace orbel::HWY_NAMESPACE {

template<class A>
using MaskIn = hn::Mask<typename A::D>;

/// The alphas of both images after opacity, and that of both together.
template<class A>
struct Alphas {
    VectorIn<A> s;
    VectorIn<A> d;
    VectorIn<A> unionAlpha;

    HWY_INLINE Alphas(VectorIn<A> front, VectorIn<A> behind, float opacity1, float opacity2)
        : s(A::layerAlpha(front, opacity1)),
          d(A::layerAlpha(behind, opacity2)),
          unionAlpha(hn::Sub(hn::Add(s, d), A::multiply(s, d))) {}
};

/// A colour without the negative components that float formats may hold, and an alpha.
template<class A>
HWY_INLINE Pixels<A> withAlpha(const Pixels<A>& p, VectorIn<A> alpha) {
    if constexpr (A::isInteger) {
        return {p.r, p.g, p.b, alpha};
    } else {
        const auto zero = hn::Zero(A::tag);
        return {hn::IfThenZeroElse(hn::Lt(p.r, zero), p.r),
                hn::IfThenZeroElse(hn::Lt(p.g, zero), p.g),
                hn::IfThenZeroElse(hn::Lt(p.b, zero), p.b), alpha};
    }
}

/// What storing a pixel and loading it again makes of it.
template<class A>
HWY_INLINE VectorIn<A> clamped(VectorIn<A> v) {
    return A::quantise(A::clampOverflow(A::clampUnderflow(v)));
}

/// Neighbours mostly agree, and then there is nothing to select.
template<class A>
HWY_INLINE Pixels<A> select(MaskIn<A> mask, const Pixels<A>& yes, const Pixels<A>& no) {
    if (hn::AllTrue(A::tag, mask)) {
        return yes;
    }
    if (hn::AllFalse(A::tag, mask)) {
        return no;
    }
    return {hn::IfThenElse(mask, yes.r, no.r), hn::IfThenElse(mask, yes.g, no.g),
            hn::IfThenElse(mask, yes.b, no.b), hn::IfThenElse(mask, yes.a, no.a)};
}

/// `first` x weight1 + `second` x weight2 for the colours; the alpha is that of `first`. `large`
/// says that components of `first` may be.
template<class A, bool large>
HWY_INLINE Pixels<A> weightedSum(const Pixels<A>& first, VectorIn<A> weight1,
                                 const Pixels<A>& second, VectorIn<A> weight2) {
    const auto sum = [weight1, weight2](VectorIn<A> a, VectorIn<A> b) HWY_ATTR {
        const auto product = large ? A::multiplyAny(a, weight1) : A::multiply(a, weight1);
        return hn::Add(product, A::multiply(b, weight2));
    };
    return {sum(first.r, second.r), sum(first.g, second.g), sum(first.b, second.b), first.a};
}

template<class A>
HWY_INLINE VectorIn<A> premultipliedChannel(VectorIn<A> colour, VectorIn<A> alpha) {
    return hn::IfThenElse(hn::Eq(alpha, A::maximum()), colour, A::multiply(colour, alpha));
}

template<class A, bool clamps>
HWY_INLINE FloatV unit(VectorIn<A> component) {
    const FloatV value = A::toUnit(component);
    if constexpr (!A::isInteger && clamps) {
        return hn::IfThenElse(hn::Gt(value, single(1.0F)), single(1.0F), value);
    } else {
        return value;
    }
}

template<class A, bool clamps>
HWY_INLINE Triple hslOfPixels(const Pixels<A>& p) {
    return hslOf({unit<A, clamps>(p.r), unit<A, clamps>(p.g), unit<A, clamps>(p.b)});
}

/// The colour that the mode makes of two.
template<class A, class Mode>
HWY_INLINE Pixels<A> blended(const Pixels<A>& s, const Pixels<A>& d, VectorIn<A> unionAlpha) {
    if constexpr (Mode::kind == ModeKind::SEPARABLE) {
        return {Mode::template channel<A>(s.r, d.r), Mode::template channel<A>(s.g, d.g),
                Mode::template channel<A>(s.b, d.b), s.a};
    } else if constexpr (Mode::kind == ModeKind::COMPOSITING) {
        const auto alpha = A::clampOverflow(unionAlpha);
        const typename A::Divider divided(alpha);
        const auto channel = [&](VectorIn<A> sc, VectorIn<A> dc) HWY_ATTR {
            return divided(Mode::template mixPremultiplied<A>(
                premultipliedChannel<A>(sc, s.a), premultipliedChannel<A>(dc, d.a), alpha));
        };
        return {channel(s.r, d.r), channel(s.g, d.g), channel(s.b, d.b), s.a};
    } else {
        const Triple hsl =
            Mode::mix(hslOfPixels<A, Mode::clampsFloat>(s), hslOfPixels<A, Mode::clampsFloat>(d));
        const Triple rgb = rgbOf(hsl.x, hsl.y, hsl.z);
        return {A::fromUnit(rgb.x), A::fromUnit(rgb.y), A::fromUnit(rgb.z), s.a};
    }
}

/// Pixels whose front is not transparent.
template<class A, class Mode>
HWY_INLINE Pixels<A> composed(const Pixels<A>& s, const Pixels<A>& d, VectorIn<A> unionAlpha) {
    const auto zero = hn::Zero(A::tag);
    Pixels<A> c = blended<A, Mode>(s, d, unionAlpha);
    if constexpr (Mode::kind != ModeKind::COMPOSITING) {
        const auto translucent = hn::Lt(d.a, A::maximum());
        if (!hn::AllFalse(A::tag, translucent)) {
            const auto inverse = hn::Sub(A::maximum(), d.a);
            c = select<A>(translucent, weightedSum<A, Mode::large>(c, d.a, s, inverse), c);
        }
    }
    c = select<A>(hn::Gt(d.a, zero), c, s);
    if constexpr (Mode::kind == ModeKind::COMPOSITING) {
        c.a = unionAlpha;
        return c;
    }
    const auto needsNoOver = hn::Or(hn::Eq(s.a, A::maximum()), hn::Eq(d.a, zero));
    if (hn::AllTrue(A::tag, needsNoOver)) {
        return c;
    }
    const auto k = A::multiply(hn::Sub(A::maximum(), s.a), d.a);
    const Pixels<A> mixed = weightedSum<A, Mode::large>(c, s.a, d, k);
    const typename A::Divider divided(hn::Add(s.a, k));
    return select<A>(needsNoOver, c,
                     {divided(mixed.r), divided(mixed.g), divided(mixed.b), unionAlpha});
}

/// `Blend`, up to and including the way back into the format.
template<class A, class Mode>
HWY_INLINE Pixels<A> combined(const Pixels<A>& front, const Pixels<A>& behind, float opacity1,
                              float opacity2) {
    const Alphas<A> alphas(front.a, behind.a, opacity1, opacity2);
    const auto clear = hn::Eq(alphas.s, hn::Zero(A::tag));
    Pixels<A> c{behind.r, behind.g, behind.b, alphas.unionAlpha};
    if (!hn::AllTrue(A::tag, clear)) {
        const Pixels<A> p = composed<A, Mode>(withAlpha(front, alphas.s),
                                              withAlpha(behind, alphas.d), alphas.unionAlpha);
        c = select<A>(clear, c, {clamped<A>(p.r), clamped<A>(p.g), clamped<A>(p.b), p.a});
    }
    c.a = clamped<A>(c.a);
    return c;
}

/// What `combined` is for "behind".
template<class A>
HWY_INLINE Pixels<A> combinedBehind(const Pixels<A>& back, const Pixels<A>& front, float opacity1,
                                    float opacity2) {
    const Alphas<A> alphas(back.a, front.a, opacity1, opacity2);
    const Pixels<A> s = withAlpha(back, alphas.s);
    const Pixels<A> d = withAlpha(front, alphas.d);
    Pixels<A> c = weightedSum<A, false>(s, hn::Sub(A::maximum(), d.a), d, d.a);
    const auto k = A::multiply(hn::Sub(A::maximum(), s.a), d.a);
    const Pixels<A> mixed = weightedSum<A, false>(c, s.a, d, k);
    const typename A::Divider divided(hn::Add(k, s.a));
    c = select<A>(hn::Eq(s.a, A::maximum()), c,
                  {divided(mixed.r), divided(mixed.g), divided(mixed.b), s.a});
    const auto alpha = clamped<A>(alphas.unionAlpha);
    c = {clamped<A>(c.r), clamped<A>(c.g), clamped<A>(c.b), alpha};
    const Pixels<A> untouched{back.r, back.g, back.b, alpha};
    c = select<A>(hn::Eq(d.a, hn::Zero(A::tag)), untouched, c);
    return select<A>(hn::Eq(d.a, A::maximum()), front, c);
}

} // namespace orbel::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
