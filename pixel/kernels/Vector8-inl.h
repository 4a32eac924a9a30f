// The arithmetic of 8-bit pixels on vectors; `PixelArithmetic8` is the reference implementation.

#if defined(ORBEL_VECTOR8_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef ORBEL_VECTOR8_INL_H
#undef ORBEL_VECTOR8_INL_H
#else
#define ORBEL_VECTOR8_INL_H
#endif

#include "pixel/PixelTraits.h"
#include "pixel/kernels/Lanes-inl.h"

#include <bit>
#include <cstdint>

HWY_BEFORE_NAMESPACE();
namespace orbel::HWY_NAMESPACE {

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
    static constexpr bool isInteger = true;
    static constexpr D tag{};

    using Traits = PixelArithmetic8;
    static constexpr float LARGEST = static_cast<float>(Traits::MAX_VALUE());

    static HWY_INLINE V constant(int value) { return hn::Set(tag, value); }
    static HWY_INLINE V maximum() { return constant(Traits::MAX_VALUE()); }
    static HWY_INLINE V half() { return constant(halfRange<Traits>()); }

    static_assert(std::endian::native == std::endian::little);
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
    static HWY_INLINE void loadAnyOrder(const T* row, V (&v)[4]) { load(row, v); }
    static HWY_INLINE void storeAnyOrder(T* row, const V (&v)[4]) { store(row, v); }

    static HWY_INLINE FloatV toSingle(V v) { return hn::ConvertTo(Floats(), v); }
    /// The low bits of values that are no further from 0 than 2^31.
    static HWY_INLINE V wrapSingle(FloatV v) { return hn::And(truncated(v), constant(255)); }
    /// Truncates values in range.
    static HWY_INLINE V fromSingle(FloatV v) { return truncated(v); }
    static HWY_INLINE V quantise(V v) { return v; }

    /// Factors of at most 15 bits, of which the second is not negative.
    static HWY_INLINE V multiply(V a, V b) {
        const hn::Repartition<std::int16_t, Ints> shorts;
        // The upper halves of `b` are 0, and so are their products. Where sums lie in between is
        // the target's own affair, so that rounding has to wait.
        V odd = hn::Zero(tag);
        const V even = hn::ReorderWidenMulAccumulate(tag, hn::BitCast(shorts, a),
                                                     hn::BitCast(shorts, b), hn::Zero(tag), odd);
        const V product = hn::RearrangeToOddPlusEven(even, odd);
        return hn::ShiftRight<8>(hn::Add(product, constant(128)));
    }
    /// Factors whose product has at most 31 bits.
    static HWY_INLINE V multiplyAny(V a, V b) {
        return hn::ShiftRight<8>(hn::Add(hn::Mul(a, b), constant(128)));
    }
    static HWY_INLINE V divide(V a, V b) {
        const FloatV scaled = hn::Mul(toSingle(a), hn::Set(Floats(), LARGEST));
        const V quotient = truncated(hn::Div(scaled, toSingle(b)));
        return hn::IfThenZeroElse(hn::Eq(b, hn::Zero(tag)), quotient);
    }

    /// Divides by a number of 1 to 510, for quotients that are to be limited to 0 and 255. One
    /// division serves many: the little that is added lifts a rounded product over the whole number
    /// that it may have fallen short of, and not over the next one.
    class Divider {
    public:
        explicit HWY_INLINE Divider(V divisor)
            : m_factor(hn::Div(hn::Set(Floats(), LARGEST), toSingle(divisor))) {}
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
    static HWY_INLINE FloatV toUnit(V v) {
        return hn::Div(toSingle(v), hn::Set(Floats(), LARGEST));
    }
    /// Truncates 255 times the value, as if the product were exact.
    static HWY_INLINE V fromUnit(FloatV v) {
        const FloatV size = hn::Abs(v);
        const FloatV product = hn::Trunc(hn::Mul(size, hn::Set(Floats(), LARGEST)));
        const FloatV remainder = hn::Sub(hn::Mul(size, hn::Set(Floats(), 256.0F)), product);
        const FloatV one = hn::IfThenElseZero(hn::Lt(remainder, size), hn::Set(Floats(), 1.0F));
        return truncated(hn::CopySign(hn::Sub(product, one), v));
    }
};

} // namespace orbel::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
