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

struct Draw {
    BrushStroke stroke;
    ProjectionSetup projection;

    /// Where the middle of the flat frame lands in space.
    [[nodiscard]] std::array<double, 3> middle() const {
        const Vx_Point4 in{32, 24, 0, 1};
        Vx_Point4 out;
        TransformPoint4(&in, &projection.layerFromPath, &out);
        return {out.x, out.y, out.z};
    }
};

class RecordingRenderer final : public SpanRenderer {
public:
    int drawSpan(void* /*path*/, OutlineChords* /*chords*/, const BrushStroke& stroke,
                 const ProjectionSetup& projection) override {
        draws.push_back({stroke, projection});
        return static_cast<long>(draws.size()) == failAt ? 42 : 0;
    }
    std::vector<Draw> draws;
    long failAt = -1;
};

/// Two open lines of 100 and 50 pixels.
class StrokeSample : public testing::Test {
protected:
    StrokeSample() {
        m_path.outlines = {polyline({{10, 20}, {110, 20}}, true),
                           polyline({{10, 20}, {60, 20}}, true)};
    }

    int draw(long time) {
        const test::Frame images(m_scene);
        test::SceneHost<test::FailingHost> host(&m_scene, images);
        host.setPathAPI(&m_path);
        host.memoryFails = m_memoryFails;
        const StrokeFrame frame(&host);
        FrameChords chords(&host);
        m_renderer.draws.clear();
        const int result = drawSample(frame, frame.now, time, m_renderer, &chords);
        EXPECT_EQ(m_path.checkedOut, 0);
        return result;
    }
    const std::vector<Draw>& draws() {
        EXPECT_EQ(draw(0), 0);
        return m_renderer.draws;
    }

    test::Scene m_scene{test::CIRCLE};
    FakePath m_path;
    RecordingRenderer m_renderer;
    bool m_memoryFails = false;
};

TEST_F(StrokeSample, handsEveryOutlineToTheRenderer) {
    m_scene.set(PARAM_FEATHER, 50).set(PARAM_THICKNESS, 8).set(PARAM_INTERNAL_OPACITY, 20);
    m_scene.set(PARAM_START, 25).set(PARAM_END, 75).set(PARAM_ADJUST_STEP, 50);
    m_scene.set(PARAM_Z_CLIP_FRONT, 3).set(PARAM_Z_CLIP_BACK, 4).set(PARAM_START_FADE, 5);
    m_scene.set(PARAM_VIEW, 4).set(PARAM_BEND, 0.5).set(PARAM_BEND_AXIS, 180);
    m_scene.set(PARAM_BEND_AROUND_CENTER, 1).set(PARAM_ZOOM, 77);
    ASSERT_EQ(draws().size(), 2U);
    for (std::size_t i = 0; i < 2; ++i) {
        const BrushStroke& stroke = m_renderer.draws[i].stroke;
        const double length = i == 0 ? 100 : 50;
        EXPECT_DOUBLE_EQ(stroke.thickness, 10); // widened by half the feather
        EXPECT_DOUBLE_EQ(stroke.feather, 0.5);
        EXPECT_DOUBLE_EQ(stroke.intensity, 51);
        EXPECT_DOUBLE_EQ(stroke.step, 0.2 * 0.5 * 10 * std::sqrt(2.0));
        EXPECT_DOUBLE_EQ(stroke.sampleLength, 1.0);
        EXPECT_NEAR(stroke.pathLength, length, 1.0);
        EXPECT_DOUBLE_EQ(stroke.startDist, 0.25 * stroke.pathLength);
        EXPECT_DOUBLE_EQ(stroke.endDist, 0.75 * stroke.pathLength);
        EXPECT_EQ(stroke.nearZ, 3);
        EXPECT_EQ(stroke.farZ, 4);
        EXPECT_EQ(stroke.fadeZ, 5);
        const ProjectionSetup& projection = m_renderer.draws[i].projection;
        EXPECT_EQ(projection.view, VIEW_BACK);
        EXPECT_EQ(projection.zoom, 77);
        EXPECT_EQ(projection.horizontalAspect, 1.0);
        EXPECT_EQ(projection.bend, 0.5);
        EXPECT_EQ(projection.bendAroundCenter, 1);
        EXPECT_DOUBLE_EQ(projection.bendAxis, 3.14159265358979323846);
    }
}

TEST_F(StrokeSample, exactStepsDivideTheOutline) {
    m_scene.set(PARAM_EXACT_STEP_MATCH, 1).set(PARAM_THICKNESS, 50);
    const double step = 0.2 * 50 * std::sqrt(2.0);
    for (const Draw& drawn : draws()) {
        const double count = std::floor(0.5 + drawn.stroke.pathLength / step);
        EXPECT_DOUBLE_EQ(drawn.stroke.step, drawn.stroke.pathLength / count);
    }
    m_scene.set(PARAM_THICKNESS, 1); // short steps shorten the walk's chords too
    EXPECT_LT(draws().at(0).stroke.sampleLength, 1.0);
    m_scene.set(PARAM_THICKNESS, 1000); // outlines shorter than half a step keep it
    EXPECT_DOUBLE_EQ(draws().at(0).stroke.step, 0.2 * 1000 * std::sqrt(2.0));
}

TEST_F(StrokeSample, taperIsSqueezedIntoTheStretchOrFixedToTheOutline) {
    m_scene.set(PARAM_ENABLE_TAPER, 1).set(PARAM_START, 20).set(PARAM_END, 60);
    m_scene.set(PARAM_TAPER_START, 25).set(PARAM_TAPER_END, 75).set(PARAM_START_THICKNESS, 10);
    m_scene.set(PARAM_END_THICKNESS, 30).set(PARAM_START_SHAPE, 2).set(PARAM_END_SHAPE, 3);
    struct Row {
        double compress;
        double sequential;
        std::array<double, 4> expected; // begin, start end, end begin, end: fractions
    };
    const Row rows[] = {
        {1, 0, {0.2, 0.3, 0.5, 0.6}}, {0, 0, {0, 0.25, 0.75, 1}}, {1, 1, {0, 0.25, 0.75, 1}}};
    for (const Row& row : rows) {
        m_scene.set(PARAM_COMPRESS_TO_FIT, row.compress);
        m_scene.set(PARAM_STROKE_SEQUENTIALLY, row.sequential);
        const BrushStroke& stroke = draws().at(0).stroke;
        const TaperStruct& taper = stroke.taper;
        EXPECT_NE(taper.enabled, 0);
        EXPECT_DOUBLE_EQ(taper.startTaperBegin, row.expected[0] * stroke.pathLength);
        EXPECT_DOUBLE_EQ(taper.startTaperEnd, row.expected[1] * stroke.pathLength);
        EXPECT_DOUBLE_EQ(taper.endTaperBegin, row.expected[2] * stroke.pathLength);
        EXPECT_DOUBLE_EQ(taper.endTaperEnd, row.expected[3] * stroke.pathLength);
        EXPECT_DOUBLE_EQ(taper.startThickness, 0.1);
        EXPECT_DOUBLE_EQ(taper.endThickness, 0.3);
        EXPECT_EQ(taper.startShape, 2);
        EXPECT_EQ(taper.endShape, 3);
        EXPECT_EQ(taper.stepAdjustMethod, STEP_DYNAMIC);
    }
}

TEST_F(StrokeSample, stretchesThatAreEmptyAreNotDrawn) {
    struct Row {
        double start;
        double end;
        double offset;
        double sequential;
        double loop;
        std::size_t draws;
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
        EXPECT_EQ(draws().size(), row.draws) << row.start << " " << row.end << " " << row.offset;
    }
}

TEST_F(StrokeSample, closedOutlinesWrapAsTheTaperSwitchesSay) {
    m_path.outlines = {test::circle(32, 24, 10)};
    m_scene.set(PARAM_LOOP, 1).set(PARAM_START, 50).set(PARAM_OFFSET, 25);
    for (const double taper : {0.0, 1.0}) {
        for (const double compress : {0.0, 1.0}) {
            m_scene.set(PARAM_ENABLE_TAPER, taper).set(PARAM_COMPRESS_TO_FIT, compress);
            EXPECT_EQ(draws().size(), taper == 1.0 && compress == 0.0 ? 2U : 1U);
        }
    }
}

TEST_F(StrokeSample, theRepeaterStepsAndFadesFromTheFirstCopyOn) {
    m_scene.set(PARAM_ENABLE_REPEATER, 1).set(PARAM_SYMMETRIC_DOUBLER, 0);
    m_scene.set(PARAM_INSTANCES, 3.9).set(PARAM_REPEATER_OPACITY, 50);
    m_scene.set(PARAM_DISPLACE_X, 10).set(PARAM_DISPLACE_Z, 0);
    m_path.outlines.resize(1);
    struct Row {
        double factor;
        double doubler;
        std::vector<double> x; // of the middle, stroke first
    };
    const Row rows[] = {
        {1, 0, {32, 42, 52, 62}},
        {2, 0, {32, 52, 92, 172}},
        {0.5, 0, {32, 37, 39.5, 40.75}},
        {1, 1, {32, 42, 52, 62, 22, 12, 2}},
        {2, 1, {32, 52, 92, 172, 12, -28, -108}},
    };
    for (const Row& row : rows) {
        m_scene.set(PARAM_REPEATER_FACTOR, row.factor).set(PARAM_SYMMETRIC_DOUBLER, row.doubler);
        ASSERT_EQ(draws().size(), row.x.size());
        for (std::size_t i = 0; i < row.x.size(); ++i) {
            const Draw& drawn = m_renderer.draws[i];
            EXPECT_NEAR(drawn.middle()[0], row.x[i], 1e-9) << row.factor << " " << i;
            const double fades = i == 0 ? 0.0 : static_cast<double>((i - 1) % 3 + 1);
            EXPECT_DOUBLE_EQ(drawn.stroke.intensity, 255 * std::pow(0.5, fades)) << i;
        }
    }
}

TEST_F(StrokeSample, copiesTurnAndScaleAboutTheMiddle) {
    m_scene.set(PARAM_ENABLE_REPEATER, 1).set(PARAM_INSTANCES, 1);
    m_scene.set(PARAM_DISPLACE_Z, 0).set(PARAM_REPEATER_SCALE, 50);
    m_scene.set(PARAM_REPEATER_ROTATION_Z, 90);
    m_path.outlines.resize(1);
    for (const double order : {0.0, 1.0}) {
        m_scene.set(PARAM_ORDER, order);
        ASSERT_EQ(draws().size(), 3U);
        // A point 8 right of the middle: half as far, a quarter turn on, and back in the mirror.
        const double expectedY[] = {24, 28, 20};
        for (std::size_t i = 0; i < 3; ++i) {
            const Vx_Point4 in{40, 24, 0, 1};
            Vx_Point4 out;
            TransformPoint4(&in, &m_renderer.draws[i].projection.layerFromPath, &out);
            EXPECT_NEAR(out.x, i == 0 ? 40 : 32, 1e-9);
            EXPECT_NEAR(out.y, expectedY[i], 1e-9);
        }
    }
}

TEST_F(StrokeSample, theRepeaterNeedsItsSwitchAndAtLeastOneInstance) {
    m_path.outlines.resize(1);
    m_scene.set(PARAM_SYMMETRIC_DOUBLER, 0);
    struct Row {
        double on;
        double instances;
        std::size_t draws;
    };
    const Row rows[] = {{0, 5, 1}, {1, 0.9, 1},     {1, -3, 1},
                        {1, 1, 2}, {1, 1e30, 1001}, {1, std::nan(""), 1}};
    for (const Row& row : rows) {
        m_scene.set(PARAM_ENABLE_REPEATER, row.on).set(PARAM_INSTANCES, row.instances);
        EXPECT_EQ(draws().size(), row.draws) << row.instances;
    }
}

TEST_F(StrokeSample, theFirstErrorEndsTheSample) {
    m_scene.set(PARAM_ENABLE_REPEATER, 1);
    for (const long failAt : {1, 2, 3, 7, 10}) {
        m_renderer.failAt = failAt;
        EXPECT_EQ(draw(0), 42);
        EXPECT_EQ(m_renderer.draws.size(), static_cast<std::size_t>(failAt));
    }
}

TEST_F(StrokeSample, hostsThatCannotDeliverEndTheSample) {
    m_path.checkoutStatus = 5;
    EXPECT_EQ(draw(0), 5);
    m_path.checkoutStatus = 0;
    m_memoryFails = true;
    EXPECT_EQ(draw(0), 1);
    EXPECT_TRUE(m_renderer.draws.empty());
}

TEST_F(StrokeSample, outlinesThatAreMissingAreSkipped) {
    m_path.outlines.push_back(polyline({{10, 20}, {40, 20}}, true));
    m_path.missing = {3};
    EXPECT_EQ(draws().size(), 2U);
    m_path.outlines.clear();
    m_path.missing.clear();
    EXPECT_TRUE(draws().empty());
}

TEST_F(StrokeSample, outlinesAreTakenAtTheSampleTime) {
    m_path.animate = [](test::FakeOutline& outline, long time) {
        outline = polyline({{10, 20}, {10.0 + static_cast<double>(time), 20}}, true);
    };
    EXPECT_EQ(draw(80), 0);
    EXPECT_NEAR(m_renderer.draws.at(0).stroke.pathLength, 80, 1.0);
}

} // namespace
} // namespace orbel
