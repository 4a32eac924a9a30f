#include "doors/ofx/platform/OfxNames.h"
#include "tests/doors/HostedScene.h"
#include "tests/doors/ofx/Stage.h"
#include "tests/golden/GoldenScenes.h"

namespace orbel::ofxtest {
namespace {

class GoldenThroughOfx : public testing::TestWithParam<std::string> {};

TEST_P(GoldenThroughOfx, givesTheCoresBytesAtEveryDepth) {
    TestHost host;
    const LoadedPlugin plugin(ORBEL_OFX_BINARY, &host);
    test::HostedScene scene(golden::sceneFile(GetParam()));
    const ScenePlan& plan = scene.plan();
    for (const RasterFormat format : {RF_RGBA8, RF_RGBA16, RF_RGBA32F}) {
        for (long frame = plan.frames.first; frame <= plan.frames.last; ++frame) {
            Shot shot;
            static_cast<test::CoreFrame&>(shot) = scene.core(frame);
            shot.format = format;
            shot.frame = {0, 0, plan.size.width, plan.size.height};
            const MemoryImage input = scene.input(frame, format);
            Stage stage(&plugin, shot, Layouts(shot));
            stage.source.takeFrom(input.info());
            EXPECT_EQ(stage.render(), ofx::STAT_OK);
            EXPECT_TRUE(shows(stage.output, shot.rendered(input).info(), shot.frame, shot.frame))
                << format << " frame " << frame;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Scenes, GoldenThroughOfx, testing::ValuesIn(golden::sceneNames()),
                         [](const auto& scene) { return golden::testName(scene.param); });

} // namespace
} // namespace orbel::ofxtest
