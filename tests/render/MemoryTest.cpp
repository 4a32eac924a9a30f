#include "render/RenderDispatch.h"

#include "tests/support/AllocationCounter.h"
#include "tests/support/Scene.h"

#include <gtest/gtest.h>

namespace orbel {
namespace {

TEST(Memory, aFrameNeedsItsRastersAndLittleElse) {
    constexpr std::size_t mebibyte = std::size_t{1} << 20;
    for (const bool blur : {false, true}) {
        test::Scene scene(test::TWO_OUTLINES);
        scene.width = 1920;
        scene.height = 1080;
        scene.set(PARAM_TRANSFER_MODE, 1).set(PARAM_ENABLE_REPEATER, 1);
        if (blur) {
            scene.animate(PARAM_START, {0}, {50}).set(PARAM_MOTION_BLUR, 1).set(PARAM_LEVELS, 2);
        }
        const std::size_t raster = std::size_t{1920} * 1080 * 4;
        const std::size_t before = test::AllocationCounter::restart();
        const MemoryImage input(scene.width, scene.height, RF_RGBA8, {});
        const MemoryImage output(scene.width, scene.height, RF_RGBA8, {});
        PluginHost_MEMORY_Impl host(input.info(), output.info(), &scene.parameters, {});
        host.setUserData(&scene.shape);
        ASSERT_EQ(Render(&host), 0);
        const std::size_t peak = test::AllocationCounter::peak() - before;
        EXPECT_GE(peak, (blur ? 3 : 2) * raster); // the counter counts
        EXPECT_LE(peak, (blur ? 3 : 2) * raster + 16 * mebibyte);
    }
}

} // namespace
} // namespace orbel
