#include "render/WorkEstimate.h"

#include "render/RenderDispatch.h"
#include "tests/support/Scene.h"
#include "tests/support/TestHosts.h"

#include <gtest/gtest.h>

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

TEST(WorkEstimate, nothingIsNoWork) {
    Scene scene = Scene(test::CIRCLE).set(PARAM_END, 0);
    const test::Frame frame(scene);
    test::PlainHost host(&scene, frame);
    EXPECT_EQ(estimateWork(&host).seconds(), 0.0);
}

} // namespace
} // namespace orbel
