#include "render/PathSpans.h"

#include <gtest/gtest.h>

#include <vector>

namespace orbel {
namespace {

struct Span {
    double start;
    double end;
};

std::vector<PathInfoType> records(const std::vector<double>& lengths, int closed, int room) {
    std::vector<PathInfoType> paths;
    for (const double length : lengths) {
        paths.push_back(
            {static_cast<std::uint32_t>(paths.size() + 7), length, -5, -5, 2.5, closed});
    }
    paths.resize(lengths.size() + static_cast<std::size_t>(room));
    return paths;
}

void expectSpan(const PathInfoType& path, const Span& span) {
    EXPECT_DOUBLE_EQ(path.start, span.start);
    EXPECT_DOUBLE_EQ(path.end, span.end);
}

TEST(PathSpans, eachOutlineByItselfEndsWhereItEnds) {
    struct Row {
        int closed;
        double start;
        double end;
        double offset;
        Span expected;
    };
    const Row rows[] = {
        {0, 0.25, 0.5, 0, {50, 100}},    {0, 0.5, 1.0, 0, {100, 200}},
        {0, 0.5, 1.0, 0.25, {150, 200}}, {0, 1.0, 1.0, 0, {200, 200}}, // open: only beyond 1
        {0, 0.5, 1.0, 0.5, {200, 200}},  {0, 0.5, 1.0, 0.75, {0, 0}},
        {0, 0, 0.5, -0.25, {-50, 50}}, // not clamped
        {1, 0.25, 0.5, 0, {50, 100}},    {1, 0.5, 1.0, 0, {100, 200}},
        {1, 0.5, 1.0, 0.25, {150, 200}}, {1, 1.0, 1.0, 0, {0, 0}}, // closed: already at 1
        {1, 0.5, 1.0, 0.5, {0, 0}},      {1, 0, 0.5, -0.25, {-50, 50}},
    };
    for (const Row& row : rows) {
        auto paths = records({200}, row.closed, 0);
        int extra = -1;
        // Neither the loop's offset nor the wrapping flags matter here.
        CalcStartEnd(0, row.start, row.end, paths.data(), 1, row.offset, 0.9, 0, 1, 0, &extra);
        expectSpan(paths[0], row.expected);
        EXPECT_EQ(extra, 0);
    }
}

TEST(PathSpans, loopingOutlinesWrapRound) {
    struct Row {
        int closed;
        double start;
        double end;
        double offset;
        int wrap;
        int noWrap;
        Span expected;
        std::vector<Span> extra;
    };
    const Row rows[] = {
        {0, 0.2, 0.5, 0.3, 0, 0, {100, 160}, {}},
        {0, 0.5, 0.75, 0.25, 0, 0, {150, 200}, {}}, // ends exactly at 1
        {0, 0.5, 0.75, 0.375, 0, 0, {175, 200}, {{-25, 25}}},
        {0, 0.5, 0.75, 0.5, 0, 0, {0, 50}, {}},
        {0, 0.5, 0.75, 0.75, 0, 0, {50, 100}, {}},
        {1, 0.5, 0.75, 0.375, 0, 0, {175, 225}, {}},
        {1, 0.5, 0.75, 0.375, 0, 1, {175, 225}, {}},
        {1, 0.5, 0.75, 0.375, 1, 1, {175, 225}, {}},
        {1, 0.5, 0.75, 0.375, 1, 0, {175, 200}, {{0, 25}}},
        {1, 0.5, 0.75, 0.75, 0, 0, {250, 300}, {}},
        {1, 0.5, 0.75, 0.75, 1, 0, {50, 100}, {}},
        {1, 0.5, 0.75, 0.25, 1, 0, {150, 200}, {}},
    };
    for (const Row& row : rows) {
        auto paths = records({200}, row.closed, 1);
        int extra = -1;
        CalcStartEnd(0, row.start, row.end, paths.data(), 1, 99.0, row.offset, 1, row.wrap,
                     row.noWrap, &extra);
        expectSpan(paths[0], row.expected);
        ASSERT_EQ(extra, static_cast<int>(row.extra.size())) << row.closed << row.offset;
        if (extra == 1) {
            expectSpan(paths[1], row.extra[0]);
            EXPECT_EQ(paths[1].pathId, 7U);
            EXPECT_EQ(paths[1].length, 200.0);
            EXPECT_EQ(paths[1].step, 2.5);
            EXPECT_EQ(paths[1].closed, row.closed);
        }
    }
}

TEST(PathSpans, everyLoopingOutlineMayAddOne) {
    auto paths = records({100, 200, 300}, 0, 3);
    int extra = 0;
    CalcStartEnd(0, 0.5, 0.75, paths.data(), 3, 0.0, 0.375, 1, 0, 0, &extra);
    ASSERT_EQ(extra, 3);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(paths[3 + i].pathId, paths[i].pathId);
        expectSpan(paths[3 + i], {-0.125 * paths[i].length, 0.125 * paths[i].length});
    }
}

TEST(PathSpans, asOnePathTheStretchRunsThroughTheOutlines) {
    struct Row {
        double start;
        double end;
        double offset;
        std::vector<Span> expected;
    };
    const Row rows[] = {
        {0, 1, 0, {{0, 20}, {0, 30}, {0, 50}}},
        {0.1, 0.9, 0, {{10, 20}, {0, 30}, {0, 40}}},
        {0.3, 0.4, 0, {{0, 0}, {10, 20}, {0, 0}}},
        {0.2, 0.9, 0.2, {{0, 0}, {20, 30}, {0, 50}}}, // cut at the end
        {0.2, 0.5, 0, {{20, 20}, {0, 30}, {0, 0}}},   // borders belong to both sides
        {0, 0.5, -0.25, {{0, 20}, {0, 5}, {0, 0}}},
        {0.5, 1, 0.75, {{0, 0}, {0, 0}, {0, 0}}},
        {0.5, 0.5, 0.5, {{0, 0}, {0, 0}, {50, 50}}},
    };
    for (const Row& row : rows) {
        auto paths = records({20, 30, 50}, 1, 0);
        int extra = -1;
        CalcStartEnd(1, row.start, row.end, paths.data(), 3, row.offset, 0.5, 1, 1, 0, &extra);
        EXPECT_EQ(extra, 0);
        for (std::size_t i = 0; i < 3; ++i) {
            SCOPED_TRACE(testing::Message() << row.start << " " << row.offset << " " << i);
            expectSpan(paths[i], row.expected[i]);
        }
    }
}

} // namespace
} // namespace orbel
