#include "scene/PixelFormats.h"
#include "tests/doors/fxplug/HostedRequest.h"
#include "tests/golden/GoldenScenes.h"
#include "tests/support/Pictures.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

namespace orbel::fxtest {
namespace {

// The bundle completes its table of shapes once, when it is first loaded.
const int shapesAreSet = setenv("QUARVEX_ORBEL_SVG_DIR", ORBEL_SHAPES, 0);

test::HostedScene sceneOf(const std::string& name) {
    return test::HostedScene(golden::sceneFile(name));
}

// What the core makes of a frame. Rasters over this host's own bitmaps have square pixels, whatever
// the bitmaps say.
MemoryImage expectedFrame(const test::HostedScene& scene, double time, const MemoryImage& input) {
    test::CoreFrame core = scene.core(0);
    core.time = time;
    core.aspect = 1.0;
    return core.over(input.info());
}

class GoldenThroughBundle : public testing::TestWithParam<std::tuple<std::string, Application>> {};

TEST_P(GoldenThroughBundle, givesTheBytesOfTheInMemoryHost) {
    test::HostedScene scene = sceneOf(std::get<0>(GetParam()));
    LoadedEffect effect(ORBEL_BUNDLE, std::get<1>(GetParam()));
    apply(scene, effect);
    for (const auto& [name, format] : namedFormats) {
        for (long frame = scene.plan().frames.first; frame <= scene.plan().frames.last; ++frame) {
            const MemoryImage input = scene.input(frame, format);
            const MemoryImage expected = expectedFrame(scene, static_cast<double>(frame), input);
            const MemoryImage actual = scene.image(format);
            ASSERT_TRUE(
                effect.render(requestOf(scene, frame, Field::None), input.info(), actual.info()));
            EXPECT_TRUE(test::sameBytes(actual.info(), expected.info()))
                << name << " frame " << frame;
        }
    }
}

const char* const applicationNames[] = {"FinalCutPro", "Motion", "FinalCutExpress"};

INSTANTIATE_TEST_SUITE_P(Scenes, GoldenThroughBundle,
                         testing::Combine(testing::ValuesIn(golden::sceneNames()),
                                          testing::Values(Application::FinalCutPro,
                                                          Application::Motion,
                                                          Application::FinalCutExpress)),
                         [](const auto& which) {
                             const auto index = static_cast<std::size_t>(std::get<1>(which.param));
                             return golden::testName(std::get<0>(which.param)) + "_" +
                                    applicationNames[index];
                         });

TEST(PresetsThroughBundle, areFoundAndAnimated) {
    const test::TestFolder folder;
    test::HostedScene scene(folder.file("presets.json", R"({"orbel": 1, "size": [40, 30],
        "frames": [0, 1], "parameters": {"Thickness": 4, "Presets":
        {"keys": [[0, "Basic Star"], [1, "Moon"]]}}})"));
    LoadedEffect effect(ORBEL_BUNDLE, Application::Motion);
    apply(scene, effect);
    std::string frames[2];
    for (long frame = 0; frame < 2; ++frame) {
        const MemoryImage input = scene.input(frame, RF_ARGB8);
        const MemoryImage actual = scene.image(RF_ARGB8);
        ASSERT_TRUE(
            effect.render(requestOf(scene, frame, Field::None), input.info(), actual.info()));
        EXPECT_TRUE(test::sameBytes(
            actual.info(), expectedFrame(scene, static_cast<double>(frame), input).info()));
        frames[frame].assign(reinterpret_cast<const char*>(actual.info().data), 40 * 30 * 4);
    }
    EXPECT_NE(frames[0], frames[1]);
}

// A field in Final Cut is the odd lines of the frame that its doubled lines make.
class FieldThroughBundle : public testing::TestWithParam<std::tuple<const char*, Field>> {};

TEST_P(FieldThroughBundle, isEverySecondLineOfTheDoubledFrame) {
    const auto& [name, field] = GetParam();
    test::HostedScene scene = sceneOf(name);
    LoadedEffect effect(ORBEL_BUNDLE, Application::FinalCutPro);
    apply(scene, effect);
    for (const auto& [formatName, format] : namedFormats) {
        const MemoryImage picture = scene.input(1, format);
        const MemoryImage doubled = scene.image(format);
        const RasterInfo lines = fieldRows(picture.info(), field);
        for (int y = 0; y < 2 * lines.height; ++y) {
            std::memcpy(doubled.info().row(y), lines.row(y / 2), doubled.rowSize());
        }
        const FrameRequest request = requestOf(scene, 1, field);
        const MemoryImage expected = expectedFrame(scene, request.frame, doubled);
        const MemoryImage actual = scene.image(format);
        const RasterInfo result = fieldRows(actual.info(), field);
        ASSERT_TRUE(effect.render(request, lines, result));
        EXPECT_TRUE(test::sameBytes(result, fieldRows(expected.info(), Field::Lower)))
            << formatName;
    }
}

INSTANTIATE_TEST_SUITE_P(Scenes, FieldThroughBundle,
                         testing::Combine(testing::Values("blur", "camera", "placement",
                                                          "half-scale"),
                                          testing::Values(Field::Upper, Field::Lower)));

// Motion hands over fields at full height: they are rendered as the frames they are.
TEST(FieldThroughMotion, isAFullFrame) {
    test::HostedScene scene = sceneOf("placement");
    LoadedEffect effect(ORBEL_BUNDLE, Application::Motion);
    apply(scene, effect);
    const MemoryImage input = scene.input(2, RF_ARGB8);
    test::CoreFrame core = scene.core(2);
    core.time = 2.5;
    core.scaleY = 0.5; // as the core sees a field there
    const MemoryImage expected = core.over(input.info());
    const MemoryImage actual = scene.image(RF_ARGB8);
    ASSERT_TRUE(effect.render(requestOf(scene, 2, Field::Lower), input.info(), actual.info()));
    EXPECT_TRUE(test::sameBytes(actual.info(), expected.info()));
}

} // namespace
} // namespace orbel::fxtest
