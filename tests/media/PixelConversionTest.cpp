#include "media/PixelConversion.h"

#include "media/ComponentScale.h"
#include "tests/media/MediaFixtures.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stdexcept>

namespace orbel {
namespace {

TEST(ScaleComponent, KnownAnswers) {
    EXPECT_EQ((scaleComponent<std::uint16_t>(std::uint8_t{1})), 257);
    EXPECT_EQ((scaleComponent<std::uint16_t>(std::uint8_t{255})), 65535);
    EXPECT_EQ((scaleComponent<std::uint8_t>(std::uint16_t{128})), 0);
    EXPECT_EQ((scaleComponent<std::uint8_t>(std::uint16_t{129})), 1);
    EXPECT_EQ((scaleComponent<std::uint8_t>(0.5F)), 128);
    EXPECT_EQ((scaleComponent<std::uint8_t>(-1.0F)), 0);
    EXPECT_EQ((scaleComponent<std::uint16_t>(1e30F)), 65535);
    EXPECT_EQ((scaleComponent<std::uint16_t>(std::numeric_limits<float>::quiet_NaN())), 0);
    EXPECT_EQ((scaleComponent<float>(std::uint8_t{51})), 0.2F);
}

TEST(FillRaster, PremultipliesWithTheArithmeticOfTheFormat) {
    Picture picture = makePicture<std::uint8_t>(2, 1, true);
    std::get<0>(picture.components) = {255, 100, 0, 255, 200, 1, 128, 128};
    const struct {
        RasterFormat format;
        double expected[8];
    } cases[] = {
        // (c * a + 128) >> 8, so that opaque white is 254
        {RF_RGBA8, {254, 100, 0, 255, 100, 1, 64, 128}},
        {RF_ARGB8, {254, 100, 0, 255, 100, 1, 64, 128}},
        // truncated
        {RF_RGBA16, {65535, 25700, 0, 65535, 25800, 129, 16512, 32896}},
        {RF_ARGB16, {65535, 25700, 0, 65535, 25800, 129, 16512, 32896}},
    };
    for (const auto& c : cases) {
        for (const RowOrder order : {RowOrder::Tight, RowOrder::Padded, RowOrder::BottomUp}) {
            TestRaster raster(c.format, 2, 1, order);
            fillRaster(picture, raster.info(), SourceAlpha::Premultiplied);
            const double most = raster.info().bytesPerPixel == 4 ? 255.0 : 65535.0;
            for (int i = 0; i < 8; ++i) {
                EXPECT_EQ(std::lround(raster.at(i / 4, 0, i % 4) * most), c.expected[i])
                    << c.format << " component " << i;
            }
        }
    }
    TestRaster raster(RF_ARGB32F, 2, 1, RowOrder::Tight);
    fillRaster(picture, raster.info(), SourceAlpha::Premultiplied);
    EXPECT_FLOAT_EQ(static_cast<float>(raster.at(1, 0, 0)), 200.0F / 255.0F * (128.0F / 255.0F));
}

TEST(FillRaster, FloatsAreClampedForIntegersAndKeptForFloats) {
    Picture picture = makePicture<float>(1, 1, false);
    std::get<2>(picture.components) = {2.0F, -1.0F, 0.5F, 1.0F};
    TestRaster sixteen(RF_RGBA16, 1, 1, RowOrder::Tight);
    fillRaster(picture, sixteen.info(), SourceAlpha::Premultiplied);
    EXPECT_EQ(sixteen.at(0, 0, 0), 1.0);
    EXPECT_EQ(sixteen.at(0, 0, 1), 0.0);
    EXPECT_EQ(std::lround(sixteen.at(0, 0, 2) * 65535.0), 32768);
    TestRaster real(RF_RGBA32F, 1, 1, RowOrder::Tight);
    fillRaster(picture, real.info(), SourceAlpha::Premultiplied);
    EXPECT_EQ(real.at(0, 0, 0), 2.0);
    EXPECT_EQ(real.at(0, 0, 1), -1.0);
}

TEST(FillRaster, RefusesOtherSizesAndLayouts) {
    const Picture picture = makePicture<std::uint8_t>(2, 1, false);
    TestRaster raster(RF_RGBA8, 1, 2, RowOrder::Tight);
    EXPECT_THROW(fillRaster(picture, raster.info(), SourceAlpha::Premultiplied),
                 std::invalid_argument);
    RasterInfo other = TestRaster(RF_RGBA8, 2, 1, RowOrder::Tight).info();
    other.pixelFormat = RF_ARGB8_ALT;
    EXPECT_THROW(fillRaster(picture, other, SourceAlpha::Premultiplied), std::invalid_argument);
}

template<typename T>
EncodedView<T> viewOf(T (&pixel)[4]) {
    return {&pixel[0], &pixel[1], &pixel[2], &pixel[3], 4, 4};
}

TEST(EncodeStraight, DividesRoundsAndClamps) {
    std::uint8_t bytes[4] = {100, 1, 201, 200};
    RasterInfo info;
    info.data = bytes;
    info.pixelFormat = RF_RGBA8;
    info.width = 1;
    info.height = 1;
    info.rowBytes = 4;
    info.bytesPerPixel = 4;
    std::uint8_t eight[4] = {};
    encodeStraight(info, OutputAlpha::Premultiplied, viewOf(eight));
    EXPECT_EQ(eight[0], 128); // 127.5
    EXPECT_EQ(eight[1], 1);   // 1.275
    EXPECT_EQ(eight[2], 255); // brighter than its alpha
    EXPECT_EQ(eight[3], 200);
    std::uint16_t sixteen[4] = {};
    encodeStraight(info, OutputAlpha::Premultiplied, viewOf(sixteen));
    EXPECT_EQ(sixteen[1], 328); // 327.675
    EXPECT_EQ(sixteen[3], 51400);
    bytes[3] = 0;
    encodeStraight(info, OutputAlpha::Premultiplied, viewOf(sixteen));
    EXPECT_EQ(sixteen[0], 0);
    EXPECT_EQ(sixteen[3], 0);
}

TEST(EncodeStraight, SurvivesEveryFloat) {
    const float odd[] = {std::numeric_limits<float>::quiet_NaN(),
                         std::numeric_limits<float>::infinity(),
                         -std::numeric_limits<float>::infinity(),
                         -1.0F,
                         1e-40F,
                         3e38F,
                         0.0F};
    for (const float alpha : odd) {
        for (const float colour : odd) {
            float pixel[4] = {alpha, colour, colour, colour};
            RasterInfo info;
            void* bytes = pixel;
            info.data = static_cast<std::uint8_t*>(bytes);
            info.pixelFormat = RF_ARGB32F;
            info.width = 1;
            info.height = 1;
            info.rowBytes = 16;
            info.bytesPerPixel = 16;
            std::uint16_t straight[4] = {};
            encodeStraight(info, OutputAlpha::Premultiplied, viewOf(straight));
            if (!(alpha > 0.0F)) {
                EXPECT_EQ(straight[0], 0);
            }
            std::uint8_t opaque[4] = {};
            encodeOpaque(info, OutputAlpha::Premultiplied, viewOf(opaque));
            EXPECT_EQ(opaque[3], 255);
        }
    }
}

TEST(EncodeOpaque, IsThePremultipliedColour) {
    for (const RasterFormat format : sixFormats) {
        TestRaster raster(format, 3, 5, RowOrder::BottomUp);
        raster.fillNoise(1);
        std::vector<std::uint8_t> out(60);
        encodeOpaque(raster.info(), OutputAlpha::Premultiplied,
                     {&out[0], &out[1], &out[2], &out[3], 4, 12});
        for (int i = 0; i < 60; ++i) {
            const double expected = i % 4 == 3 ? 1.0 : raster.at(i / 4 % 3, i / 12, i % 4);
            EXPECT_NEAR(out[static_cast<std::size_t>(i)], expected * 255.0, 0.5001) << format;
        }
    }
}

} // namespace
} // namespace orbel
