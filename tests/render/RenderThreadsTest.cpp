#include "tests/support/Scene.h"

#include <gtest/gtest.h>

#include <thread>

namespace orbel {
namespace {

using test::Frame;
using test::Scene;

std::vector<Scene> scenes() {
    std::vector<Scene> all;
    const char* const shapes[] = {test::CIRCLE, test::OPEN_CURVE, test::TWO_OUTLINES};
    for (std::size_t i = 0; i < 6; ++i) {
        Scene scene(shapes[i % 3]);
        scene.format = test::RENDERED_FORMATS[i];
        scene.set(PARAM_THICKNESS, 2 + static_cast<double>(i)).set(PARAM_TRANSFER_MODE, 1);
        scene.set(PARAM_SCALE_X, i % 2 == 0 ? 1.0 : 0.7); // one shape, two scales
        scene.animate(PARAM_START, {0}, {50}).set(PARAM_MOTION_BLUR, i % 2 == 0 ? 0 : 1);
        all.push_back(scene);
    }
    return all;
}

TEST(RenderThreads, callsFromSeveralThreadsGiveThePicturesOfOne) {
    const std::vector<Scene> all = scenes();
    std::vector<Frame> expected;
    for (const Scene& scene : all) {
        expected.push_back(render(scene));
    }
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < all.size(); ++i) {
        threads.emplace_back([&, i] {
            for (int round = 0; round < 5; ++round) {
                const Frame frame = render(all[i]);
                EXPECT_EQ(frame.result, 0);
                EXPECT_TRUE(test::samePicture(frame.picture(), expected[i].picture(), 0.0)) << i;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

} // namespace
} // namespace orbel
