#include "tests/support/Scene.h"

#include <gtest/gtest.h>

#include <cmath>

namespace orbel {
namespace {

using test::Frame;
using test::Scene;

constexpr int MODES = 18;
constexpr int ADD = 2;
constexpr int SCREEN = 4;

Scene scene(int mode, RasterFormat format) {
    Scene result(test::OPEN_CURVE);
    result.set(PARAM_THICKNESS, 4).set(PARAM_FEATHER, 60).set(PARAM_OPACITY, 70);
    result.set(PARAM_TRANSFER_MODE, mode);
    result.parameters.set(PARAM_COLOR, {0.9, 0.3, 0.55});
    result.format = format;
    result.layout = {32, true};
    return result;
}

// Each mode is a picture of its own, but float pixels are added where others are screened.
TEST(TransferModeRender, everyModeWorksInEveryFormat) {
    for (const RasterFormat format : test::RENDERED_FORMATS) {
        std::vector<Frame> frames;
        for (int mode = 0; mode < MODES; ++mode) {
            frames.push_back(render(scene(mode, format))); // checks the guards
            EXPECT_EQ(frames.back().result, 0) << mode << test::formatName(format);
            EXPECT_GT(test::alphaSum(frames.back().picture()), 10.0) << mode;
            for (int other = 0; other < mode; ++other) {
                const bool same = mode == SCREEN && other == ADD && format >= RF_ARGB32F;
                const RasterInfo& former = frames[static_cast<std::size_t>(other)].picture();
                EXPECT_EQ(bool{test::samePicture(frames.back().picture(), former, 0.0)}, same)
                    << mode << " and " << other << " in " << test::formatName(format);
            }
        }
    }
}

TEST(TransferModeRender, modesOutsideTheMenuKeepTheStrokeLayer) {
    for (const double mode : {-5.0, 18.0, 1e9, -1e300}) {
        Scene odd = scene(0, RF_RGBA8);
        odd.set(PARAM_TRANSFER_MODE, mode);
        EXPECT_EQ(render(odd).result, 0) << mode;
    }
}

// The layer's colour is 1, so what each mode does to an opaque picture is known at full cover.
TEST(TransferModeRender, knownResultsOfAWhiteStroke) {
    struct Row {
        int mode;
        bool white; // else the picture stays
    };
    const Row rows[] = {{1, true}, {2, true}, {3, false}, {4, true}, {10, false}, {11, true}};
    for (const RasterFormat format : test::RENDERED_FORMATS) {
        for (const Row& row : rows) {
            Scene white(test::CIRCLE);
            white.set(PARAM_THICKNESS, 3).set(PARAM_TRANSFER_MODE, row.mode);
            white.format = format;
            const Frame frame = render(white);
            const test::Rgba input = test::pixelAt(Frame(white).input.info(), 20, 24);
            const test::Rgba actual = test::pixelAt(frame.picture(), 20, 24);
            ASSERT_EQ(input[3], 1.0);
            for (std::size_t i = 0; i < 3; ++i) {
                const double expected = row.white ? std::fmax(1.0, actual[i]) : input[i];
                EXPECT_NEAR(actual[i], expected, 3.0 / 255) << row.mode;
            }
        }
    }
}

} // namespace
} // namespace orbel
