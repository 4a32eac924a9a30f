#include "render/BezierPath.h"

#include "render/Units.h"
#include "tests/support/FakePath.h"
#include "tests/support/TestHosts.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>

namespace orbel {
namespace {

using test::FakeOutline;
using test::polyline;

constexpr double INFINITE = std::numeric_limits<double>::infinity();
constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

class BezierPath : public testing::Test {
protected:
    BezierPath() { m_host.setPathAPI(&m_path); }

    double length(FakeOutline outline, double step) {
        return GetBezierPathLen(&m_host, nullptr, &outline, 7.0, 9.0, step);
    }
    std::pair<double, double> at(FakeOutline outline, long segments, double t) {
        std::pair<double, double> point;
        EvalBezier(&m_host, nullptr, &outline, segments, t, &point.first, &point.second);
        return point;
    }
    int sameMasks(int allPaths, long index) {
        const int result = CmpMasks(&m_host, nullptr, nullptr, allPaths, index, 0, 100, 100, 3000);
        EXPECT_EQ(m_path.checkedOut, 0);
        return result;
    }

    test::BareHost m_host;
    test::FakePath m_path;
};

TEST_F(BezierPath, withoutSegmentsEverythingIsAtTheFirstVertex) {
    const auto point = polyline({{12, 34}}, true);
    for (const double t : {0.0, 0.5, 7.25}) {
        EXPECT_EQ(at(point, 0, t), std::make_pair(12.0, 34.0));
    }
    EXPECT_EQ(length(point, 1.0), 0.0);
    for (const double t : {NOT_A_NUMBER, INFINITE, -INFINITE, 1e300, -1e300}) {
        at(polyline({{0, 0}, {90, 0}}, true), 1, t); // does no harm
    }
}

TEST_F(BezierPath, aVertexThatCannotBeFetchedLeavesThePointAlone) {
    FakeOutline line = polyline({{1, 2}, {90, 80}}, true);
    double x = -1.0;
    double y = -2.0;
    EXPECT_EQ(GetVertex(&m_host, nullptr, &line, 2, &x, &y), 1);
    EXPECT_EQ(x, -1.0);
    EXPECT_EQ(y, -2.0);
    EXPECT_EQ(GetVertex(&m_host, nullptr, &line, 1, &x, &y), 0);
    EXPECT_EQ(x, 90.0);
    EXPECT_EQ(y, 80.0);
}

TEST_F(BezierPath, theSearchDoublesOrHalvesUntilAChordFits) {
    struct Row {
        double length;
        double target;
        long evaluations;
        double parameter;
    };
    const Row rows[] = {
        {100, 9, 3, 0.04},        // 1 and 2 are too short, 4 fits 3.6 to 7.2
        {100, 2, 1, 0.01},        // the first trial fits
        {10000, 10, 5, 0.000625}, // 100, 50, 25 and 12.5 are too long
    };
    for (const Row& row : rows) {
        FakeOutline line = polyline({{0, 0}, {row.length, 0}}, true);
        BezierSampler sampler(&m_host, nullptr, &line, 1);
        ChordWalk walk(&m_host, &sampler, row.target);
        ChordWalk::Trial trial = walk.tryChord();
        while (trial == ChordWalk::Trial::Rejected) {
            trial = walk.tryChord();
        }
        ASSERT_EQ(trial, ChordWalk::Trial::Accepted);
        EXPECT_EQ(walk.evaluations(), row.evaluations) << row.length;
        EXPECT_DOUBLE_EQ(walk.parameter(), row.parameter) << row.length;
        EXPECT_NEAR(walk.length(), row.parameter * row.length, 1e-9);
    }
}

// Beyond 100 the line begins: found too short at 81.92 and too long at 163.84, and halved from
// there.
TEST_F(BezierPath, theSearchNarrowsBetweenFarIncrements) {
    std::vector<std::pair<double, double>> points(200, {0.0, 0.0});
    for (std::size_t i = 101; i < points.size(); ++i) {
        points[i].first = static_cast<double>(i) - 100;
    }
    FakeOutline outline = polyline(points, true);
    BezierSampler sampler(&m_host, nullptr, &outline, 199);
    ChordWalk walk(&m_host, &sampler, 9);
    EXPECT_TRUE(walk.next());
    EXPECT_DOUBLE_EQ(walk.parameter(), 104.96);
    EXPECT_EQ(walk.evaluations(), 20);
}

// Many chords may be found together: where the speed changes, at vertices, beyond the end and where
// there is a NaN they are those of one trial after the other all the same.
TEST_F(BezierPath, chordsFoundTogetherAreThoseOfSingleTrials) {
    FakeOutline curve = polyline({{0, 0}, {3, 0}, {300, 20}, {310, 200}, {10, 190}}, false);
    curve.vertices[1].tanOutX += 500.0;
    curve.vertices[3].tanInY -= 150.0;
    FakeOutline broken = polyline({{0, 0}, {40, 0}, {NOT_A_NUMBER, 3}, {9, 9}}, true);
    for (FakeOutline* const outline : {&curve, &broken}) {
        for (const double target : {0.05, 1.0, 7.0}) {
            const auto segments =
                static_cast<long>(outline->vertices.size()) - (outline->open ? 1 : 0);
            BezierSampler sampler(&m_host, nullptr, outline, segments);
            BezierSampler other(&m_host, nullptr, outline, segments);
            ChordWalk together(&m_host, &sampler, target);
            ChordWalk single(&m_host, &other, target);
            const auto state = [](const ChordWalk& w) {
                const double evaluations = static_cast<double>(w.evaluations());
                return std::bit_cast<std::array<std::uint64_t, 7>>(
                    std::array{w.begin().x, w.begin().y, w.end().x, w.end().y, w.length(),
                               w.parameter(), evaluations});
            };
            for (int i = 0; i < 5000; ++i) {
                ChordWalk::Trial trial = single.tryChord();
                while (trial == ChordWalk::Trial::Rejected) {
                    trial = single.tryChord();
                }
                ASSERT_EQ(together.next(), trial == ChordWalk::Trial::Accepted) << i;
                ASSERT_EQ(state(together), state(single)) << target << " " << i;
                if (trial != ChordWalk::Trial::Accepted) {
                    break;
                }
            }
        }
    }
}

// Increments from 1000 on bound no search, and beyond 5000 none goes on.
TEST_F(BezierPath, theSearchEndsWhereNoIncrementLeads) {
    std::vector<std::pair<double, double>> points(2000, {0.0, 0.0});
    for (std::size_t i = 1311; i < points.size(); ++i) {
        points[i] = {1000.0, 0.0};
    }
    for (FakeOutline outline : {polyline({{5, 5}, {5, 5}}, true), polyline(points, true)}) {
        const auto segments = static_cast<long>(outline.vertices.size()) - 1;
        BezierSampler sampler(&m_host, nullptr, &outline, segments);
        ChordWalk walk(&m_host, &sampler, 1.0);
        EXPECT_FALSE(walk.next());
        EXPECT_EQ(walk.evaluations(), 19); // 0.01, doubled up to 2621.44
    }
}

TEST_F(BezierPath, outlinesEndWhereNoPictureReaches) {
    for (const double far : {16e6, 1e8}) {
        for (const double sign : {1.0, -1.0}) {
            const double end = std::min(far, 16777216.0);
            EXPECT_NEAR(length(polyline({{0, 0}, {sign * far, 0}}, true), 1e5), end, 1e5) << far;
            EXPECT_NEAR(length(polyline({{0, 0}, {0, sign * far}}, true), 1e5), end, 1e5) << far;
        }
    }
}

TEST_F(BezierPath, hostileOutlinesAndStepsEnd) {
    const FakeOutline outlines[] = {
        polyline({{5, 5}, {5, 5}, {5, 5}}, false),
        polyline({{0, 0}, {NOT_A_NUMBER, 3}}, true),
        polyline({{0, 0}, {INFINITE, -INFINITE}}, true),
        polyline({{0, 0}, {1e300, 1e300}}, false),
        polyline({{-1e-300, 0}, {1e-300, 0}}, true),
        polyline({{1e17, 0}, {1e17 + 32, 0}}, true), // chords below one step of the numbers
    };
    for (const FakeOutline& outline : outlines) {
        for (const double step : {1.0, 0.0, -1.0, NOT_A_NUMBER, INFINITE, 1e-300}) {
            EXPECT_FALSE(length(outline, step) < 0.0); // NaN outlines have NaN lengths
        }
    }
    EXPECT_EQ(length(outlines[0], 1.0), 0.0);
    EXPECT_EQ(length(polyline({{0, 0}, {90, 0}}, true), 0.0), 0.0);
    EXPECT_EQ(length(polyline({{0, 0}, {90, 0}}, true), NOT_A_NUMBER), 0.0);
}

TEST_F(BezierPath, failingQueriesMeasureNothing) {
    m_path.segmentsStatus = 5;
    EXPECT_EQ(length(polyline({{0, 0}, {90, 0}}, true), 1.0), 0.0);
    m_path.segmentsStatus = 0;
    m_path.openStatus = 5;
    EXPECT_EQ(length(polyline({{0, 0}, {90, 0}}, true), 1.0), 0.0);
}

TEST_F(BezierPath, outlinesDifferByTheSmallestMove) {
    const FakeOutline outline = test::circle(10, 20, 5);
    FakeOutline a = outline;
    const auto same = [&](FakeOutline b) { return CmpMask(&m_host, nullptr, &a, &b); };
    EXPECT_EQ(same(outline), 1);
    constexpr double Vx_PathVertex::*members[] = {&Vx_PathVertex::tanInX,  &Vx_PathVertex::tanInY,
                                                  &Vx_PathVertex::x,       &Vx_PathVertex::y,
                                                  &Vx_PathVertex::tanOutX, &Vx_PathVertex::tanOutY};
    for (const auto member : members) {
        FakeOutline b = outline;
        double& value = b.vertices[3].*member;
        value = std::nextafter(value, 1e9);
        EXPECT_EQ(same(b), 0);
        value = NOT_A_NUMBER;
        EXPECT_EQ(CmpMask(&m_host, nullptr, &b, &b), 0);
    }
    EXPECT_EQ(same(polyline({{0, 0}, {90, 0}}, true)), 0);
    m_path.segmentsStatus = 1;
    EXPECT_EQ(same(outline), 0);
}

// Only the vertices that segments begin with are compared: the last one of an open outline is not.
TEST_F(BezierPath, theLastVertexOfAnOpenOutlineIsNotCompared) {
    FakeOutline a = polyline({{0, 0}, {90, 0}}, true);
    FakeOutline b = a;
    b.vertices[1].x = 95;
    EXPECT_EQ(CmpMask(&m_host, nullptr, &a, &b), 1);
}

TEST_F(BezierPath, pathsAreComparedAtTwoTimes) {
    m_path.outlines = {test::circle(10, 20, 5), polyline({{0, 0}, {90, 0}}, true)};
    EXPECT_EQ(sameMasks(1, 0), 1);
    m_path.animate = [](FakeOutline& outline, long time) {
        outline.vertices[0].x += outline.open ? static_cast<double>(time) : 0.0;
    };
    EXPECT_EQ(sameMasks(1, 0), 0);
    EXPECT_EQ(sameMasks(0, 1), 1);
    EXPECT_EQ(sameMasks(0, 2), 0);
}

TEST_F(BezierPath, outlinesThatCannotBeCheckedOutAreSkipped) {
    EXPECT_EQ(sameMasks(1, 0), 1); // nothing is like nothing
    m_path.outlines = {test::circle(10, 20, 5), test::circle(10, 20, 5), test::circle(10, 20, 5)};
    m_path.missing = {1, 2};
    m_path.animate = [](FakeOutline& outline, long time) {
        outline.vertices[0].x += static_cast<double>(time);
    };
    EXPECT_EQ(sameMasks(1, 0), 0);
    m_path.checkoutStatus = 3; // none ever comes: gives up
    EXPECT_EQ(sameMasks(1, 0), 1);
}

} // namespace
} // namespace orbel
