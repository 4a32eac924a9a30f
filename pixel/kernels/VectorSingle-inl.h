// The arithmetic of 16-bit and float pixels on vectors; `PixelArithmetic16` and `PixelArithmetic32`
// are the reference implementation.

#if defined(ORBEL_VECTOR_SINGLE_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef ORBEL_VECTOR_SINGLE_INL_H
#undef ORBEL_VECTOR_SINGLE_INL_H
#else
#define ORBEL_VECTOR_SINGLE_INL_H
#endif

#include "pixel/PixelTraits.h"
#include "pixel/kernels/Lanes-inl.h"

#include <bit>
#include <cstddef>
#include <cstdint>

HWY_BEFORE_NAMESPACE();
namespace orbel::HWY_NAMESPACE {

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
    static_assert(std::endian::native == std::endian::little);
    using T = std::uint16_t;
    using Divider = PlainDivider<Vector16>;
    static constexpr bool isInteger = true;

    static HWY_INLINE V maximum() {
        return constant(static_cast<float>(PixelArithmetic16::MAX_VALUE()));
    }
    static HWY_INLINE V half() { return constant(halfRange<PixelArithmetic16>()); }

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
    static HWY_INLINE void loadAnyOrder(const T* row, V (&v)[4]) { load(row, v); }
    static HWY_INLINE void storeAnyOrder(T* row, const V (&v)[4]) { store(row, v); }

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

// Every value and opacity. Each operation is the one that the reference makes, in its order, so
// that NaN, infinity and both zeros come out as there; only which NaN comes out may differ, because
// compilers may swap the operands of a sum or product.
struct Vector32 : VectorSingle {
    using T = float;
    using Divider = PlainDivider<Vector32>;
    static constexpr bool isInteger = false;

    static HWY_INLINE V maximum() { return constant(PixelArithmetic32::MAX_VALUE()); }
    static HWY_INLINE V half() { return constant(halfRange<PixelArithmetic32>()); }

    // The lanes' order is the same for all rows.
    static HWY_INLINE void load(const T* row, V (&v)[4]) {
        V rows[4];
        loadAnyOrder(row, rows);
        transpose(rows, v);
    }
    static HWY_INLINE void store(T* row, const V (&v)[4]) {
        V rows[4];
        transpose(v, rows);
        storeAnyOrder(row, rows);
    }
    static HWY_INLINE void loadAnyOrder(const T* row, V (&v)[4]) {
        for (int i = 0; i < 4; ++i) {
            v[i] = hn::LoadU(tag, row + std::ptrdiff_t{i} * PIXELS_AT_ONCE);
        }
    }
    static HWY_INLINE void storeAnyOrder(T* row, const V (&v)[4]) {
        for (int i = 0; i < 4; ++i) {
            hn::StoreU(v[i], tag, row + std::ptrdiff_t{i} * PIXELS_AT_ONCE);
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

} // namespace orbel::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
