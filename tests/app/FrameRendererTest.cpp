#include "app/FrameRenderer.h"

#include "app/FrameInput.h"
#include "params/ParameterTable.h"

#include <gtest/gtest.h>

#include <cstring>

namespace orbel::app {
namespace {

ScenePlan starPlan() {
    ScenePlan plan;
    plan.size = {64, 48};
    plan.color.rgba = {0.2, 0.3, 0.5, 1.0};
    plan.parameters.set(PARAM_PRESETS, 3);
    plan.parameters.set(PARAM_THICKNESS, 4);
    plan.parameters.set(PARAM_TRANSFER_MODE, 1);
    return plan;
}

std::string bytesOf(const MemoryImage& image) {
    std::string bytes;
    for (int y = 0; y < image.info().height; ++y) {
        bytes.append(reinterpret_cast<const char*>(image.info().row(y)), image.rowSize());
    }
    return bytes;
}

std::string rendered(ScenePlan& plan, long frame) {
    FrameRenderer renderer(&plan, {}, {});
    const MemoryImage input = renderer.makeImage();
    const MemoryImage output = renderer.makeImage();
    FrameInput(&plan).fill(frame, input);
    EXPECT_EQ(renderer.render(frame, input, output), 0);
    return bytesOf(output);
}

TEST(FrameRenderer, drawsTheChosenShape) {
    ScenePlan star = starPlan();
    ScenePlan none = starPlan();
    none.parameters.set(PARAM_PRESETS, 0);
    ScenePlan file = starPlan();
    file.parameters.set(PARAM_PRESETS, 0);
    file.shapePath = ORBEL_SOURCE_DIR "/resources/Tessaly/SVG/Basic Star.svg";
    EXPECT_NE(rendered(star, 0), rendered(none, 0));
    EXPECT_EQ(rendered(star, 0), rendered(file, 0));
}

TEST(FrameRenderer, overwritesWhatTheOutputHeld) {
    for (const int mode : {0, 1}) {
        ScenePlan plan = starPlan();
        plan.parameters.set(PARAM_TRANSFER_MODE, mode);
        const std::string expected = rendered(plan, 0);
        FrameRenderer renderer(&plan, {}, {});
        const MemoryImage input = renderer.makeImage();
        const MemoryImage output = renderer.makeImage();
        FrameInput(&plan).fill(0, input);
        for (int y = 0; y < output.info().height; ++y) {
            std::memset(output.info().row(y), 0xcd, output.rowSize());
        }
        EXPECT_EQ(renderer.render(0, input, output), 0);
        EXPECT_EQ(bytesOf(output), expected);
    }
}

TEST(FrameRenderer, readsParametersAtTheFrame) {
    ScenePlan animated = starPlan();
    animated.parameters.setKeys(PARAM_END, {{0, {0}, Easing::Linear}, {10, {100}, Easing::Linear}});
    ScenePlan half = starPlan();
    half.parameters.set(PARAM_END, 50);
    EXPECT_EQ(rendered(animated, 5), rendered(half, 0));
    EXPECT_NE(rendered(animated, 6), rendered(half, 0));
}

TEST(FrameRenderer, passesScaleAndPixelAspectOn) {
    ScenePlan plain = starPlan();
    ScenePlan scaled = starPlan();
    scaled.renderScaleX = 0.5;
    ScenePlan wide = starPlan();
    wide.pixelAspect = 2.0;
    EXPECT_NE(rendered(plain, 0), rendered(scaled, 0));
    EXPECT_NE(rendered(plain, 0), rendered(wide, 0));
}

TEST(FrameRenderer, endsWhenAborted) {
    ScenePlan plan = starPlan();
    plan.size = {640, 480};
    FrameRenderer renderer(&plan, [] { return true; }, {});
    const MemoryImage input = renderer.makeImage();
    const MemoryImage output = renderer.makeImage();
    EXPECT_EQ(renderer.render(0, input, output), FrameRenderer::abortCode);
}

} // namespace
} // namespace orbel::app
