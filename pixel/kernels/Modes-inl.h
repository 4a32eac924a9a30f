// The transfer modes on vectors; `TransferFunctors.h` is the reference and says what they mean. A
// mode gives `channel(s, d)` for each component alone, `mixPremultiplied(s, d, alpha)` for
// premultiplied components of a mode that finishes its pixels itself, or `mix(front, behind)` for
// hue, saturation and lightness.

#if defined(ORBEL_MODES_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef ORBEL_MODES_INL_H
#undef ORBEL_MODES_INL_H
#else
#define ORBEL_MODES_INL_H
#endif

#include "pixel/kernels/Hue-inl.h"

HWY_BEFORE_NAMESPACE();
namespace orbel::HWY_NAMESPACE {

enum class ModeKind { SEPARABLE, COMPOSITING, NON_SEPARABLE };

struct SeparableMode {
    static constexpr ModeKind kind = ModeKind::SEPARABLE;
    /// Whether 8-bit components may come out so large that products with them need more care.
    static constexpr bool large = false;
};
struct CompositingMode {
    static constexpr ModeKind kind = ModeKind::COMPOSITING;
    static constexpr bool large = false;
};
struct NonSeparableMode {
    static constexpr ModeKind kind = ModeKind::NON_SEPARABLE;
    static constexpr bool large = false;
};

template<class A>
using VectorIn = typename A::V;

struct InFront : SeparableMode {
    template<class A>
    static HWY_INLINE VectorIn<A> channel(VectorIn<A> s, VectorIn<A>) {
        return s;
    }
};

struct Multiply : SeparableMode {
    template<class A>
    static HWY_INLINE VectorIn<A> channel(VectorIn<A> s, VectorIn<A> d) {
        return A::multiply(d, s);
    }
};

struct Screen : SeparableMode {
    template<class A>
    static HWY_INLINE VectorIn<A> channel(VectorIn<A> s, VectorIn<A> d) {
        return hn::Sub(A::maximum(),
                       A::multiply(hn::Sub(A::maximum(), s), hn::Sub(A::maximum(), d)));
    }
};

struct Overlay : SeparableMode {
    template<class A>
    static HWY_INLINE VectorIn<A> channel(VectorIn<A> s, VectorIn<A> d) {
        const auto low = A::multiply(hn::Add(d, d), s);
        const auto high =
            hn::Add(d, A::multiply(hn::Sub(hn::Add(s, s), A::maximum()), hn::Sub(A::maximum(), d)));
        return hn::IfThenElse(hn::Lt(d, A::half()), low, high);
    }
};

struct HardLight : SeparableMode {
    template<class A>
    static HWY_INLINE VectorIn<A> channel(VectorIn<A> s, VectorIn<A> d) {
        const auto low = A::multiply(hn::Add(s, s), d);
        const auto inverse = hn::Sub(A::maximum(), s);
        const auto high =
            hn::Sub(A::maximum(), A::multiply(hn::Sub(A::maximum(), d), hn::Add(inverse, inverse)));
        return hn::IfThenElse(hn::Lt(s, A::half()), low, high);
    }
};

struct SoftLight : SeparableMode {
    template<class A>
    static HWY_INLINE VectorIn<A> channel(VectorIn<A> s, VectorIn<A> d) {
        const auto bend = hn::Sub(A::multiply(d, d), d);
        return hn::Add(d, A::multiplyAny(bend, hn::Sub(A::maximum(), hn::Add(s, s))));
    }
};

struct Darken : SeparableMode {
    template<class A>
    static HWY_INLINE VectorIn<A> channel(VectorIn<A> s, VectorIn<A> d) {
        return hn::IfThenElse(hn::Lt(d, s), d, s);
    }
};

struct Lighten : SeparableMode {
    template<class A>
    static HWY_INLINE VectorIn<A> channel(VectorIn<A> s, VectorIn<A> d) {
        return hn::IfThenElse(hn::Lt(s, d), d, s);
    }
};

struct ColourDodge : SeparableMode {
    static constexpr bool large = true;
    template<class A>
    static HWY_INLINE VectorIn<A> channel(VectorIn<A> s, VectorIn<A> d) {
        const auto quotient = A::divide(d, hn::Sub(A::maximum(), s));
        return hn::IfThenElse(hn::Lt(s, A::maximum()), quotient, s);
    }
};

struct ColourBurn : SeparableMode {
    template<class A>
    static HWY_INLINE VectorIn<A> channel(VectorIn<A> s, VectorIn<A> d) {
        const auto quotient = A::divide(hn::Sub(A::maximum(), d), s);
        return hn::IfThenZeroElse(hn::Eq(s, hn::Zero(A::tag)),
                                  A::clampUnderflow(hn::Sub(A::maximum(), quotient)));
    }
};

struct Exclusion : SeparableMode {
    template<class A>
    static HWY_INLINE VectorIn<A> channel(VectorIn<A> s, VectorIn<A> d) {
        return hn::Add(d, A::multiply(hn::Sub(A::maximum(), hn::Add(d, d)), s));
    }
};

struct Plus : CompositingMode {
    template<class A>
    static HWY_INLINE VectorIn<A> mixPremultiplied(VectorIn<A> s, VectorIn<A> d,
                                                   VectorIn<A> alpha) {
        const auto sum = hn::Add(s, d);
        return A::isInteger ? hn::IfThenElse(hn::Lt(alpha, sum), alpha, sum) : sum;
    }
};

struct Difference : CompositingMode {
    template<class A>
    static HWY_INLINE VectorIn<A> mixPremultiplied(VectorIn<A> s, VectorIn<A> d, VectorIn<A>) {
        const auto difference = hn::Sub(d, s);
        return hn::IfThenElse(hn::Lt(difference, hn::Zero(A::tag)), hn::Sub(s, d), difference);
    }
};

struct Hue : NonSeparableMode {
    static constexpr bool clampsFloat = false;
    static HWY_INLINE Triple mix(const Triple& front, const Triple& behind) {
        return {front.x, behind.y, behind.z};
    }
};

struct Saturation : NonSeparableMode {
    static constexpr bool clampsFloat = true;
    static HWY_INLINE Triple mix(const Triple& front, const Triple& behind) {
        return {behind.x, front.y, behind.z};
    }
};

struct Colour : NonSeparableMode {
    static constexpr bool clampsFloat = true;
    static HWY_INLINE Triple mix(const Triple& front, const Triple& behind) {
        return {front.x, front.y, behind.z};
    }
};

struct Luma : NonSeparableMode {
    static constexpr bool clampsFloat = false;
    static HWY_INLINE Triple mix(const Triple& front, const Triple& behind) {
        return {behind.x, behind.y, front.z};
    }
};

} // namespace orbel::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
