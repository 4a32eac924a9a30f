#include "doors/memory/PluginHost_MEMORY_Impl.h"
#include "params/InstanceData.h"
#include "render/RenderDispatch.h"
#include "scene/PixelFormats.h"
#include "tests/doors/fxplug/HostedScene.h"
#include "tests/golden/GoldenScenes.h"
#include "tests/support/Pictures.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <thread>

namespace orbel::fxtest {
namespace {

HostedScene sceneOf(const std::string& name) {
    return HostedScene(golden::sceneFile(name));
}

// What the in-memory host makes of the images, given as rows of whatever layout. Rasters over this
// host's own bitmaps have square pixels, whatever the bitmaps say.
void renderInMemory(ScenePlan& plan, double frame, const MemoryImage& input,
                    const MemoryImage& output) {
    Orbel_UserData shape;
    setUserDataPath(&shape, plan.shapePath.c_str());
    MemoryHostSettings settings;
    settings.frame = frame;
    settings.renderScaleX = plan.renderScaleX;
    settings.renderScaleY = plan.renderScaleY;
    RasterInfo target = output.info();
    target.pixelAspect = 1.0F;
    PluginHost_MEMORY_Impl host(input.info(), target, &plan.parameters, settings);
    host.setUserData(&shape);
    ASSERT_EQ(Render(&host), 0);
}

class GoldenThroughBundle : public testing::TestWithParam<std::tuple<std::string, Application>> {};

TEST_P(GoldenThroughBundle, givesTheBytesOfTheInMemoryHost) {
    HostedScene scene = sceneOf(std::get<0>(GetParam()));
    LoadedEffect effect(ORBEL_BUNDLE, std::get<1>(GetParam()));
    scene.applyTo(effect);
    for (const auto& [name, format] : namedFormats) {
        for (long frame = scene.plan().frames.first; frame <= scene.plan().frames.last; ++frame) {
            const MemoryImage expected = scene.image(format);
            const MemoryImage actual = scene.image(format);
            renderInMemory(scene.plan(), static_cast<double>(frame), scene.input(frame, format),
                           expected);
            ASSERT_TRUE(effect.render(scene.request(frame, Field::None),
                                      scene.input(frame, format).info(), actual.info()));
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

// A field in Final Cut is the odd lines of the frame that its doubled lines make.
class FieldThroughBundle : public testing::TestWithParam<std::tuple<const char*, Field>> {};

TEST_P(FieldThroughBundle, isEverySecondLineOfTheDoubledFrame) {
    const auto& [name, field] = GetParam();
    HostedScene scene = sceneOf(name);
    LoadedEffect effect(ORBEL_BUNDLE, Application::FinalCutPro);
    scene.applyTo(effect);
    for (const auto& [formatName, format] : namedFormats) {
        const MemoryImage picture = scene.input(1, format);
        const MemoryImage doubled = scene.image(format);
        const RasterInfo lines = fieldRows(picture.info(), field);
        for (int y = 0; y < 2 * lines.height; ++y) {
            std::memcpy(doubled.info().row(y), lines.row(y / 2), doubled.rowSize());
        }
        const FrameRequest request = scene.request(1, field);
        const MemoryImage expected = scene.image(format);
        renderInMemory(scene.plan(), request.frame, doubled, expected);
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

// Hosts render several instances at once; renders take turns and do not see one another.
TEST(SeveralInstances, drawTheirOwnFramesFromTheirOwnThreads) {
    const std::vector<std::string> names{"blur", "repeater", "taper-dynamic", "camera"};
    std::vector<std::string> results(names.size());
    std::vector<std::unique_ptr<LoadedEffect>> effects;
    for (std::size_t i = 0; i < names.size(); ++i) {
        effects.push_back(std::make_unique<LoadedEffect>(ORBEL_BUNDLE, Application::FinalCutPro));
    }
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < names.size(); ++i) {
        threads.emplace_back([&, i] {
            HostedScene scene = sceneOf(names[i]);
            scene.applyTo(*effects[i]);
            for (long frame = 0; frame < 3; ++frame) {
                const MemoryImage expected = scene.image(RF_ARGB32F);
                const MemoryImage actual = scene.image(RF_ARGB32F);
                renderInMemory(scene.plan(), static_cast<double>(frame),
                               scene.input(frame, RF_ARGB32F), expected);
                const bool done =
                    effects[i]->render(scene.request(frame, Field::None),
                                       scene.input(frame, RF_ARGB32F).info(), actual.info());
                results[i] +=
                    done && test::sameBytes(actual.info(), expected.info()) ? "same " : "not ";
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(results, std::vector<std::string>(names.size(), "same same same "));
}

// Motion hands over fields at full height: they are rendered as the frames they are.
TEST(FieldThroughMotion, isAFullFrame) {
    HostedScene scene = sceneOf("placement");
    LoadedEffect effect(ORBEL_BUNDLE, Application::Motion);
    scene.applyTo(effect);
    const MemoryImage expected = scene.image(RF_ARGB8);
    const MemoryImage actual = scene.image(RF_ARGB8);
    ScenePlan& plan = scene.plan();
    // The core sees a field's vertical scale there.
    plan.renderScaleY = 0.5;
    renderInMemory(plan, 2.5, scene.input(2, RF_ARGB8), expected);
    plan.renderScaleY = 1.0;
    ASSERT_TRUE(effect.render(scene.request(2, Field::Lower), scene.input(2, RF_ARGB8).info(),
                              actual.info()));
    EXPECT_TRUE(test::sameBytes(actual.info(), expected.info()));
}

} // namespace
} // namespace orbel::fxtest
