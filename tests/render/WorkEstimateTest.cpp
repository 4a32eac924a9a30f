#include "render/WorkEstimate.h"

#include "render/RenderDispatch.h"
#include "tests/support/Scene.h"
#include "tests/support/TestHosts.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace orbel {
namespace {

using test::Scene;

// `progress` is asked at every hundredth evaluation, so a frame itself tells how many it took.
TEST(WorkEstimate, isRightWithinAFactorOfTwo) {
    const Scene thin =
        Scene(test::TWO_OUTLINES).set(PARAM_THICKNESS, 0.5).set(PARAM_ADJUST_STEP, 5);
    Scene repeated = thin;
    repeated.set(PARAM_ENABLE_REPEATER, 1).set(PARAM_INSTANCES, 3).set(PARAM_SYMMETRIC_DOUBLER, 1);
    Scene open = Scene(test::OPEN_CURVE).set(PARAM_THICKNESS, 0.3).set(PARAM_ADJUST_STEP, 5);
    for (Scene scene : {thin, repeated, open}) {
        const test::Frame frame(scene);
        test::SceneHost<test::FailingHost> host(&scene, frame);
        const WorkEstimate work = estimateWork(&host);
        EXPECT_EQ(host.progressCalls, 0);
        EXPECT_TRUE(host.held.empty());
        EXPECT_EQ(test::alphaSum(frame.picture()), 0.0);
        ASSERT_EQ(Render(&host), 0);
        const double taken = 100.0 * static_cast<double>(host.progressCalls);
        EXPECT_GT(work.evaluations, taken / 2);
        EXPECT_LT(work.evaluations, taken * 2);
        EXPECT_GT(work.stamps, work.evaluations / 8);
        EXPECT_LT(work.stamps, work.evaluations);
    }
}

// Measuring counts as one more copy, and stamps but for what is drawn.
TEST(WorkEstimate, growsWithWhatIsDrawn) {
    const auto estimated = [](Scene scene) {
        const test::Frame frame(scene);
        test::PlainHost host(&scene, frame);
        return estimateWork(&host);
    };
    const Scene plain = Scene(test::LINE).set(PARAM_THICKNESS, 2);
    const WorkEstimate one = estimated(plain);
    struct Row {
        std::vector<std::pair<int, double>> values;
        double stamps;
        double evaluations;
    };
    const Row rows[] = {
        {{{PARAM_END, 50}}, 0.5, 1},
        {{{PARAM_START, 25}}, 0.75, 1},
        {{{PARAM_INSTANCES, 3}}, 1, 1},
        {{{PARAM_ENABLE_REPEATER, 1}, {PARAM_INSTANCES, 3}, {PARAM_SYMMETRIC_DOUBLER, 0}}, 4, 2.5},
        {{{PARAM_ENABLE_REPEATER, 1}, {PARAM_INSTANCES, 3}, {PARAM_SYMMETRIC_DOUBLER, 1}}, 7, 4},
        {{{PARAM_ENABLE_REPEATER, 1}, {PARAM_INSTANCES, 0}}, 1, 1},
    };
    for (const Row& row : rows) {
        Scene scene = plain;
        for (const auto& [param, value] : row.values) {
            scene.set(param, value);
        }
        const WorkEstimate work = estimated(scene);
        EXPECT_NEAR(work.stamps / one.stamps, row.stamps, 1e-9) << row.stamps;
        EXPECT_NEAR(work.evaluations / one.evaluations, row.evaluations, 1e-9) << row.stamps;
    }
}

TEST(WorkEstimate, nothingIsNoWork) {
    Scene scene = Scene(test::CIRCLE).set(PARAM_END, 0);
    const test::Frame frame(scene);
    test::PlainHost host(&scene, frame);
    EXPECT_EQ(estimateWork(&host).seconds(), 0.0);
}

} // namespace
} // namespace orbel
