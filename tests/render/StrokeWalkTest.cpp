#include "render/StrokeWalk.h"

#include "tests/support/FakePath.h"
#include "tests/support/TestHosts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace orbel {
namespace {

using test::FakeOutline;
using test::polyline;

constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

class RecordingSink final : public StampSink {
public:
    void stamp(const Stamp& s) override { stamps.push_back(s); }
    std::vector<Stamp> stamps;
};

class CountingSink final : public StampSink {
public:
    void stamp(const Stamp&) override { ++stamps; }
    long stamps = 0;
};

/// A line of 100 pixels, seen straight on at depth 100.
class StrokeWalk : public testing::Test {
protected:
    StrokeWalk() {
        m_host.setPathAPI(&m_path);
        m_setup.viewFromPath = {{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {-64, -32, 100, 1}}};
        m_setup.layerFromPath = m_setup.viewFromPath;
        m_setup.zoom = 100;
        m_setup.horizontalAspect = 1;
        m_setup.scaleX = m_setup.scaleY = 1;
        m_setup.width = 128;
        m_setup.height = 64;
        m_setup.view = VIEW_CAMERA;
    }

    int walk() {
        m_sink.stamps.clear();
        return DrawBezierPathLin(&m_host, m_sink, nullptr, &m_outline, m_stroke, m_setup);
    }
    /// Stamp positions along the line.
    std::vector<double> places() {
        EXPECT_EQ(walk(), 0);
        std::vector<double> x;
        for (const Stamp& s : m_sink.stamps) {
            x.push_back(s.x - 10);
        }
        return x;
    }
    void expectPlaces(double from, double to, double step) {
        const std::vector<double> x = places();
        ASSERT_EQ(x.size(), static_cast<std::size_t>(std::lround((to - from) / step)) + 1);
        for (std::size_t i = 0; i < x.size(); ++i) {
            EXPECT_NEAR(x[i], from + static_cast<double>(i) * step, 1e-9);
        }
    }

    test::BareHost m_host;
    test::FakePath m_path;
    FakeOutline m_outline = polyline({{10, 20}, {110, 20}}, true);
    // thickness, feather, step, sample length, intensity, start, end, length, near, far, fade
    BrushStroke m_stroke{5, 0.25, 4, 1, 200, 0, 100, 100, 0, 30000, 30000, {}};
    ProjectionSetup m_setup{};
    RecordingSink m_sink;
};

TEST_F(StrokeWalk, stampsStandAStepApartFromEndToEnd) {
    expectPlaces(0, 100, 4);
    for (const Stamp& s : m_sink.stamps) {
        EXPECT_NEAR(s.y, 20, 1e-9);
        EXPECT_NEAR(s.radius, 5, 1e-12);
        EXPECT_EQ(s.feather, 0.25);
        EXPECT_EQ(s.intensity, 200);
    }
}

TEST_F(StrokeWalk, aStretchKeepsTheMarchFromTheBeginning) {
    struct Row {
        double start;
        double end;
        double first;
        double last;
    };
    const Row rows[] = {
        {33, 67, 36, 64}, {36, 66, 36, 64}, {0, 50, 0, 48}, {-40, 50, 0, 48}, {0.5, 9, 4, 8}};
    for (const Row& row : rows) {
        m_stroke.startDist = row.start;
        m_stroke.endDist = row.end;
        expectPlaces(row.first, row.last, 4);
    }
    m_stroke.endDist = -10; // before the outline
    for (const double start : {0.5, -40.0}) {
        m_stroke.startDist = start;
        EXPECT_TRUE(places().empty()) << start;
    }
}

TEST_F(StrokeWalk, onlyAnOpenOutlineDrawnToItsEndGetsACap) {
    struct Row {
        bool open;
        double end;
        bool capped;
    };
    const Row rows[] = {{true, 100, true}, {true, 99.9, false}, {false, 100, false}};
    m_stroke.step = 7; // the last stamp of the march stands at 98
    for (const Row& row : rows) {
        m_outline = polyline({{10, 20}, {110, 20}}, row.open);
        m_stroke.endDist = row.end;
        EXPECT_NEAR(places().back(), row.capped ? 100 : 98, 1e-9) << row.open << row.end;
    }
    m_outline.open = true;
    m_stroke.step = 5; // and here at 95, the cap on the step that is left
    m_stroke.endDist = 100;
    expectPlaces(0, 100, 5);
}

// A fifth of a step is what the march may leave at the end.
TEST_F(StrokeWalk, theEndIsReachedWithinAFifthOfAStep) {
    struct Row {
        double step;
        double end;
        double last;
    };
    // A quarter is left and gets a cap; up to a fifth, the march goes on.
    const Row rows[] = {{100 / 12.25, 100, 100}, {8, 98, 96}, {8, 97.7, 96}};
    m_stroke.sampleLength = 0.1;
    for (const Row& row : rows) {
        m_stroke.step = row.step;
        m_stroke.endDist = row.end;
        EXPECT_NEAR(places().back(), row.last, 1e-9) << row.step << " " << row.end;
    }
}

TEST_F(StrokeWalk, aSinglePointIsOneStamp) {
    m_outline = polyline({{40, 30}}, true);
    m_stroke.taper.startThickness = 0.5;
    EXPECT_EQ(places(), std::vector<double>{30});
    EXPECT_NEAR(m_sink.stamps[0].radius, 5, 1e-12);
    m_stroke.taper.enabled = 1;
    places();
    EXPECT_NEAR(m_sink.stamps[0].radius, 2.5, 1e-12);
    m_outline.vertices.clear();
    EXPECT_TRUE(places().empty());
}

TEST_F(StrokeWalk, dynamicStepsStayVisible) {
    m_stroke.taper = {1, 100, 100, 0, 0, 1, 1, 0, 100, STEP_DYNAMIC};
    m_stroke.taper.startTaperEnd = 1e9; // no thickness at all, all the way
    struct Row {
        double scale;
        double y;
        double zoom;
        double step;
    };
    const Row rows[] = {
        {1, 20, 100, 0.3},   // 0.3 pixels on the screen
        {1, 20, 50, 0.6},    // seen at half the size
        {1, -100, 100, 0.5}, // off the screen
        {1, -1000, 300, 0.5},
    };
    for (const Row& row : rows) {
        m_outline = polyline({{10, row.y}, {110, row.y}}, true);
        m_setup.zoom = row.zoom;
        m_stroke.taper.startThickness = 1e-9; // kept above nothing, so that stamps are placed
        places();
        ASSERT_GT(m_sink.stamps.size(), 3U);
        const double between = (m_sink.stamps[3].x - m_sink.stamps[2].x) / (row.zoom / 100);
        EXPECT_NEAR(between, row.step, 1e-6) << row.y << " " << row.zoom;
    }
    EXPECT_NEAR(m_sink.stamps[1].x - m_sink.stamps[0].x, 0.5 * 3, 1e-6); // never less at first
}

// Ten pixels around the screen still count as seen.
TEST_F(StrokeWalk, dynamicStepsAreLongerOffTheScreen) {
    m_stroke.taper = {1, 1e9, 1e9, 1e-9, 0, 1, 1, 0, 100, STEP_DYNAMIC};
    struct Row {
        double x;
        double y;
        bool seen;
    };
    const Row rows[] = {{-30, 20, false}, {-9, 20, true}, {140, 20, false}, {132, 20, true},
                        {50, 75, false},  {50, 73, true}, {50, -11, false}, {50, -9, true}};
    const auto between = [this] {
        places();
        return m_sink.stamps.size() > 3 ? m_sink.stamps[3].x - m_sink.stamps[2].x : 0.0;
    };
    for (const Row& row : rows) {
        m_outline = polyline({{row.x, row.y}, {row.x + 4, row.y}}, true);
        EXPECT_NEAR(between(), row.seen ? 0.3 : 0.5, 1e-6) << row.x << " " << row.y;
    }
    m_outline = polyline({{10, 20}, {110, 20}}, true);
    m_setup.view = VIEW_FRONT;
    m_setup.layerFromPath = {{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};
    EXPECT_NEAR(between(), 0.3, 1e-6);
    m_setup.viewFromPath.m[3][2] = -100; // behind the camera
    m_stroke.nearZ = -1000;
    EXPECT_NEAR(between(), 0.5, 1e-6);
}

TEST_F(StrokeWalk, dynamicStepsOfFullThicknessAreTheStrokesOwn) {
    m_stroke.taper = {1, 0, 1e9, 1, 1, 1, 1, 0, 100, STEP_DYNAMIC};
    m_setup.zoom = 1; // even where they are hardly seen
    places();
    ASSERT_GT(m_sink.stamps.size(), 3U);
    EXPECT_NEAR(m_sink.stamps[3].x - m_sink.stamps[2].x, 0.04, 1e-9);
}

TEST_F(StrokeWalk, stampsAtTheClippingDepthsAreNotDrawn) {
    struct Row {
        double nearZ;
        double farZ;
        bool drawn;
    };
    const Row rows[] = {{0, 30000, true},        {100, 30000, false}, {99.9, 100.1, true},
                        {0, 100, false},         {120, 80, false},    {NOT_A_NUMBER, 1e9, false},
                        {0, NOT_A_NUMBER, false}};
    for (const Row& row : rows) {
        m_stroke.nearZ = row.nearZ;
        m_stroke.farZ = row.farZ;
        EXPECT_EQ(!places().empty(), row.drawn) << row.nearZ << " " << row.farZ;
    }
}

TEST_F(StrokeWalk, failingQueriesAreHandedBack) {
    m_path.segmentsStatus = 3;
    EXPECT_EQ(walk(), 3);
    m_path.segmentsStatus = 0;
    m_path.openStatus = 4;
    EXPECT_EQ(walk(), 4);
    EXPECT_TRUE(m_sink.stamps.empty());
}

TEST_F(StrokeWalk, anAbortKeepsWhatWasDrawnAndAddsNoCap) {
    std::vector<std::pair<long, long>> calls;
    m_stroke.sampleLength = 0.2;
    m_host.setProgress([&](long done, long total) {
        calls.emplace_back(done, total);
        return 0;
    });
    places();
    ASSERT_GE(calls.size(), 6U); // one per hundred evaluations of 0.08 to 0.16 pixels
    EXPECT_LE(calls.size(), 13U);
    EXPECT_TRUE(std::is_sorted(calls.begin(), calls.end()));
    EXPECT_LE(calls.back().first, 900);
    EXPECT_EQ(calls.back().second, 1000);
    const std::size_t all = m_sink.stamps.size();
    int countdown = 3;
    m_host.setProgress([&](long, long) { return --countdown == 0 ? 42 : 0; });
    EXPECT_EQ(walk(), 42);
    EXPECT_GT(m_sink.stamps.size(), 2U);
    EXPECT_LT(m_sink.stamps.size(), all);
    EXPECT_LT(m_sink.stamps.back().x, 60);
}

// A fine step on a long outline takes as many evaluations and stamps as it takes.
TEST_F(StrokeWalk, noLegalWalkIsCut) {
    struct Row {
        double step;
        double sampleLength;
    };
    const Row rows[] = {{1.3e-5, 1}, {1, 1.7e-5}}; // each some millions
    for (const Row& row : rows) {
        m_stroke.step = row.step;
        m_stroke.sampleLength = row.sampleLength;
        m_stroke.startDist = 99.5;
        m_stroke.endDist = 99.5 + 2 * row.step;
        ASSERT_EQ(walk(), 0);
        ASSERT_GE(m_sink.stamps.size(), row.step < 1 ? 2U : 1U) << row.step;
        EXPECT_NEAR(m_sink.stamps[0].x, 10 + (row.step < 1 ? 99.5 : 100), 1e-3);
    }
}

// Stamps closer than a chord is long are many without an evaluation of the outline.
TEST_F(StrokeWalk, fineStepsAskTheHostToo) {
    m_stroke.step = 1e-5;
    long calls = 0;
    m_host.setProgress([&](long, long) { return ++calls == 500 ? 42 : 0; });
    EXPECT_EQ(walk(), 42);
    EXPECT_LT(m_sink.stamps.size(), 600000U);
}

TEST_F(StrokeWalk, hostileValuesEnd) {
    const double hostile[] = {0.0,    -1.0,  NOT_A_NUMBER, std::numeric_limits<double>::infinity(),
                              1e-300, 1e300, -1e300};
    double BrushStroke::*const members[] = {
        &BrushStroke::thickness, &BrushStroke::step,    &BrushStroke::sampleLength,
        &BrushStroke::startDist, &BrushStroke::endDist, &BrushStroke::pathLength,
        &BrushStroke::nearZ,     &BrushStroke::fadeZ,   &BrushStroke::intensity};
    const BrushStroke usual = m_stroke;
    for (double BrushStroke::*const member : members) {
        for (const double value : hostile) {
            m_stroke = usual;
            m_stroke.*member = value;
            CountingSink sink;
            DrawBezierPathLin(&m_host, sink, nullptr, &m_outline, m_stroke, m_setup);
            EXPECT_LE(sink.stamps, 1000000) << value;
        }
    }
    m_stroke = usual;
    for (const FakeOutline& outline :
         {polyline({{5, 5}, {5, 5}}, false), polyline({{0, 0}, {NOT_A_NUMBER, 3}}, true),
          polyline({{0, 0}, {1e300, 1e300}}, true)}) {
        m_outline = outline;
        EXPECT_EQ(walk(), 0);
    }
}

} // namespace
} // namespace orbel
