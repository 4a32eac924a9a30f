#include "render/StrokeFrame.h"

#include "tests/support/FakePath.h"
#include "tests/support/Scene.h"
#include "tests/support/TestHosts.h"

#include <gtest/gtest.h>

namespace orbel {
namespace {

using test::Scene;

class StrokeFrameTest : public testing::Test {
protected:
    StrokeFrameTest() {
        m_path.outlines = {test::circle(32, 24, 10)};
        m_scene.set(PARAM_MOTION_BLUR, 1);
    }

    SamplePlan plan() {
        const test::Frame images(m_scene);
        test::PlainHost host(&m_scene, images);
        host.setPathAPI(&m_path);
        int error = -1;
        const SamplePlan result = StrokeFrame(&host).planSamples(&error);
        EXPECT_EQ(m_path.checkedOut, 0);
        EXPECT_LE(error, 0);
        return result;
    }

    Scene m_scene{test::CIRCLE};
    test::FakePath m_path;
};

TEST_F(StrokeFrameTest, samplesAreSpreadOverTheShutter) {
    struct Row {
        double mode;
        double angle;
        double phase;
        double levels;
        SamplePlan expected; // blur, levels, step, first, last
        long secondTime;
    };
    const Row rows[] = {
        {1, 360, 0, 8, {true, 8, 12.5, 500, 587}, 512},
        {1, 180, 0, 8, {true, 8, 6.25, 500, 543}, 506},
        {1, 720, -90, 3, {true, 3, 200 / 3.0, 475, 608}, 541},
        {1, 360, 1, 2, {true, 2, 50, 500, 550}, 550},
        {1, 360, -1, 2, {true, 2, 50, 499, 549}, 549},
        {1, 360, 0, 2.5, {true, 3, 100 / 3.0, 500, 566}, 533},
        {1, 360, 0, 1.5, {true, 2, 50, 500, 550}, 550},
        {1, 360, 0, 1.4, {false, 1, 0, 500, 500}, 500},
        {1, 0, 90, 8, {false, 1, 0, 525, 525}, 525},
        {0, 360, 90, 8, {false, 1, 0, 500, 500}, 500},
        {1, 360, 0, 1e9, {true, 64, 100 / 64.0, 500, 598}, 501},
        {1, 360, 0, -5, {false, 1, 0, 500, 500}, 500},
    };
    m_scene.settings.frame = 5;
    m_scene.animate(PARAM_START, {0}, {50});
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << row.angle << " " << row.phase << " " << row.levels);
        m_scene.set(PARAM_MOTION_BLUR, row.mode);
        m_scene.set(PARAM_SHUTTER_ANGLE, row.angle).set(PARAM_SHUTTER_PHASE, row.phase);
        m_scene.set(PARAM_LEVELS, row.levels);
        const SamplePlan actual = plan();
        EXPECT_EQ(actual.blur, row.expected.blur);
        EXPECT_EQ(actual.levels, row.expected.levels);
        EXPECT_DOUBLE_EQ(actual.sampleStep, row.expected.sampleStep);
        EXPECT_EQ(actual.firstTime, row.expected.firstTime);
        EXPECT_EQ(actual.lastTime, row.expected.lastTime);
        EXPECT_EQ(actual.time(0), row.expected.firstTime);
        EXPECT_EQ(actual.time(1), row.expected.blur ? row.secondTime : row.expected.firstTime);
    }
}

TEST_F(StrokeFrameTest, aFrameIsStillUnlessAnAnimatedValueMoves) {
    EXPECT_FALSE(plan().blur);
    const int animated[] = {3,  4,  5,  7,  8,  9,  10, 11, 17, 18, 19, 20, 21, 22, 23,
                            24, 27, 28, 30, 31, 32, 34, 37, 38, 50, 51, 61, 63, 64, 68,
                            69, 70, 71, 72, 73, 75, 76, 53, 54, 55, 56, 57, 58};
    const int constant[] = {12, 15, 16, 35, 36, 39, 41, 42, 43, 44,
                            52, 60, 62, 66, 67, 77, 78, 79, 81, 82};
    const auto movesWith = [&](int param) {
        const ParameterStore former = m_scene.parameters;
        ParameterValue value = findParameter(param)->defaults;
        ParameterValue later = value;
        later[0] += 0.5;
        m_scene.animate(param, value, later);
        const bool blur = plan().blur;
        m_scene.parameters = former;
        return blur;
    };
    for (const int param : animated) {
        EXPECT_TRUE(movesWith(param)) << param;
    }
    for (const int param : constant) {
        EXPECT_FALSE(movesWith(param)) << param;
    }
}

TEST_F(StrokeFrameTest, aMovingOutlineIsNotStill) {
    m_path.animate = [](test::FakeOutline& outline, long time) {
        outline.vertices[2].tanInX += time > 50 ? 1e-9 : 0.0;
    };
    EXPECT_TRUE(plan().blur);
}

// What moves and comes back to the same place at the last sample counts as still.
TEST_F(StrokeFrameTest, onlyTheEndsOfTheShutterAreCompared) {
    m_scene.set(PARAM_LEVELS, 2);
    m_scene.parameters.setKeys(
        PARAM_START,
        {{0, {0}, Easing::Linear}, {0.25, {50}, Easing::Linear}, {0.5, {0}, Easing::Linear}});
    EXPECT_FALSE(plan().blur);
}

TEST_F(StrokeFrameTest, drawsNothingOnlyWhenNoSampleCould) {
    struct Row {
        double start;
        double end;
        double blur;
        bool nothing;
    };
    const Row rows[] = {{0, 100, 0, false}, {50, 50, 0, true}, {60, 50, 0, true},
                        {60, 50, 1, false}, {0, 0, 0, true},   {0, 1e-9, 0, false}};
    for (const Row& row : rows) {
        m_scene.set(PARAM_START, row.start).set(PARAM_END, row.end);
        m_scene.set(PARAM_MOTION_BLUR, row.blur);
        const test::Frame images(m_scene);
        test::PlainHost host(&m_scene, images);
        EXPECT_EQ(StrokeFrame(&host).drawsNothing(), row.nothing) << row.start;
    }
}

TEST(CameraWarnings, wordingsAreFixed) {
    const Scene scene(test::CIRCLE);
    const test::Frame images(scene);
    ParameterStore parameters;
    test::FailingHost host(images.input.info(), images.output.info(), &parameters, {});
    warnOfMissingCamera(&host, CameraWarning::Planning, 0.0);
    warnOfMissingCamera(&host, CameraWarning::Drawing, 10.0);
    warnOfMissingCamera(&host, CameraWarning::Planning, -1.0);
    warnOfMissingCamera(&host, CameraWarning::Drawing, -1.0);
    const char* const early =
        "Could not find camera at current time.\nShutter Phase is negative - this requires a "
        "camera that starts\none frame ahead of the layer that Orbel is applied to.";
    EXPECT_EQ(host.warnings,
              (std::vector<std::string>{"Could not find camera at current time.\n"
                                        "Choose Layer>New>Camera to create a camera.",
                                        "Could not find camera at current time.\n"
                                        "Choose Layer>New Camera to create a camera.",
                                        early, early}));
}

} // namespace
} // namespace orbel
