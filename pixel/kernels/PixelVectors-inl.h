// The arithmetic of the pixel formats on vectors: what `PixelTraits.h` says of one component, for
// as many pixels as a vector has lanes of 32 bits.

#if defined(ORBEL_PIXEL_ARITHMETIC_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef ORBEL_PIXEL_ARITHMETIC_INL_H
#undef ORBEL_PIXEL_ARITHMETIC_INL_H
#else
#define ORBEL_PIXEL_ARITHMETIC_INL_H
#endif

#include "pixel/PixelTraits.h"

#include <hwy/highway.h>

#include <cstdint>
#include <type_traits>

HWY_BEFORE_NAMESPACE();
namespace orbel {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

using Floats = hn::ScalableTag<float>;
using Ints = hn::RebindToSigned<Floats>;
using Words = hn::RebindToUnsigned<Floats>;
using FloatV = hn::Vec<Floats>;
using IntV = hn::Vec<Ints>;
using WordV = hn::Vec<Words>;

/// Pixels that are computed at a time.
constexpr int PIXELS_AT_ONCE = static_cast<int>(HWY_LANES(float));

/// Truncates values that `int` can hold. Highway's own conversion also sees to those that it
/// cannot, which takes longer than the conversion itself.
HWY_INLINE IntV truncated(FloatV v) {
#if HWY_TARGET == HWY_AVX3
    return IntV{_mm512_cvttps_epi32(v.raw)};
#elif HWY_TARGET == HWY_AVX2
    return IntV{_mm256_cvttps_epi32(v.raw)};
#elif HWY_TARGET == HWY_SSE4
    return IntV{_mm_cvttps_epi32(v.raw)};
#else
    return hn::ConvertTo(Ints(), v);
#endif
}

constexpr bool divisionGivesTheSame() {
    for (int c = 0; c <= 255; ++c) {
        if (PixelArithmetic8::toFloat(static_cast<unsigned char>(c)) !=
            static_cast<float>(c) / 255.0F) {
            return false;
        }
    }
    return true;
}

// Within: opacities between 0 and 1. Then no product leaves 24 bits, and quotients of whole numbers
// below 2^24, rounded to single precision, still truncate to what integers give: were the true
// quotient of `a` and `b` nearer to the next whole number than half a unit in the last place, it
// would be nearer than 1 / `b`.
struct Vector8 {
    using T = std::uint8_t;
    using V = IntV;
    using D = Ints;
    static constexpr bool whole = true;
    static constexpr D tag{};

    static HWY_INLINE V constant(int value) { return hn::Set(tag, value); }
    static HWY_INLINE V maximum() { return constant(255); }
    static HWY_INLINE V half() { return constant(127); }

    static HWY_INLINE void load(const T* row, V (&v)[4]) {
        const auto bytes = hn::LoadU(hn::Repartition<T, Words>(), row);
        const WordV pixels = hn::BitCast(Words(), bytes);
        const WordV low = hn::Set(Words(), 255U);
        v[0] = hn::BitCast(tag, hn::And(pixels, low));
        v[1] = hn::BitCast(tag, hn::And(hn::ShiftRight<8>(pixels), low));
        v[2] = hn::BitCast(tag, hn::And(hn::ShiftRight<16>(pixels), low));
        v[3] = hn::BitCast(tag, hn::ShiftRight<24>(pixels));
    }
    /// Components must be in range.
    static HWY_INLINE void store(T* row, const V (&v)[4]) {
        const V pairs = hn::Or(v[0], hn::ShiftLeft<8>(v[1]));
        const V others = hn::Or(hn::ShiftLeft<16>(v[2]), hn::ShiftLeft<24>(v[3]));
        const hn::Repartition<T, Words> bytes;
        hn::StoreU(hn::BitCast(bytes, hn::Or(pairs, others)), bytes, row);
    }
    /// For work that does not tell components apart.
    static HWY_INLINE void loadAnyhow(const T* row, V (&v)[4]) { load(row, v); }
    static HWY_INLINE void storeAnyhow(T* row, const V (&v)[4]) { store(row, v); }

    static HWY_INLINE FloatV toSingle(V v) { return hn::ConvertTo(Floats(), v); }
    /// The low bits of values that are no further from 0 than 2^31.
    static HWY_INLINE V wrapSingle(FloatV v) { return hn::And(truncated(v), constant(255)); }
    /// Truncates values in range.
    static HWY_INLINE V fromSingle(FloatV v) { return truncated(v); }
    static HWY_INLINE V quantise(V v) { return v; }

    /// Factors of at most 15 bits, of which the second is not negative.
    static HWY_INLINE V multiply(V a, V b) {
        const hn::Repartition<std::int16_t, Ints> shorts;
        // The upper halves of `b` are 0, and so are their products.
        V odd = hn::Zero(tag);
        const V even = hn::ReorderWidenMulAccumulate(tag, hn::BitCast(shorts, a),
                                                     hn::BitCast(shorts, b), constant(128), odd);
        return hn::ShiftRight<8>(hn::RearrangeToOddPlusEven(even, odd));
    }
    /// Factors whose product has at most 31 bits.
    static HWY_INLINE V multiplyAny(V a, V b) {
        return hn::ShiftRight<8>(hn::Add(hn::Mul(a, b), constant(128)));
    }
    static HWY_INLINE V divide(V a, V b) {
        const FloatV scaled = hn::Mul(toSingle(a), hn::Set(Floats(), 255.0F));
        const V quotient = truncated(hn::Div(scaled, toSingle(b)));
        return hn::IfThenZeroElse(hn::Eq(b, hn::Zero(tag)), quotient);
    }

    /// Divides by a number of 1 to 510, for quotients that are to be limited to 0 and 255. One
    /// division serves many: the little that is added lifts a rounded product over the whole number
    /// that it may have fallen short of, and not over the next one.
    class Divider {
    public:
        explicit HWY_INLINE Divider(V divisor)
            : m_factor(hn::Div(hn::Set(Floats(), 255.0F), toSingle(divisor))) {}
        HWY_INLINE V operator()(V dividend) const {
            const FloatV lift = hn::Set(Floats(), 1.0F / 1024);
            return truncated(hn::Add(hn::Mul(toSingle(dividend), m_factor), lift));
        }

    private:
        FloatV m_factor;
    };

    static HWY_INLINE V clampUnderflow(V v) { return hn::Max(v, hn::Zero(tag)); }
    static HWY_INLINE V clampOverflow(V v) { return hn::Min(v, maximum()); }
    static HWY_INLINE V layerAlpha(V alpha, float opacity) {
        if (opacity == 1.0F) {
            return alpha;
        }
        return truncated(hn::Mul(toSingle(alpha), hn::Set(Floats(), opacity)));
    }

    static_assert(divisionGivesTheSame());
    static HWY_INLINE FloatV toUnit(V v) { return hn::Div(toSingle(v), hn::Set(Floats(), 255.0F)); }
    /// Truncates 255 times the value, as if the product were exact.
    static HWY_INLINE V fromUnit(FloatV v) {
        const FloatV size = hn::Abs(v);
        const FloatV product = hn::Trunc(hn::Mul(size, hn::Set(Floats(), 255.0F)));
        const FloatV remainder = hn::Sub(hn::Mul(size, hn::Set(Floats(), 256.0F)), product);
        const FloatV one = hn::IfThenElseZero(hn::Lt(remainder, size), hn::Set(Floats(), 1.0F));
        return truncated(hn::CopySign(hn::Sub(product, one), v));
    }
};

/// What the two formats with accumulators in single precision share.
struct VectorSingle {
    using V = FloatV;
    using D = Floats;
    static constexpr D tag{};

    static HWY_INLINE V constant(float value) { return hn::Set(tag, value); }
    static HWY_INLINE FloatV toSingle(V v) { return v; }
};

/// What `Vector8` has a shorter way for.
template<class A>
class PlainDivider {
public:
    explicit HWY_INLINE PlainDivider(FloatV divisor) : m_divisor(divisor) {}
    HWY_INLINE FloatV operator()(FloatV dividend) const { return A::divide(dividend, m_divisor); }

private:
    FloatV m_divisor;
};

// Within: opacities between 0 and 1, so that neither NaN nor infinity comes up.
struct Vector16 : VectorSingle {
    using T = std::uint16_t;
    using Divider = PlainDivider<Vector16>;
    static constexpr bool whole = true;

    static HWY_INLINE V maximum() { return constant(65535.0F); }
    static HWY_INLINE V half() { return constant(32767.0F); }

    // A pixel is two words. Pairs of neighbouring pixels change words, so that one vector has the
    // first words and another the second; the lanes' order is the same for all rows.
    static HWY_INLINE void load(const T* row, V (&v)[4]) {
        const hn::Repartition<T, Words> halves;
        const WordV a = hn::BitCast(Words(), hn::LoadU(halves, row));
        const WordV b = hn::BitCast(Words(), hn::LoadU(halves, row + hn::Lanes(halves)));
        const WordV first = hn::OddEven(hn::DupEven(b), a);
        const WordV second = hn::OddEven(b, hn::DupOdd(a));
        v[0] = lowHalf(first);
        v[1] = highHalf(first);
        v[2] = lowHalf(second);
        v[3] = highHalf(second);
    }
    /// Components must be whole and in range.
    static HWY_INLINE void store(T* row, const V (&v)[4]) {
        const hn::Repartition<T, Words> halves;
        const WordV first = hn::Or(toWord(v[0]), hn::ShiftLeft<16>(toWord(v[1])));
        const WordV second = hn::Or(toWord(v[2]), hn::ShiftLeft<16>(toWord(v[3])));
        const WordV a = hn::OddEven(hn::DupEven(second), first);
        const WordV b = hn::OddEven(second, hn::DupOdd(first));
        hn::StoreU(hn::BitCast(halves, a), halves, row);
        hn::StoreU(hn::BitCast(halves, b), halves, row + hn::Lanes(halves));
    }
    /// For work that does not tell components apart.
    static HWY_INLINE void loadAnyhow(const T* row, V (&v)[4]) { load(row, v); }
    static HWY_INLINE void storeAnyhow(T* row, const V (&v)[4]) { store(row, v); }

    static HWY_INLINE V wrapSingle(FloatV v) {
        const IntV low = hn::And(truncated(v), hn::Set(Ints(), 65535));
        return hn::ConvertTo(tag, low);
    }
    static HWY_INLINE V fromSingle(FloatV v) { return hn::Trunc(v); }
    static HWY_INLINE V quantise(V v) { return hn::Trunc(v); }

    static HWY_INLINE V multiply(V a, V b) { return hn::Div(hn::Mul(a, b), maximum()); }
    static HWY_INLINE V multiplyAny(V a, V b) { return multiply(a, b); }
    static HWY_INLINE V divide(V a, V b) {
        const V quotient = hn::Mul(hn::Div(a, b), maximum());
        return hn::IfThenZeroElse(hn::Eq(b, hn::Zero(tag)), quotient);
    }
    static HWY_INLINE V clampUnderflow(V v) { return hn::Max(v, hn::Zero(tag)); }
    static HWY_INLINE V clampOverflow(V v) { return hn::Min(v, maximum()); }
    static HWY_INLINE V layerAlpha(V alpha, float opacity) {
        return hn::Trunc(hn::Mul(alpha, constant(opacity)));
    }

    static HWY_INLINE FloatV toUnit(V v) { return hn::Div(v, maximum()); }
    static HWY_INLINE V fromUnit(FloatV v) { return hn::Mul(maximum(), v); }

private:
    static HWY_INLINE V lowHalf(WordV v) {
        return hn::ConvertTo(tag, hn::BitCast(Ints(), hn::And(v, hn::Set(Words(), 65535U))));
    }
    static HWY_INLINE V highHalf(WordV v) {
        return hn::ConvertTo(tag, hn::BitCast(Ints(), hn::ShiftRight<16>(v)));
    }
    static HWY_INLINE WordV toWord(V v) { return hn::BitCast(Words(), truncated(v)); }
};

// Every value and opacity. Each operation is the one that the law makes, in its order, so that NaN,
// infinity and both zeros come out as there; only which NaN comes out may differ, because compilers
// may swap the operands of a sum or product.
struct Vector32 : VectorSingle {
    using T = float;
    using Divider = PlainDivider<Vector32>;
    static constexpr bool whole = false;

    static HWY_INLINE V maximum() { return constant(1.0F); }
    static HWY_INLINE V half() { return constant(0.5F); }

    // The lanes' order is the same for all rows.
    static HWY_INLINE void load(const T* row, V (&v)[4]) {
        V rows[4];
        loadAnyhow(row, rows);
        transpose(rows, v);
    }
    static HWY_INLINE void store(T* row, const V (&v)[4]) {
        V rows[4];
        transpose(v, rows);
        storeAnyhow(row, rows);
    }
    static HWY_INLINE void loadAnyhow(const T* row, V (&v)[4]) {
        for (int i = 0; i < 4; ++i) {
            v[i] = hn::LoadU(tag, row + i * PIXELS_AT_ONCE);
        }
    }
    static HWY_INLINE void storeAnyhow(T* row, const V (&v)[4]) {
        for (int i = 0; i < 4; ++i) {
            hn::StoreU(v[i], tag, row + i * PIXELS_AT_ONCE);
        }
    }

    static HWY_INLINE V wrapSingle(FloatV v) { return v; }
    static HWY_INLINE V fromSingle(FloatV v) { return v; }
    static HWY_INLINE V quantise(V v) { return v; }

    static HWY_INLINE V multiply(V a, V b) { return hn::Mul(a, b); }
    static HWY_INLINE V multiplyAny(V a, V b) { return multiply(a, b); }
    static HWY_INLINE V divide(V a, V b) {
        return hn::IfThenZeroElse(hn::Eq(b, hn::Zero(tag)), hn::Div(a, b));
    }
    static HWY_INLINE V clampUnderflow(V v) { return v; }
    static HWY_INLINE V clampOverflow(V v) { return v; }
    static HWY_INLINE V layerAlpha(V alpha, float opacity) {
        return hn::Mul(alpha, constant(opacity));
    }

    static HWY_INLINE FloatV toUnit(V v) { return v; }
    static HWY_INLINE V fromUnit(FloatV v) { return v; }

private:
    /// Transposes the blocks of four by four lanes; its own inverse.
    static HWY_INLINE void transpose(const V (&from)[4], V (&to)[4]) {
        const V a = hn::InterleaveLower(tag, from[0], from[2]);
        const V b = hn::InterleaveLower(tag, from[1], from[3]);
        const V c = hn::InterleaveUpper(tag, from[0], from[2]);
        const V d = hn::InterleaveUpper(tag, from[1], from[3]);
        to[0] = hn::InterleaveLower(tag, a, b);
        to[1] = hn::InterleaveUpper(tag, a, b);
        to[2] = hn::InterleaveLower(tag, c, d);
        to[3] = hn::InterleaveUpper(tag, c, d);
    }
};

/// The vectors of a pixel format.
template<typename P>
using VectorOf =
    std::conditional_t<sizeof(typename P::Component) == 1, Vector8,
                       std::conditional_t<sizeof(typename P::Component) == 2, Vector16, Vector32>>;

/// As many pixels as a vector has lanes.
template<class A>
struct Pixels {
    using V = typename A::V;
    V r;
    V g;
    V b;
    V a;
};

template<typename P>
using PixelsOf = Pixels<VectorOf<P>>;

template<typename P>
HWY_INLINE PixelsOf<P> loadPixels(const typename P::Component* row) {
    using Order = typename P::FORMAT;
    typename VectorOf<P>::V v[4];
    VectorOf<P>::load(row, v);
    return {v[Order::red], v[Order::green], v[Order::blue], v[Order::alpha]};
}

template<typename P>
HWY_INLINE void storePixels(typename P::Component* row, const PixelsOf<P>& pixels) {
    using Order = typename P::FORMAT;
    typename VectorOf<P>::V v[4];
    v[Order::red] = pixels.r;
    v[Order::green] = pixels.g;
    v[Order::blue] = pixels.b;
    v[Order::alpha] = pixels.a;
    VectorOf<P>::store(row, v);
}

} // namespace HWY_NAMESPACE
} // namespace orbel
HWY_AFTER_NAMESPACE();

#endif
