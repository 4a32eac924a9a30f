#include "pixel/ColourConversion.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <vector>

namespace orbel {
namespace {

using Triple = std::array<float, 3>;
using Conversion = void (*)(float, float, float, float&, float&, float&);

Triple convert(Conversion conversion, const Triple& in) {
    Triple out{-9.0F, -9.0F, -9.0F};
    conversion(in[0], in[1], in[2], out[0], out[1], out[2]);
    return out;
}

void expectTable(Conversion conversion, const std::vector<std::array<Triple, 2>>& table,
                 float tolerance) {
    for (const auto& [in, expected] : table) {
        SCOPED_TRACE(testing::PrintToString(in));
        const Triple out = convert(conversion, in);
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_NEAR(out[i], expected[i], tolerance) << i;
        }
    }
}

TEST(ColourConversion, ValueModelBack) {
    expectTable(HSL_to_RGB,
                {{{{0, 1, 1}, {1, 0, 0}}},
                 {{{30, 1, 1}, {1, 0.5F, 0}}},
                 {{{60, 1, 1}, {1, 1, 0}}},
                 {{{90, 1, 1}, {0.5F, 1, 0}}},
                 {{{150, 1, 1}, {0, 1, 0.5F}}},
                 {{{210, 1, 1}, {0, 0.5F, 1}}},
                 {{{270, 1, 1}, {0.5F, 0, 1}}},
                 {{{330, 1, 1}, {1, 0, 0.5F}}},
                 {{{200, 0, 0.3F}, {0.3F, 0.3F, 0.3F}}},
                 {{{0, 0.5F, 0.8F}, {0.8F, 0.4F, 0.4F}}},
                 // negative and NaN: nothing is written
                 {{{-1, 1, 1}, {-9, -9, -9}}},
                 {{{std::nanf(""), 1, 1}, {-9, -9, -9}}}},
                1e-6F);
}

TEST(ColourConversion, LumaModel) {
    expectTable(rgb2hsl,
                {{{{1, 0, 0}, {0, 1, 0.299F}}},
                 {{{0, 1, 0.5F}, {2.5F, 1, 0.644F}}},
                 {{{0.5F, 0, 1}, {4.5F, 1, 0.2635F}}},
                 {{{1, 0, 0.5F}, {5.5F, 1, 0.356F}}},
                 {{{0.4F, 0.2F, 0.2F}, {0, 1 / 3.0F, 0.2598F}}},
                 {{{0.9F, 0.5F, 0.5F}, {0, 0.25F, 0.6196F}}}, // over 2 - delta
                 // below a ten-thousandth: black, and grey
                 {{{9.9e-5F, 0, 0}, {0, 0, 0}}},
                 {{{1.01e-4F, 0, 0}, {0, 1, 3.02e-5F}}},
                 {{{0.5F, 0.5F, 0.49991F}, {0, 0, 0.49999F}}},
                 {{{0.3F, 0.29989F, 0.29989F}, {0, 1.1e-4F / 0.59989F, 0.29992F}}}},
                2e-5F);
    expectTable(hsl2rgb,
                {{{{0, 1, 0.299F}, {1, 0, 0}}},
                 {{{2.5F, 1, 0.644F}, {0, 1, 0.5F}}},
                 {{{5.5F, 1, 0.356F}, {1, 0, 0.5F}}},
                 {{{3, 0, 0.25F}, {0.25F, 0.25F, 0.25F}}},
                 {{{0, 1, 0.6495F}, {1, 0.5F, 0.5F}}}}, // lightened
                1e-5F);
}

TEST(ColourConversion, WildInputIsHarmless) {
    const float infinity = std::numeric_limits<float>::infinity();
    const std::array wild{std::nanf(""), infinity, -infinity, 1e30F, -1e30F, -0.5F, 0.0F, 1.0F};
    for (const float a : wild) {
        for (const float b : wild) {
            for (const float c : wild) {
                for (const auto conversion : {rgb2hsl, hsl2rgb, RGB_to_HSL, HSL_to_RGB}) {
                    EXPECT_NO_FATAL_FAILURE(convert(conversion, {a, b, c}));
                }
            }
        }
    }
}

} // namespace
} // namespace orbel
