#include "render/OutlineChords.h"

#include "render/StrokeWalk.h"
#include "tests/support/FakePath.h"
#include "tests/support/TestHosts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace orbel {
namespace {

using test::FakeOutline;

/// Everything that a walk tells the world.
struct Record final : StampSink {
    void stamp(const Stamp& s) override { stamps.insert(stamps.end(), {s.x, s.y, s.radius}); }
    std::vector<double> stamps;
    std::vector<std::pair<long, long>> progress;
    int result = 0;

    bool operator==(const Record& other) const {
        return stamps == other.stamps && progress == other.progress && result == other.result;
    }
};

class OutlineChordsTest : public testing::Test {
protected:
    OutlineChordsTest() {
        m_host.setPathAPI(&m_path);
        m_setup.viewFromPath = {{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {-64, -32, 100, 1}}};
        m_setup.layerFromPath = m_setup.viewFromPath;
        m_setup.zoom = 100;
        m_setup.horizontalAspect = m_setup.scaleX = m_setup.scaleY = 1;
        m_setup.view = VIEW_CAMERA;
    }

    Record walk(const BrushStroke& stroke, FakeOutline& outline, OutlineChords* chords,
                long abortAt = -1) {
        Record record;
        m_host.setProgress([&](long done, long total) {
            record.progress.emplace_back(done, total);
            return static_cast<long>(record.progress.size()) == abortAt ? 42 : 0;
        });
        record.result =
            DrawBezierPathLin(&m_host, record, nullptr, &outline, stroke, m_setup, chords);
        m_host.setProgress({});
        return record;
    }

    test::BareHost m_host;
    test::FakePath m_path;
    ProjectionSetup m_setup{};
};

double lengthOf(OutlineChords* chords) {
    double length = 0.0;
    EXPECT_EQ(chords->measure(&length), 0);
    return length;
}

/// Outlines of every kind, those that no chord fits included.
std::vector<FakeOutline> outlines() {
    FakeOutline cusp;
    cusp.vertices = {{0, 0, 3, 5, 120, 90}, {-90, 80, 60, 7, 60, 7}, {9, 9, 55, 44, 0, 0}};
    return {test::circle(60, 40, 30), test::polyline({{10, 20}, {110, 20}, {30, 90}}, true),
            test::polyline({{10, 20}, {110, 20}, {30, 90}}, false), cusp,
            test::polyline({{5, 5}, {5, 5}}, false)};
}

// One after another on the same chords: short, long, over the end and far beyond the measurement.
TEST_F(OutlineChordsTest, givesTheStampsAndTheProgressOfAFreshWalk) {
    for (const std::size_t memory : {std::size_t{0}, std::size_t{2000}, std::size_t{1} << 20}) {
        for (FakeOutline& outline : outlines()) {
            const auto segments =
                static_cast<long>(outline.vertices.size()) - (outline.open ? 1 : 0);
            for (const double target : {1.0, 0.13}) {
                OutlineMemory bytes(memory);
                OutlineChords chords(&m_host, nullptr, &outline, segments, target, &bytes);
                const double length = lengthOf(&chords);
                EXPECT_EQ(length, GetBezierPathLen(&m_host, nullptr, &outline, 1, 1, target));
                for (const double end : {0.3 * length, length, 2.5 * length, 0.6 * length}) {
                    const BrushStroke stroke{5, 0, 4, target, 200, 0, end, length, 0, 1e9, 1e9, {}};
                    const Record fresh = walk(stroke, outline, nullptr);
                    EXPECT_EQ(walk(stroke, outline, &chords), fresh) << memory << " " << end;
                    const auto calls = static_cast<long>(fresh.progress.size());
                    for (const long abortAt : {1L, calls / 2, calls}) {
                        EXPECT_EQ(walk(stroke, outline, &chords, abortAt),
                                  walk(stroke, outline, nullptr, abortAt));
                    }
                }
            }
        }
    }
}

// Every hundredth evaluation of the search is told, with the parameter that was reached then.
TEST_F(OutlineChordsTest, progressFollowsTheSearchEvaluationByEvaluation) {
    FakeOutline outline = test::circle(60, 40, 30);
    BezierSampler sampler(&m_host, nullptr, &outline, 4);
    ChordWalk search(&m_host, &sampler, 0.05);
    std::vector<std::pair<long, long>> expected;
    while (search.parameter() < 1.9) {
        ASSERT_NE(search.tryChord(), ChordWalk::Trial::Ended);
        if (search.evaluations() % 100 == 0) {
            expected.emplace_back(static_cast<long>(900 * search.parameter()), 4000);
        }
    }
    const BrushStroke stroke{5, 0, 4, 0.05, 200, 0, 120, 188, 0, 1e9, 1e9, {}};
    OutlineMemory bytes(1U << 20);
    OutlineChords chords(&m_host, nullptr, &outline, 4, 0.05, &bytes);
    std::vector<std::pair<long, long>> told = walk(stroke, outline, &chords).progress;
    ASSERT_GT(told.size(), expected.size());
    ASSERT_GT(expected.size(), 20U);
    told.resize(expected.size());
    EXPECT_EQ(told, expected);
}

// Others may give memory back while a reader is beyond what could be kept.
TEST_F(OutlineChordsTest, aReaderNeverJumpsBack) {
    FakeOutline outline = test::circle(60, 40, 30);
    OutlineMemory bytes(sizeof(Chord) * 10 + 4000);
    ASSERT_TRUE(bytes.take(3000));
    OutlineChords chords(&m_host, nullptr, &outline, 4, 1.0, &bytes);
    OutlineChords fresh(&m_host, nullptr, &outline, 4, 1.0, nullptr);
    ChordReader reader(&chords);
    ChordReader expected(&fresh);
    for (int i = 0; i < 100; ++i) {
        ASSERT_EQ(reader.next(), expected.next());
        EXPECT_EQ(reader.parameter(), expected.parameter()) << i;
        EXPECT_EQ(reader.evaluations(), expected.evaluations()) << i;
        if (i == 60) {
            bytes.giveBack(3000);
        }
    }
}

// Measuring takes as long as drawing: the host hears of it as often, and can end it.
TEST_F(OutlineChordsTest, measuringAsksTheHostAsDrawingDoes) {
    FakeOutline outline = test::circle(60, 40, 30);
    for (const bool remembered : {false, true}) {
        std::vector<std::pair<long, long>> calls;
        std::size_t abortAt = 1000000;
        m_host.setProgress([&](long done, long total) {
            calls.emplace_back(done, total);
            return calls.size() == abortAt ? 42 : 0;
        });
        const auto measure = [&](double* length) {
            int abort = 0;
            if (remembered) {
                OutlineMemory bytes(1U << 20);
                return OutlineChords(&m_host, nullptr, &outline, 4, 0.05, &bytes).measure(length);
            }
            *length = GetBezierPathLen(&m_host, nullptr, &outline, 1, 1, 0.05, &abort);
            return abort;
        };
        double whole = 0.0;
        EXPECT_EQ(measure(&whole), 0);
        ASSERT_GT(calls.size(), 40U);
        EXPECT_TRUE(std::is_sorted(calls.begin(), calls.end()));
        EXPECT_EQ(calls.back().second, 4000);
        abortAt = calls.size() / 2;
        calls.clear();
        double part = 0.0;
        EXPECT_EQ(measure(&part), 42);
        EXPECT_EQ(calls.size(), abortAt);
        EXPECT_NEAR(part, whole / 2, whole / 20);
    }
}

TEST_F(OutlineChordsTest, aFrameWalksAStillOutlineOnceAndAMovedOneAgain) {
    FrameChords frame(&m_host);
    FakeOutline outline = test::circle(60, 40, 30);
    OutlineChords* const first = frame.enter(7, &outline, 1.0);
    ASSERT_NE(first, nullptr);
    const double length = lengthOf(first);
    FakeOutline again = outline; // another handle of the same curve
    EXPECT_EQ(frame.enter(7, &again, 1.0), first);
    EXPECT_EQ(frame.find(7, &again), first);
    EXPECT_EQ(frame.find(8, &again), nullptr);
    again.vertices[2].tanInY = std::nextafter(again.vertices[2].tanInY, 1e9);
    again.vertices[1].x += 3;
    EXPECT_NE(lengthOf(frame.enter(7, &again, 1.0)), length);
    EXPECT_EQ(frame.enter(7, &outline, 0.5)->targetLength(), 0.5);
    FakeOutline point = test::polyline({{12, 34}}, true);
    EXPECT_EQ(frame.enter(7, &point, 1.0), nullptr);
    EXPECT_EQ(frame.find(7, &point), nullptr);
}

} // namespace
} // namespace orbel
