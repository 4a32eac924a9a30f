#include "media/ScalePicture.h"

#include "tests/media/MediaFixtures.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace orbel {
namespace {

template<typename T>
Picture flat(int width, int height, const T (&colour)[4], bool hasAlpha) {
    Picture picture = makePicture<T>(width, height, hasAlpha);
    auto& pixels = std::get<std::vector<T>>(picture.components);
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        pixels[i] = colour[i % 4];
    }
    return picture;
}

template<typename T>
void expectFlatStaysFlat(const T (&colour)[4], double tolerance) {
    const int sizes[][2] = {{1, 1}, {7, 5}, {64, 48}, {33, 3}};
    for (const auto& from : sizes) {
        for (const auto& to : sizes) {
            const Picture picture = flat(from[0], from[1], colour, true);
            const Picture result = PictureScaler().scale(picture, to[0], to[1]);
            ASSERT_EQ(result.width, to[0]);
            ASSERT_EQ(result.height, to[1]);
            ASSERT_EQ(result.depth(), picture.depth());
            for (int channel = 0; channel < 4; ++channel) {
                for (int x = 0; x < to[0]; ++x) {
                    EXPECT_NEAR(componentOf(result, x, to[1] / 2, channel),
                                componentOf(picture, 0, 0, channel), tolerance)
                        << from[0] << " to " << to[0];
                }
            }
        }
    }
}

TEST(ScalePicture, FlatStaysFlatInEveryDepth) {
    expectFlatStaysFlat<std::uint8_t>({10, 200, 255, 90}, 1.01 / 255.0);
    expectFlatStaysFlat<std::uint8_t>({0, 255, 128, 255}, 0.0);
    expectFlatStaysFlat<std::uint16_t>({1000, 65535, 12345, 65535}, 8.0 / 65535.0);
    expectFlatStaysFlat<float>({-2.0F, 0.5F, 300.0F, 0.25F}, 2e-4);
}

TEST(ScalePicture, TransparentPixelsLendNoColour) {
    Picture picture = flat<std::uint8_t>(16, 4, {255, 0, 0, 255}, true);
    auto& pixels = std::get<0>(picture.components);
    for (std::size_t i = 0; i < pixels.size(); i += 4) {
        if (i / 4 % 16 >= 8) {
            pixels[i] = 0;
            pixels[i + 1] = 255; // green, not to be seen
            pixels[i + 3] = 0;
        }
    }
    for (const int width : {5, 31}) {
        const Picture result = PictureScaler().scale(picture, width, 4);
        for (int x = 0; x < width; ++x) {
            EXPECT_LE(componentOf(result, x, 1, 1), 0.02) << x;
            if (componentOf(result, x, 1, 3) > 0.1) {
                EXPECT_GE(componentOf(result, x, 1, 0), 0.98) << x;
            }
        }
    }
}

TEST(ScalePicture, FloatAndIntegerAgree) {
    Picture integers = makePicture<std::uint16_t>(24, 18, true);
    Picture floats = makePicture<float>(24, 18, true);
    for (std::size_t i = 0; i < componentCount(24, 18); ++i) {
        const auto value = static_cast<std::uint16_t>(20000 + (i / 4 % 24) * 1000 + i / 96 * 500);
        std::get<1>(integers.components)[i] = value;
        std::get<2>(floats.components)[i] = static_cast<float>(value) / 65535.0F;
    }
    const int sizes[][2] = {{12, 9}, {48, 36}, {17, 40}};
    for (const auto& size : sizes) {
        const Picture a = PictureScaler().scale(integers, size[0], size[1]);
        const Picture b = PictureScaler().scale(floats, size[0], size[1]);
        for (int y = 0; y < size[1]; ++y) {
            for (int x = 0; x < size[0]; ++x) {
                EXPECT_NEAR(componentOf(a, x, y, 0), componentOf(b, x, y, 0), 0.002)
                    << size[0] << ": " << x << ", " << y;
            }
        }
    }
}

// What is kept for the next picture must not show in it.
TEST(ScalePicture, OneScalerServesPicturesOfEveryKind) {
    PictureScaler scaler;
    const auto expectFlat = [&scaler](const Picture& picture, int width, int height) {
        const Picture& result = scaler.scale(picture, width, height);
        ASSERT_EQ(result.width, width);
        ASSERT_EQ(result.height, height);
        ASSERT_EQ(result.depth(), picture.depth());
        ASSERT_EQ(result.hasAlpha, picture.hasAlpha);
        for (int channel = 0; channel < 4; ++channel) {
            EXPECT_NEAR(componentOf(result, width - 1, height - 1, channel),
                        componentOf(picture, 0, 0, channel), 1.01 / 255.0);
        }
    };
    for (int turn = 0; turn < 2; ++turn) {
        expectFlat(flat<std::uint8_t>(20, 10, {10, 20, 30, 255}, false), 31, 17);
        expectFlat(flat<std::uint8_t>(20, 10, {90, 20, 30, 128}, true), 31, 17);
        expectFlat(flat<std::uint16_t>(20, 10, {9000, 2000, 300, 65535}, false), 31, 17);
        expectFlat(flat<float>(20, 10, {0.5F, 0.25F, 0.125F, 0.5F}, true), 31, 17);
        expectFlat(flat<std::uint8_t>(9, 40, {200, 100, 50, 255}, false), 31, 17);
        for (const int width : {3, 5}) {
            expectFlat(flat<std::uint8_t>(9, 40, {20, 10, 5, 255}, false), width, 4);
            expectFlat(flat<std::uint8_t>(9, 40, {20, 10, 5, 255}, false), width, 7);
        }
    }
}

TEST(ScalePicture, FarSizesAreReachedOrRefused) {
    const int sizes[][2] = {{1, 1}, {1, 32767}, {32767, 1}, {3000, 2}, {2, 3000}};
    for (const auto& from : sizes) {
        const Picture picture = flat<std::uint8_t>(from[0], from[1], {10, 200, 255, 255}, false);
        for (const auto& to : sizes) {
            const Picture result = PictureScaler().scale(picture, to[0], to[1]);
            EXPECT_EQ(componentOf(result, to[0] - 1, to[1] - 1, 1), 200.0 / 255.0)
                << from[0] << " x " << from[1] << " to " << to[0] << " x " << to[1];
        }
    }
}

TEST(ScalePicture, RefusesEmptySizes) {
    const Picture picture = makePicture<std::uint8_t>(2, 2, false);
    EXPECT_THROW((void)PictureScaler().scale(picture, 0, 2), std::invalid_argument);
    EXPECT_THROW((void)PictureScaler().scale(picture, 2, -1), std::invalid_argument);
}

} // namespace
} // namespace orbel
