#include "pixel/PixelTraits.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <type_traits>

namespace orbel {
namespace {

template<typename P, typename Component, typename Wide, typename Float, int red, int alpha>
constexpr bool isFormat() {
    using Types = PixelTypes<P>;
    return std::is_empty_v<P> && std::is_same_v<typename Types::Component, Component> &&
           std::is_same_v<typename Types::Wide, Wide> &&
           std::is_same_v<typename Types::Float, Float> &&
           std::is_same_v<typename Types::Format, typename P::FORMAT> && P::FORMAT::red == red &&
           P::FORMAT::green == red + 1 && P::FORMAT::blue == red + 2 && P::FORMAT::alpha == alpha;
}

static_assert(isFormat<PIXEL_ARGB8, unsigned char, int, int, 1, 0>());
static_assert(isFormat<PIXEL_RGBA8, unsigned char, int, int, 0, 3>());
static_assert(isFormat<PIXEL_ARGB16, unsigned short, double, float, 1, 0>());
static_assert(isFormat<PIXEL_RGBA16, unsigned short, double, float, 0, 3>());
static_assert(isFormat<PIXEL_ARGB32, float, double, float, 1, 0>());
static_assert(isFormat<PIXEL_RGBA32, float, double, float, 0, 3>());

// Cut off where they are on purpose.
static_assert(PIXEL_ARGB8::RECIP_VALUE() == 0.003921568627);
static_assert(PIXEL_ARGB16::RECIP_VALUE() == 1.52590219e-05);
static_assert(PIXEL_ARGB32::RECIP_VALUE() == 1.0);
static_assert(PIXEL_ARGB8::halfRoundPixel() == 0.5F && PIXEL_ARGB16::halfRoundPixel() == 0.5F &&
              PIXEL_ARGB32::halfRoundPixel() == 0.0F);

template<typename P>
class EightBitTraits : public testing::Test {};
using EightBit = testing::Types<PIXEL_ARGB8, PIXEL_RGBA8>;
TYPED_TEST_SUITE(EightBitTraits, EightBit);

TYPED_TEST(EightBitTraits, ProductsRoundAt256AndQuotientsTruncate) {
    struct Case {
        int a, b, product, quotient;
    };
    for (const Case& c :
         {Case{255, 255, 254, 255}, Case{255, 1, 1, 65025}, Case{1, 127, 0, 2}, Case{1, 128, 1, 1},
          Case{255, 127, 127, 512}, Case{-255, 255, -254, -255}, Case{-1, 128, 0, -1},
          Case{-1, 129, -1, -1}, Case{0, 255, 0, 0}, Case{200, 100, 78, 510}, Case{77, 0, 0, 0},
          Case{-1, 2, 0, -127}, Case{1, 256, 1, 0}}) {
        EXPECT_EQ(TypeParam::multiply(c.a, c.b), c.product) << c.a << " x " << c.b;
        EXPECT_EQ(TypeParam::divide(c.a, c.b), c.quotient) << c.a << " / " << c.b;
    }
}

TYPED_TEST(EightBitTraits, ArithmeticIsTotal) {
    const std::array extremes{std::numeric_limits<int>::min(), -1, 0, 1,
                              std::numeric_limits<int>::max()};
    for (const int a : extremes) {
        for (const int b : extremes) {
            const int product = TypeParam::multiply(a, b);
            EXPECT_EQ(product, TypeParam::multiply(b, a));
            EXPECT_NO_FATAL_FAILURE(static_cast<void>(TypeParam::divide(a, b)));
        }
    }
    EXPECT_EQ(TypeParam::fromFloat(std::numeric_limits<float>::quiet_NaN()), 0);
    EXPECT_EQ(TypeParam::fromFloat(1e30F), 0);
}

TYPED_TEST(EightBitTraits, ConversionTruncates) {
    EXPECT_EQ(TypeParam::fromFloat(0.999F), 254);
    EXPECT_EQ(TypeParam::fromFloat(1.5F), 382);
    EXPECT_EQ(TypeParam::fromFloat(-0.999F), -254);
    EXPECT_EQ(TypeParam::toFloat(255), 1.0F);
    EXPECT_EQ(TypeParam::toFloat(51), static_cast<float>(0.2));
}

TYPED_TEST(EightBitTraits, Clamps) {
    EXPECT_EQ(TypeParam::clamp(-1), 0);
    EXPECT_EQ(TypeParam::clamp(254), 254);
    EXPECT_EQ(TypeParam::clamp(51000), 255);
    EXPECT_EQ(TypeParam::clamp_underflow(-3), 0);
    EXPECT_EQ(TypeParam::clamp_underflow(300), 300);
    EXPECT_EQ(TypeParam::clamp_overflow(300), 255);
    EXPECT_EQ(TypeParam::clamp_overflow(-3), -3);
}

template<typename P>
class SixteenBitTraits : public testing::Test {};
using SixteenBit = testing::Types<PIXEL_ARGB16, PIXEL_RGBA16>;
TYPED_TEST_SUITE(SixteenBitTraits, SixteenBit);

TYPED_TEST(SixteenBitTraits, ConversionKeepsFractions) {
    using P = TypeParam;
    EXPECT_EQ(P::toFloat(65535), 1.0F);
    EXPECT_EQ(P::fromFloat(0.5F), 32767.5F);
    EXPECT_EQ(P::fromFloat(2.0F), 131070.0F);
}

TYPED_TEST(SixteenBitTraits, ArithmeticIsSinglePrecision) {
    using P = TypeParam;
    static_assert(std::is_same_v<decltype(P::multiply(1.0F, 1.0F)), float>);
    EXPECT_EQ(P::multiply(65535.0F, 65535.0F), 65535.0F);
    EXPECT_EQ(P::multiply(3.0F, 12345.0F), 3.0F * 12345.0F / 65535.0F);
    EXPECT_EQ(P::divide(7.0F, 3.0F), 7.0F / 3.0F * 65535.0F);
    EXPECT_EQ(P::divide(7.0F, 0.0F), 0.0F);
    EXPECT_EQ(P::clamp(70000.0F), 65535.0F);
    EXPECT_EQ(P::clamp(-3.0F), 0.0F);
    EXPECT_EQ(P::clamp(12.5F), 12.5F);
    EXPECT_EQ(P::clamp_underflow(70000.0F), 70000.0F);
    EXPECT_EQ(P::clamp_overflow(-3.0F), -3.0F);
}

template<typename P>
class FloatTraits : public testing::Test {};
using FloatFormats = testing::Types<PIXEL_ARGB32, PIXEL_RGBA32>;
TYPED_TEST_SUITE(FloatTraits, FloatFormats);

TYPED_TEST(FloatTraits, NothingIsClampedOrRounded) {
    using P = TypeParam;
    EXPECT_EQ(P::toFloat(1.7F), 1.7F);
    EXPECT_EQ(P::fromFloat(-0.2F), -0.2F);
    EXPECT_EQ(P::multiply(0.5F, 3.0F), 1.5F);
    EXPECT_EQ(P::divide(1.0F, 4.0F), 0.25F);
    EXPECT_EQ(P::divide(1.0F, 0.0F), 0.0F);
    for (const float v : {1.7F, -0.2F}) {
        EXPECT_EQ(P::clamp(v), v);
        EXPECT_EQ(P::clamp_underflow(v), v);
        EXPECT_EQ(P::clamp_overflow(v), v);
    }
}

} // namespace
} // namespace orbel
