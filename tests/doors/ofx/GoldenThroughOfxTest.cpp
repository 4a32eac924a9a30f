#include "doors/ofx/platform/OfxNames.h"
#include "film/FrameInput.h"
#include "tests/doors/ofx/Stage.h"
#include "tests/golden/GoldenScenes.h"

#include <algorithm>
#include <cstring>

namespace orbel::ofxtest {
namespace {

// Hosts of this kind have the alpha last; the arithmetic is the same.
RasterFormat alphaLast(RasterFormat format) {
    switch (format) {
    case RF_ARGB8:
        return RF_RGBA8;
    case RF_ARGB16:
        return RF_RGBA16;
    case RF_ARGB32F:
        return RF_RGBA32F;
    default:
        return format;
    }
}

// Moves every pixel's alpha to the end where it stands first.
MemoryImage alphaLast(const MemoryImage& image) {
    const RasterInfo& from = image.info();
    MemoryImage result(from.width, from.height, alphaLast(from.pixelFormat), RowLayout{});
    const auto pixel = static_cast<std::size_t>(from.bytesPerPixel);
    const std::size_t first = from.pixelFormat == result.info().pixelFormat ? 0 : pixel / 4;
    for (int y = 0; y < from.height; ++y) {
        for (std::size_t x = 0; x < static_cast<std::size_t>(from.width); ++x) {
            const std::uint8_t* const source = from.row(y) + x * pixel;
            std::uint8_t* const target = result.info().row(y) + x * pixel;
            std::rotate_copy(source, source + first, source + pixel, target);
        }
    }
    return result;
}

MemoryImage imageOf(const std::string& bytes, const ScenePlan& plan) {
    MemoryImage image(plan.size.width, plan.size.height, plan.format, RowLayout{});
    std::memcpy(image.info().data, bytes.data(), bytes.size());
    return image;
}

class GoldenThroughOfx : public testing::TestWithParam<std::string> {};

TEST_P(GoldenThroughOfx, givesTheStoredBytes) {
    TestHost host;
    const LoadedPlugin plugin(ORBEL_OFX_BINARY, &host);
    ScenePlan plan = golden::planOf(GetParam());
    FrameInput pictures(&plan);
    const golden::Frames stored = golden::stored(GetParam(), golden::render(GetParam()));

    Shot shot;
    shot.format = alphaLast(plan.format);
    shot.frame = {0, 0, plan.size.width, plan.size.height};
    shot.scale = plan.renderScaleX;
    shot.aspect = plan.pixelAspect;
    shot.parameters = plan.parameters;
    shot.shapeFile = plan.shapePath;
    for (long frame = plan.frames.first; frame <= plan.frames.last; ++frame) {
        MemoryImage input(plan.size.width, plan.size.height, plan.format, RowLayout{});
        pictures.fill(frame, input);
        shot.time = static_cast<double>(frame);
        Stage stage(&plugin, shot, Layouts(shot));
        stage.source.takeFrom(alphaLast(input).info());
        EXPECT_EQ(stage.render(), ofx::STAT_OK);
        const auto index = static_cast<std::size_t>(frame - stored.first);
        const MemoryImage expected = alphaLast(imageOf(stored.bytes.at(index), plan));
        EXPECT_TRUE(shows(stage.output, expected.info(), shot.frame, shot.frame)) << frame;
    }
}

INSTANTIATE_TEST_SUITE_P(Scenes, GoldenThroughOfx, testing::ValuesIn(golden::sceneNames()),
                         [](const auto& scene) { return golden::testName(scene.param); });

} // namespace
} // namespace orbel::ofxtest
