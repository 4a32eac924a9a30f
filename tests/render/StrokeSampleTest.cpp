#include "render/StrokeSample.h"

#include "tests/support/FakePath.h"
#include "tests/support/Scene.h"
#include "tests/support/TestHosts.h"

#include <gtest/gtest.h>

#include <cmath>

namespace orbel {
namespace {

using test::FakePath;
using test::polyline;

/// Counts the stretches that it is given.
class CountingRenderer final : public SpanRenderer {
public:
    int drawSpan(void* /*path*/, OutlineChords* /*chords*/, const BrushStroke& /*stroke*/,
                 const ProjectionSetup& /*projection*/) override {
        return ++spans == failAt ? 42 : 0;
    }
    long spans = 0;
    long failAt = -1;
};

/// Two open lines of 100 and 50 pixels.
class StrokeSample : public testing::Test {
protected:
    StrokeSample() {
        m_path.outlines = {polyline({{10, 20}, {110, 20}}, true),
                           polyline({{10, 20}, {60, 20}}, true)};
    }

    int draw() {
        const test::Frame images(m_scene);
        test::SceneHost<test::FailingHost> host(&m_scene, images);
        host.setPathAPI(&m_path);
        host.memoryFails = m_memoryFails;
        host.lockFails = m_lockFails;
        const StrokeFrame frame(&host);
        FrameChords chords(&host);
        m_renderer.spans = 0;
        const int result = drawSample(frame, frame.args, 0, m_renderer, &chords);
        EXPECT_EQ(m_path.checkedOut, 0);
        return result;
    }
    /// How many stretches a sample has.
    long spans() {
        EXPECT_EQ(draw(), 0);
        return m_renderer.spans;
    }

    test::Scene m_scene{test::CIRCLE};
    FakePath m_path;
    CountingRenderer m_renderer;
    bool m_memoryFails = false;
    bool m_lockFails = false;
};

TEST_F(StrokeSample, stretchesThatAreEmptyAreNotDrawn) {
    struct Row {
        double start;
        double end;
        double offset;
        double sequential;
        double loop;
        long spans;
    };
    const Row rows[] = {
        {0, 100, 0, 0, 0, 2},  {50, 50, 0, 0, 0, 0},    {60, 40, 0, 0, 0, 0},
        {0, 50, -50, 0, 0, 0}, {0, 50, -49, 0, 0, 2},   {0, 100, 101, 0, 0, 0},
        {0, 50, 0, 1, 0, 1},   {70, 100, 0, 1, 0, 1},   {0, 100, 0, 1, 0, 2},
        {50, 90, 30, 0, 1, 4}, {50, 90, 30, 1, 1, 1},   {50, 90, 1030, 0, 1, 4},
        {50, 90, 60, 0, 1, 2}, {0, 100, -100, 0, 0, 0},
    };
    for (const Row& row : rows) {
        m_scene.set(PARAM_START, row.start).set(PARAM_END, row.end).set(PARAM_OFFSET, row.offset);
        m_scene.set(PARAM_STROKE_SEQUENTIALLY, row.sequential).set(PARAM_LOOP, row.loop);
        EXPECT_EQ(spans(), row.spans) << row.start << " " << row.end << " " << row.offset;
    }
}

TEST_F(StrokeSample, anglesAreDegreesAndPercentagesFractions) {
    const test::Frame images(m_scene);
    for (const int param :
         {PARAM_ROTATION_X, PARAM_ROTATION_Y, PARAM_ROTATION_Z, PARAM_REPEATER_ROTATION_X,
          PARAM_REPEATER_ROTATION_Y, PARAM_REPEATER_ROTATION_Z, PARAM_BEND_AXIS}) {
        m_scene.set(param, 180);
    }
    for (const int param : {PARAM_FEATHER, PARAM_INTERNAL_OPACITY, PARAM_ADJUST_STEP}) {
        m_scene.set(param, 50);
    }
    m_scene.set(PARAM_THICKNESS, 8);
    test::PlainHost host(&m_scene, images);
    const StrokeFrame frame(&host);
    const SampleValues v = sampleValues(frame, frame.args);
    for (const double angle : {v.rotation.x, v.rotation.y, v.rotation.z, v.instanceRotation.x,
                               v.instanceRotation.y, v.instanceRotation.z, v.bendAxis}) {
        EXPECT_NEAR(angle, std::acos(-1.0), 1e-15);
    }
    EXPECT_EQ(v.thickness, 10.0);
    EXPECT_EQ(v.drawingOpacity, 127.5);
    EXPECT_NEAR(v.globalStep, std::sqrt(2.0), 1e-15);
    EXPECT_EQ(v.sampleLength, 1.0);
}

TEST_F(StrokeSample, theRepeaterNeedsItsSwitchAndAtLeastOneInstance) {
    m_path.outlines.resize(1);
    m_scene.set(PARAM_SYMMETRIC_DOUBLER, 0);
    struct Row {
        double on;
        double instances;
        long spans;
    };
    const Row rows[] = {{0, 5, 1}, {1, 0.9, 1},     {1, -3, 1},
                        {1, 1, 2}, {1, 1e30, 1001}, {1, std::nan(""), 1}};
    for (const Row& row : rows) {
        m_scene.set(PARAM_ENABLE_REPEATER, row.on).set(PARAM_INSTANCES, row.instances);
        EXPECT_EQ(spans(), row.spans) << row.instances;
    }
}

TEST_F(StrokeSample, theFirstErrorEndsTheSample) {
    m_scene.set(PARAM_ENABLE_REPEATER, 1);
    for (const long failAt : {1, 2, 3, 7, 10}) {
        m_renderer.failAt = failAt;
        EXPECT_EQ(draw(), 42);
        EXPECT_EQ(m_renderer.spans, failAt);
    }
}

TEST_F(StrokeSample, hostsThatCannotDeliverEndTheSample) {
    m_path.checkoutStatus = 5;
    EXPECT_EQ(draw(), 5);
    m_path.checkoutStatus = 0;
    for (bool* const fails : {&m_memoryFails, &m_lockFails}) {
        *fails = true;
        EXPECT_EQ(draw(), 1);
        EXPECT_EQ(m_renderer.spans, 0);
        *fails = false;
    }
}

TEST_F(StrokeSample, outlinesThatAreMissingAreSkipped) {
    m_path.outlines.push_back(polyline({{10, 20}, {40, 20}}, true));
    m_path.missing = {3};
    EXPECT_EQ(spans(), 2);
    m_path.outlines.clear();
    m_path.missing.clear();
    EXPECT_EQ(spans(), 0);
}

} // namespace
} // namespace orbel
