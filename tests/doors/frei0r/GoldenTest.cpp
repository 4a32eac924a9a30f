#include "tests/doors/HostedScene.h"
#include "tests/doors/frei0r/CorePixels.h"
#include "tests/golden/GoldenScenes.h"

#include <gtest/gtest.h>

namespace orbel::frei0r {
namespace {

class Frei0rGolden : public testing::TestWithParam<std::string> {};

TEST_P(Frei0rGolden, givesTheCoresFrames) {
    const std::string file = golden::sceneFile(GetParam());
    const test::HostedScene scene(file);
    const ScenePlan& plan = scene.plan();
    const auto width = static_cast<unsigned>(plan.size.width);
    const auto height = static_cast<unsigned>(plan.size.height);
    const Pixels input = testPicture(width, height);
    Effect effect(width, height);
    effect.set("Scene", file);
    for (long frame = plan.frames.first; frame <= plan.frames.last; ++frame) {
        const double time = static_cast<double>(frame) / plan.frameRate.perSecond();
        EXPECT_EQ(effect.update(time, input), coreFrame(scene.core(frame), width, height, input))
            << frame;
    }
}

INSTANTIATE_TEST_SUITE_P(Scenes, Frei0rGolden, testing::ValuesIn(golden::sceneNames()),
                         [](const auto& scene) { return golden::testName(scene.param); });

} // namespace
} // namespace orbel::frei0r
