#include "app/ScenePlan.h"
#include "app/SceneReader.h"
#include "app/ShapeFolder.h"
#include "tests/frei0r/CoreFrame.h"
#include "tests/frei0r/LoadedPlugin.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace orbel::frei0r {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> goldenScenes() {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(ORBEL_GOLDEN_SCENES)) {
        if (entry.path().extension() == ".json") {
            names.push_back(entry.path().stem().string());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

class Frei0rGolden : public testing::TestWithParam<std::string> {};

TEST_P(Frei0rGolden, givesTheCoresFrames) {
    const std::string file = fs::path(ORBEL_GOLDEN_SCENES) / (GetParam() + ".json");
    app::Problems problems;
    app::prepareShapeTable();
    const std::optional<app::Scene> scene = app::readSceneFile(file, &problems);
    ASSERT_TRUE(scene);
    const std::optional<app::ScenePlan> plan = app::planScene(*scene, 1, &problems);
    ASSERT_TRUE(plan);
    const auto width = static_cast<unsigned>(plan->size.width);
    const auto height = static_cast<unsigned>(plan->size.height);
    const Pixels input = testPicture(width, height);
    Effect effect(width, height);
    effect.set("Scene", file);
    for (long frame = plan->frames.first; frame <= plan->frames.last; ++frame) {
        CoreScene core{plan->parameters,  plan->shapePath,    static_cast<double>(frame),
                       plan->pixelAspect, plan->renderScaleX, plan->renderScaleY};
        const double time = static_cast<double>(frame) / plan->frameRate.perSecond();
        EXPECT_EQ(effect.update(time, input), coreFrame(core, width, height, input)) << frame;
    }
}

INSTANTIATE_TEST_SUITE_P(Scenes, Frei0rGolden, testing::ValuesIn(goldenScenes()),
                         [](const auto& which) {
                             std::string name = which.param;
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

} // namespace
} // namespace orbel::frei0r
