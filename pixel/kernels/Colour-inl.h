// The passes over colour and alpha on vectors; `ColourReferenceImpl.h` is the reference
// implementation.

#if defined(ORBEL_COLOUR_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef ORBEL_COLOUR_INL_H
#undef ORBEL_COLOUR_INL_H
#else
#define ORBEL_COLOUR_INL_H
#endif

#include "pixel/RowReference.h"
#include "pixel/kernels/BlockWalk-inl.h"

HWY_BEFORE_NAMESPACE();
namespace orbel::HWY_NAMESPACE {

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

template<>
struct Quotient<Vector8> {
    Vector8::Divider divided;

    explicit HWY_INLINE Quotient(IntV alpha) : divided(alpha) {}
    HWY_INLINE IntV operator()(IntV c) const { return Vector8::clampOverflow(divided(c)); }
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

/// Where the alphas are among float components as they lie in memory.
template<typename P>
HWY_INLINE auto alphaLanes() {
    const IntV component = hn::And(hn::Iota(Ints(), 0), hn::Set(Ints(), 3));
    return hn::RebindMask(Floats(), hn::Eq(component, hn::Set(Ints(), P::FORMAT::alpha)));
}

// Of float components every vector is worked on as it lies in memory: to sort components costs more
// than to compute an alpha in vain.

template<typename P>
struct PremultBlock {
    HWY_INLINE void operator()(typename P::Component* block) const {
        if constexpr (P::is32Bit()) {
            FloatV v[4];
            Vector32::loadAnyOrder(block, v);
            for (FloatV& pixels : v) {
                const FloatV product = hn::Mul(pixels, hn::Broadcast<P::FORMAT::alpha>(pixels));
                pixels = hn::IfThenElse(alphaLanes<P>(), pixels, product);
            }
            Vector32::storeAnyOrder(block, v);
        } else {
            storePixels<P>(block, premultiplied(loadPixels<P>(block)));
        }
    }
};

template<typename P>
struct MultiplyAlphaBlock {
    typename P::Float factor;

    HWY_INLINE void operator()(typename P::Component* block) const {
        using A = VectorOf<P>;
        if constexpr (P::is32Bit()) {
            FloatV v[4];
            A::loadAnyOrder(block, v);
            for (FloatV& pixels : v) {
                const FloatV product = hn::Mul(pixels, A::constant(factor));
                pixels = hn::IfThenElse(alphaLanes<P>(), product, pixels);
            }
            A::storeAnyOrder(block, v);
        } else {
            PixelsOf<P> p = loadPixels<P>(block);
            p.a = A::quantise(A::multiply(p.a, A::constant(factor)));
            storePixels<P>(block, p);
        }
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
        A::loadAnyOrder(from, a);
        A::loadAnyOrder(to, b);
        for (int i = 0; i < 4; ++i) {
            b[i] = A::fromSingle(
                hn::Add(hn::Mul(A::toSingle(a[i]), amount), hn::Mul(A::toSingle(b[i]), rest)));
        }
        A::storeAnyOrder(out, b);
    }
};

inline bool isFraction(float factor) {
    return factor >= 0.0F && factor <= 1.0F;
}

/// Whether a factor keeps components in range. The float formats have none.
template<typename P>
bool isOrdinary(float factor) {
    return P::is32Bit() || isFraction(factor);
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
            fetchAhead(row);
            hn::StoreU(vector, tag, row);
            row += componentsPerPixel * step;
        }
        std::memcpy(row, pattern, static_cast<std::size_t>(pixels) * size);
    }

    static void unPremult(T* row, int pixels) { forEachBlock(UnPremultBlock<P>(), row, pixels); }

    static void premult(T* row, int pixels) { forEachBlock(PremultBlock<P>(), row, pixels); }

    static void multiplyAlpha(T* row, int pixels, float amount) {
        if (!isOrdinary<P>(amount)) {
            rowReference<P>().multiplyAlpha(row, pixels, amount);
            return;
        }
        forEachBlock(MultiplyAlphaBlock<P>{P::fromFloat(amount)}, row, pixels);
    }

    static void blendImages(const T* from, T* to, std::ptrdiff_t components, float amount) {
        if (!isOrdinary<P>(amount)) {
            rowReference<P>().blendImages(from, to, components, amount);
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
        rowReference<P>().blendImages(from, to, rest, amount);
    }

    static void enter(RowKernels<P>& table) {
        table.fill = &fill;
        table.unPremult = &unPremult;
        table.premult = &premult;
        table.multiplyAlpha = &multiplyAlpha;
        table.blendImages = &blendImages;
    }
};

} // namespace orbel::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
