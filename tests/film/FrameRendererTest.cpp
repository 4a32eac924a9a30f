#include "film/FrameRenderer.h"

#include "film/FrameInput.h"
#include "params/ParameterTable.h"

#include <gtest/gtest.h>

#include <cstring>

namespace orbel {
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

TEST(FrameRenderer, endsWhenAborted) {
    ScenePlan plan = starPlan();
    plan.size = {640, 480};
    FrameRenderer renderer(&plan, [] { return true; }, {});
    const MemoryImage input = renderer.makeImage();
    const MemoryImage output = renderer.makeImage();
    EXPECT_EQ(renderer.render(0, input, output), FrameRenderer::abortCode);
}

} // namespace
} // namespace orbel
