#include "film/FrameInput.h"

#include "media/MediaError.h"
#include "media/MediaWriter.h"
#include "tests/media/MediaFixtures.h"

#include <gtest/gtest.h>

#include <cstring>

namespace orbel {
namespace {

template<typename T>
std::array<T, 4> pixelAt(const MemoryImage& image, int x, int y) {
    std::array<T, 4> pixel;
    std::memcpy(pixel.data(), image.info().row(y) + static_cast<std::size_t>(x) * sizeof pixel,
                sizeof pixel);
    return pixel;
}

MemoryImage filled(ScenePlan& plan, long frame, RowLayout layout) {
    MemoryImage image(plan.size.width, plan.size.height, plan.format, layout);
    FrameInput(&plan).fill(frame, image);
    return image;
}

ScenePlan colourPlan(RasterFormat format, const std::array<double, 4>& rgba) {
    ScenePlan plan;
    plan.size = {3, 2};
    plan.format = format;
    plan.color.rgba = rgba;
    return plan;
}

TEST(FrameInput, truncatesAndPremultipliesColours) {
    const std::array<double, 4> rgba{1.0, 0.5, 0.1, 0.6};
    ScenePlan rgba8 = colourPlan(RF_RGBA8, rgba);
    // 255, 127, 25 and 153; (a * b + 128) / 256
    EXPECT_EQ(pixelAt<std::uint8_t>(filled(rgba8, 0, {}), 2, 1),
              (std::array<std::uint8_t, 4>{152, 76, 15, 153}));
    ScenePlan argb8 = colourPlan(RF_ARGB8, rgba);
    EXPECT_EQ(pixelAt<std::uint8_t>(filled(argb8, 0, {}), 0, 0),
              (std::array<std::uint8_t, 4>{153, 152, 76, 15}));
    ScenePlan argb16 = colourPlan(RF_ARGB16, rgba);
    // 65535, 32767, 6553 and 39321; a * b / 65535
    EXPECT_EQ(pixelAt<std::uint16_t>(filled(argb16, 0, {}), 0, 0),
              (std::array<std::uint16_t, 4>{39321, 39321, 19660, 3931}));
    ScenePlan rgba32 = colourPlan(RF_RGBA32F, rgba);
    const auto pixel = pixelAt<float>(filled(rgba32, 0, {}), 1, 0);
    EXPECT_FLOAT_EQ(pixel[0], 0.6F);
    EXPECT_FLOAT_EQ(pixel[1], 0.3F);
    EXPECT_FLOAT_EQ(pixel[2], 0.06F);
    EXPECT_FLOAT_EQ(pixel[3], 0.6F);
}

TEST(FrameInput, copiesRawFramesAsTheyAre) {
    ScenePlan plan = colourPlan(RF_RGBA8, {});
    for (int i = 0; i < 3 * 2 * 4; ++i) {
        plan.rawFrame.push_back(static_cast<std::uint8_t>(i));
    }
    for (const bool bottomUp : {false, true}) {
        const MemoryImage image = filled(plan, 5, {.padding = 7, .bottomUp = bottomUp});
        EXPECT_EQ(pixelAt<std::uint8_t>(image, 0, 0), (std::array<std::uint8_t, 4>{0, 1, 2, 3}));
        EXPECT_EQ(pixelAt<std::uint8_t>(image, 2, 1),
                  (std::array<std::uint8_t, 4>{20, 21, 22, 23}));
    }
}

TEST(FrameInput, scalesPicturesAndMovesWithClips) {
    const TestFolder folder;
    WriterSpec spec;
    spec.width = 16;
    spec.height = 8;
    spec.frameRate = {25, 1};
    const auto writer = openWriter(folder / "clip.mkv", spec);
    TestRaster raster(RF_RGBA8, 16, 8, RowOrder::Tight);
    for (int i = 0; i < 3; ++i) {
        raster.fillColour(0.2 * i, 0, 0, 1);
        writer->write(raster.info(), i);
    }
    writer->finish();
    ScenePlan plan = colourPlan(RF_RGBA8, {});
    plan.media = openMedia(folder / "clip.mkv", 1);
    plan.frameRate = {25, 1};
    EXPECT_EQ(pixelAt<std::uint8_t>(filled(plan, 2, {}), 2, 1)[0], 102);
    EXPECT_EQ(pixelAt<std::uint8_t>(filled(plan, 1, {}), 0, 0)[0], 51);
    EXPECT_THROW(static_cast<void>(filled(plan, 3, {})), MediaError);
}

} // namespace
} // namespace orbel
