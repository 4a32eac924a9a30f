#include "app/SceneOptions.h"

#include "params/ParameterTable.h"
#include "tests/media/MediaFixtures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orbel::app {
namespace {

using testing::HasSubstr;

Scene applied(const SceneOptions& options, Scene scene) {
    Problems problems;
    applyOptions(options, &scene, &problems);
    for (const Problem& problem : problems.items()) {
        ADD_FAILURE() << sentence(problem);
    }
    return scene;
}

ParameterValue constantOf(const Scene& scene, int id) {
    return scene.parameters.at(id).front().value;
}

TEST(SceneOptions, describeAWholeScene) {
    SceneOptions options;
    options.shape = "Basic Star";
    options.input = "#ff800000";
    options.size = "1280x720";
    options.fps = "29.97";
    options.frames = "2-59";
    options.format = "argb32f";
    options.set = {"Thickness=14", "Camera/Zoom=500", "Color=#00ff80", "7=0.25/-1",
                   "Loop=On",      "41=On",           "35=2"};
    options.animate = {"End=0:0,45:100", "Camera/XY Position=0:0.5/0.5:ease,9:1/2"};
    const Scene scene = applied(options, {});
    EXPECT_EQ(constantOf(scene, PARAM_PRESETS)[0], 3);
    const auto color = std::get<ColorInput>(scene.input).rgba;
    EXPECT_EQ(color, (std::array<double, 4>{1, 128 / 255.0, 0, 0}));
    EXPECT_EQ(scene.size, (FrameSize{1280, 720}));
    EXPECT_EQ(scene.framesPerSecond, 29.97);
    EXPECT_EQ(scene.frames, (FrameRange{2, 59}));
    EXPECT_EQ(scene.format, RF_ARGB32F);
    EXPECT_EQ(constantOf(scene, PARAM_THICKNESS)[0], 14);
    EXPECT_EQ(constantOf(scene, PARAM_ZOOM)[0], 500);
    EXPECT_EQ(constantOf(scene, PARAM_COLOR), (ParameterValue{0, 1, 128 / 255.0}));
    EXPECT_EQ(constantOf(scene, PARAM_POSITION_XY), (ParameterValue{0.25, -1}));
    EXPECT_EQ(constantOf(scene, PARAM_LOOP)[0], 1);
    EXPECT_EQ(constantOf(scene, PARAM_MOTION_BLUR)[0], 1);
    EXPECT_EQ(constantOf(scene, PARAM_TRANSFER_MODE)[0], 2);
    const auto& end = scene.parameters.at(PARAM_END);
    ASSERT_EQ(end.size(), 2U);
    EXPECT_EQ(end[1].frame, 45);
    EXPECT_EQ(end[1].value[0], 100);
    const auto& camera = scene.parameters.at(PARAM_CAMERA_XY);
    EXPECT_EQ(camera[0].easing, Easing::Ease);
    EXPECT_EQ(camera[1].value, (ParameterValue{1, 2}));
}

TEST(SceneOptions, replaceWhatTheSceneSays) {
    Scene scene;
    scene.shape = "old.svg";
    scene.frames = {0, 99};
    scene.parameters[PARAM_THICKNESS] = {{0, {1}, Easing::Linear}, {9, {2}, Easing::Linear}};
    scene.parameters[PARAM_FEATHER] = {{0, {50}, Easing::Linear}};
    SceneOptions options;
    options.shape = "Basic Circle";
    options.frames = "7";
    options.set = {"4=5"};
    const Scene result = applied(options, scene);
    EXPECT_FALSE(result.shape);
    EXPECT_EQ(result.frames, (FrameRange{7, 7}));
    EXPECT_EQ(result.parameters.at(PARAM_THICKNESS).size(), 1U);
    EXPECT_EQ(constantOf(result, PARAM_FEATHER)[0], 50);
}

TEST(SceneOptions, takeAFileForAShape) {
    const TestFolder folder;
    const std::string file = folder / "Basic Star";
    writeBytes(file, "<svg/>");
    Scene scene;
    scene.parameters[PARAM_PRESETS] = {{0, {5}, Easing::Linear}};
    SceneOptions options;
    options.shape = file;
    const Scene result = applied(options, scene);
    EXPECT_EQ(result.shape, file);
    EXPECT_EQ(constantOf(result, PARAM_PRESETS)[0], 0);
}

struct BadOption {
    const char* name;
    void (*write)(SceneOptions&);
    std::string place;
    std::string message;
    std::string remedy;
};

void PrintTo(const BadOption& bad, std::ostream* out) {
    *out << bad.name;
}

class BadOptionTest : public testing::TestWithParam<BadOption> {};

TEST_P(BadOptionTest, isReportedWithPlaceAndRemedy) {
    SceneOptions options;
    GetParam().write(options);
    Scene scene;
    scene.input = RawInput{"a.raw"};
    Problems problems;
    applyOptions(options, &scene, &problems);
    ASSERT_EQ(problems.items().size(), 1U);
    const Problem& problem = problems.items().front();
    EXPECT_EQ(problem.file, "command line");
    EXPECT_EQ(problem.place, GetParam().place);
    EXPECT_THAT(problem.message, HasSubstr(GetParam().message));
    EXPECT_THAT(problem.remedy, HasSubstr(GetParam().remedy));
}

const std::vector<BadOption> badOptions{
    {"shape", [](SceneOptions& o) { o.shape = "Basic Stra"; }, "--shape", "neither", "Basic Star"},
    {"colour", [](SceneOptions& o) { o.input = "#12345"; }, "--input", "no colour", "#rrggbb"},
    {"size", [](SceneOptions& o) { o.size = "12"; }, "--size", "\"12\"", "WIDTHxHEIGHT"},
    {"sizeRange", [](SceneOptions& o) { o.size = "0x5"; }, "--size", "0 x 5", "32767"},
    {"fps", [](SceneOptions& o) { o.fps = "fast"; }, "--fps", "\"fast\"", "25"},
    {"fpsRange", [](SceneOptions& o) { o.fps = "-3"; }, "--fps", "-3", "25"},
    {"frames", [](SceneOptions& o) { o.frames = "1-2-3"; }, "--frames", "1-2-3", "FIRST-LAST"},
    {"framesOrder", [](SceneOptions& o) { o.frames = "9-2"; }, "--frames", "before", "smaller"},
    {"format", [](SceneOptions& o) { o.format = "rgba"; }, "--format", "rgba", "rgba8"},
    {"rawFormat", [](SceneOptions& o) { o.format = "argb8"; }, "--format", "raw input", "leave"},
    {"noEquals", [](SceneOptions& o) { o.set = {"Thickness"}; }, "--set", "no \"=\"", "NAME=VALUE"},
    {"unknown", [](SceneOptions& o) { o.set = {"Thick=1"}; }, "--set Thick", "no parameter",
     "Thickness"},
    {"range", [](SceneOptions& o) { o.set = {"4=0"}; }, "--set 4", "0 is outside", "0.2"},
    {"text", [](SceneOptions& o) { o.set = {"4=1mm"}; }, "--set 4", "string", "number"},
    {"twice",
     [](SceneOptions& o) {
         o.set = {"4=1", "Thickness=2"};
     },
     "--set Thickness", "twice", "one"},
    {"key", [](SceneOptions& o) { o.animate = {"End=0:1,5"}; }, "--animate End", "\"5\" is no key",
     "FRAME:VALUE"},
    {"keyOrder", [](SceneOptions& o) { o.animate = {"End=5:1,0:2"}; }, "--animate End/keys/1",
     "frame 0", "ascending"},
};

INSTANTIATE_TEST_SUITE_P(Table, BadOptionTest, testing::ValuesIn(badOptions),
                         [](const auto& test) { return std::string(test.param.name); });

} // namespace
} // namespace orbel::app
