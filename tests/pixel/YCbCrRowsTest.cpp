#include "pixel/YCbCrRows.h"

#include "pixel/Acceleration.h"
#include "tests/pixel/PixelTestSupport.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <vector>

namespace orbel::test {
namespace {

template<typename P>
class YCbCrRowsTest : public testing::Test {
protected:
    /// Even, shorter and longer than vectors and than what is coded at a time.
    static std::vector<int> lengths() {
        std::vector<int> lengths{510, 512, 514, 542, 544, 546, 1030, 1200};
        for (int pixels = 2; pixels <= 100; pixels += 2) {
            lengths.push_back(pixels);
        }
        return lengths;
    }
    using Bytes = std::vector<std::uint8_t>;

    Bytes randomBytes(int count) {
        Bytes bytes(static_cast<std::size_t>(count));
        for (std::uint8_t& byte : bytes) {
            byte = static_cast<std::uint8_t>(m_random());
        }
        return bytes;
    }

    /// Both rows of luma and both of chroma in one, with a guard byte behind each.
    static Bytes coded(int level, bool overBlack, const std::array<Bytes, 4>& in, int pixels) {
        const auto width = static_cast<std::size_t>(pixels);
        Bytes out(4 * (width + 1), 77);
        const typename YCbCrRows<P>::Halved rows{out.data(), out.data() + width + 1,
                                                 out.data() + 2 * (width + 1),
                                                 out.data() + 3 * (width + 1)};
        const YCbCrRows<P>& kernels = yCbCrRows<P>(level);
        (overBlack ? kernels.codeOverBlack : kernels.code)(
            {in[0].data(), in[1].data(), in[2].data(), in[3].data()}, pixels, rows);
        return out;
    }

    std::mt19937 m_random{1};
};

using EightBitFormats = testing::Types<PIXEL_ARGB8, PIXEL_RGBA8>;
TYPED_TEST_SUITE(YCbCrRowsTest, EightBitFormats);

TYPED_TEST(YCbCrRowsTest, everyLevelCodesAndDecodesTheSame) {
    const YCbCrWeights weights[] = {yCbCrWeights(0.2126, 0.0722, false),
                                    yCbCrWeights(0.299, 0.114, true)};
    for (const int pixels : this->lengths()) {
        const std::array in{this->randomBytes(4 * pixels), this->randomBytes(4 * pixels),
                            this->randomBytes(4 * pixels), this->randomBytes(4 * pixels)};
        std::vector<std::uint16_t> samples(static_cast<std::size_t>(3 * pixels));
        for (std::uint16_t& sample : samples) {
            sample = static_cast<std::uint16_t>(this->m_random());
        }
        for (int level = 1; level <= bestAccelerationLevel(); ++level) {
            for (const bool overBlack : {false, true}) {
                EXPECT_EQ(this->coded(level, overBlack, in, pixels),
                          this->coded(0, overBlack, in, pixels))
                    << "level " << level << ", " << pixels << " pixels";
            }
            for (const YCbCrWeights& w : weights) {
                const auto decoded = [&](int l) {
                    std::vector<std::uint8_t> row(static_cast<std::size_t>(4 * pixels) + 1, 77);
                    yCbCrRows<TypeParam>(l).decode(
                        {samples.data(), samples.data() + pixels, samples.data() + 2 * pixels},
                        pixels, w, row.data());
                    return row;
                };
                EXPECT_EQ(decoded(level), decoded(0)) << "level " << level;
            }
        }
    }
}

TYPED_TEST(YCbCrRowsTest, isTheMatrixRoundedAndComesBack) {
    using Format = typename TypeParam::FORMAT;
    const YCbCrWeights weights = yCbCrWeights(0.2126, 0.0722, false);
    for (int i = 0; i < 4000; ++i) {
        const auto colour = this->randomBytes(3);
        std::vector<std::uint8_t> row(8, 9);
        for (int pixel = 0; pixel < 8; pixel += 4) {
            row[static_cast<std::size_t>(pixel + Format::red)] = colour[0];
            row[static_cast<std::size_t>(pixel + Format::green)] = colour[1];
            row[static_cast<std::size_t>(pixel + Format::blue)] = colour[2];
        }
        const auto out = this->coded(0, false, {row, row, row, row}, 2);
        const double luma = 0.2126 * colour[0] + 0.7152 * colour[1] + 0.0722 * colour[2];
        EXPECT_NEAR(out[0], 16 + luma * 219 / 255, 0.502);
        EXPECT_NEAR(out[6], 128 + (colour[2] - luma) / 1.8556 * 224 / 255, 0.502);
        EXPECT_NEAR(out[9], 128 + (colour[0] - luma) / 1.5748 * 224 / 255, 0.502);

        const std::uint16_t samples[3] = {static_cast<std::uint16_t>(out[0] << 8),
                                          static_cast<std::uint16_t>(out[6] << 8),
                                          static_cast<std::uint16_t>(out[9] << 8)};
        std::uint8_t pixel[4] = {};
        yCbCrRows<TypeParam>(0).decode({samples, samples + 1, samples + 2}, 1, weights, pixel);
        const int most = 3; // what rounding to 8 bits of Y'CbCr costs
        EXPECT_NEAR(pixel[Format::red], colour[0], most);
        EXPECT_NEAR(pixel[Format::green], colour[1], most);
        EXPECT_NEAR(pixel[Format::blue], colour[2], most);
        EXPECT_EQ(pixel[Format::alpha], 255);
    }
}

TYPED_TEST(YCbCrRowsTest, fullRangeReachesBlackAndWhite) {
    const YCbCrWeights weights = yCbCrWeights(0.299, 0.114, true);
    const std::uint16_t luma[2] = {0, 65535};
    const std::uint16_t grey[2] = {32768, 32768};
    std::uint8_t row[8] = {};
    yCbCrRows<TypeParam>().decode({luma, grey, grey}, 2, weights, row);
    for (const int colour : TypeParam::FORMAT::colours) {
        EXPECT_EQ(row[colour], 0);
        EXPECT_EQ(row[4 + colour], 255);
    }
}

} // namespace
} // namespace orbel::test
