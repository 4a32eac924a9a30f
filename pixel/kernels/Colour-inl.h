// The passes over colour and alpha on vectors; `ColourLawImpl.h` is the law.

#if defined(ORBEL_COLOUR_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef ORBEL_COLOUR_INL_H
#undef ORBEL_COLOUR_INL_H
#else
#define ORBEL_COLOUR_INL_H
#endif

#include "pixel/RowLaw.h"
#include "pixel/kernels/BlockWalk-inl.h"

HWY_BEFORE_NAMESPACE();
namespace orbel {
namespace HWY_NAMESPACE {

template<class A>
HWY_INLINE bool isOpaque(const Pixels<A>& p) {
    return hn::AllTrue(A::tag, hn::Eq(p.a, A::maximum()));
}

template<class A>
HWY_INLINE Pixels<A> premultiplied(const Pixels<A>& p) {
    return {A::quantise(A::multiply(p.r, p.a)), A::quantise(A::multiply(p.g, p.a)),
            A::quantise(A::multiply(p.b, p.a)), p.a};
}

/// Quotients of a component and an alpha above 0, limited above.
template<class A>
struct Quotient {
    typename A::V alpha;

    HWY_INLINE typename A::V operator()(typename A::V c) const {
        return A::quantise(A::clampOverflow(hn::Div(hn::Mul(c, A::maximum()), alpha)));
    }
};

/// One division serves all three components: the little that is added lifts the rounded product
/// over the whole number that it may have fallen short of, and not over the next one.
template<>
struct Quotient<Vector8> {
    FloatV factor;

    explicit HWY_INLINE Quotient(IntV alpha)
        : factor(hn::Div(hn::Set(Floats(), 255.0F), Vector8::toSingle(alpha))) {}
    HWY_INLINE IntV operator()(IntV c) const {
        const FloatV lift = hn::Set(Floats(), 1.0F / 1024);
        const FloatV product = hn::Add(hn::Mul(Vector8::toSingle(c), factor), lift);
        return hn::ConvertTo(Ints(), hn::Min(product, hn::Set(Floats(), 255.0F)));
    }
};

template<class A>
HWY_INLINE Pixels<A> unPremultiplied(const Pixels<A>& p) {
    const auto covered = hn::Gt(p.a, hn::Zero(A::tag));
    const Quotient<A> quotient{p.a};
    return {hn::IfThenElse(covered, quotient(p.r), p.r),
            hn::IfThenElse(covered, quotient(p.g), p.g),
            hn::IfThenElse(covered, quotient(p.b), p.b), p.a};
}

template<typename P>
struct UnPremultBlock {
    HWY_INLINE void operator()(typename P::Component* block) const {
        const PixelsOf<P> p = loadPixels<P>(block);
        if (!(sizeof(typename P::Component) == 1 && isOpaque(p))) {
            storePixels<P>(block, unPremultiplied(p));
        }
    }
};

template<typename P>
struct PremultBlock {
    HWY_INLINE void operator()(typename P::Component* block) const {
        storePixels<P>(block, premultiplied(loadPixels<P>(block)));
    }
};

template<typename P>
struct MultiplyAlphaBlock {
    typename P::Float factor;

    HWY_INLINE void operator()(typename P::Component* block) const {
        using A = VectorOf<P>;
        PixelsOf<P> p = loadPixels<P>(block);
        p.a = A::quantise(A::multiply(p.a, A::constant(factor)));
        storePixels<P>(block, p);
    }
};

template<typename P>
struct CrossFadeBlock {
    FloatV amount;
    FloatV rest;

    HWY_INLINE void operator()(const typename P::Component* from, const typename P::Component* to,
                               typename P::Component* out) const {
        using A = VectorOf<P>;
        typename A::V a[4];
        typename A::V b[4];
        A::load(from, a);
        A::load(to, b);
        for (int i = 0; i < 4; ++i) {
            b[i] = A::fromSingle(
                hn::Add(hn::Mul(A::toSingle(a[i]), amount), hn::Mul(A::toSingle(b[i]), rest)));
        }
        A::store(out, b);
    }
};

/// Whether a factor keeps components in range. The float formats have none.
template<typename P>
bool isOrdinary(float factor) {
    return P::is32Bit() || (factor >= 0.0F && factor <= 1.0F);
}

template<typename P>
struct ColourKernels {
    using T = typename P::Component;

    static void fill(T* row, int pixels, const T* pixel) {
        const std::size_t size = componentsPerPixel * sizeof(T);
        HWY_ALIGN T pattern[componentsPerPixel * PIXELS_AT_ONCE];
        for (int i = 0; i < PIXELS_AT_ONCE; ++i) {
            std::memcpy(pattern + componentsPerPixel * i, pixel, size);
        }
        const hn::ScalableTag<T> tag;
        const auto vector = hn::Load(tag, pattern);
        const int step = static_cast<int>(hn::Lanes(tag)) / componentsPerPixel;
        for (; pixels >= step; pixels -= step) {
            hn::StoreU(vector, tag, row);
            row += componentsPerPixel * step;
        }
        std::memcpy(row, pattern, static_cast<std::size_t>(pixels) * size);
    }

    static void unPremult(T* row, int pixels) { forEachBlock(UnPremultBlock<P>(), row, pixels); }

    static void premult(T* row, int pixels) { forEachBlock(PremultBlock<P>(), row, pixels); }

    static void multiplyAlpha(T* row, int pixels, float amount) {
        if (!isOrdinary<P>(amount)) {
            rowLaw<P>().multiplyAlpha(row, pixels, amount);
            return;
        }
        forEachBlock(MultiplyAlphaBlock<P>{P::fromFloat(amount)}, row, pixels);
    }

    static void blendImages(const T* from, T* to, std::ptrdiff_t components, float amount) {
        if (!isOrdinary<P>(amount)) {
            rowLaw<P>().blendImages(from, to, components, amount);
            return;
        }
        const CrossFadeBlock<P> kernel{hn::Set(Floats(), amount), hn::Set(Floats(), 1.0F - amount)};
        const std::ptrdiff_t rest = components % componentsPerPixel;
        const std::ptrdiff_t most = std::ptrdiff_t{1} << 24;
        for (components -= rest; components > 0;) {
            const std::ptrdiff_t now = HWY_MIN(components, most);
            forEachBlock<T>(kernel, from, to, to, static_cast<int>(now / componentsPerPixel));
            from += now;
            to += now;
            components -= now;
        }
        rowLaw<P>().blendImages(from, to, rest, amount);
    }

    static void enter(RowKernels<P>& table) {
        table.fill = &fill;
        table.unPremult = &unPremult;
        table.premult = &premult;
        table.multiplyAlpha = &multiplyAlpha;
        table.blendImages = &blendImages;
    }
};

} // namespace HWY_NAMESPACE
} // namespace orbel
HWY_AFTER_NAMESPACE();

#endif
