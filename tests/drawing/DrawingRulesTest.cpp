#include "drawing/DrawingRules.h"

#include <gtest/gtest.h>

#include <sstream>

namespace orbel {
namespace {

using Points = std::vector<PlanePoint>;

OutlineCurve straight(const Points& points, bool closed = false) {
    OutlineCurve curve;
    curve.start = points.front();
    for (std::size_t i = 1; i < points.size(); ++i) {
        curve.segments.push_back(lineSegment(points[i - 1], points[i]));
    }
    curve.closed = closed;
    return curve;
}

Points box(double left, double top, double right, double bottom) {
    return {{left, top}, {right, top}, {right, bottom}, {left, bottom}};
}

/// What becomes of curves on a page of 100 by 50: "x SEGMENTS" and "z" of each, then the notes.
std::string chosen(const std::vector<OutlineCurve>& curves, const char* fill, const char* stroke,
                   const ImportOptions& options = {}) {
    DrawnPage page;
    page.width = 100;
    page.height = 50;
    std::vector<std::string> notes;
    chooseOutlines({{curves, {"", "", fill, stroke}}}, options, &page, &notes);
    std::ostringstream out;
    for (const DrawnCurve& drawn : page.curves) {
        out << drawn.curve.start.x << ' ' << drawn.curve.segments.size()
            << (drawn.curve.closed ? "z; " : "; ");
    }
    for (const std::string& note : notes) {
        out << note << "; ";
    }
    return out.str();
}

TEST(DrawingRules, leaveOutWhatShowsNothing) {
    struct Row {
        Points points;
        const char* filled;
        const char* stroked;
    };
    const char* const outside = "1 outline left out: outside the page; ";
    const char* const tiny =
        "1 outline left out: smaller than 0.2 % of the page; --smallest 0 keeps them; ";
    const Row rows[] = {
        {{{1, 1}}, "", ""},
        {{{1, 1}, {1, 1}}, "", ""},
        {{{1, 1}, {9, 9}, {5, 5}}, "", "1 2; "},
        {{{1, 1}, {41, 1}, {21, 1.0009}}, "", "1 2; "},
        {{{1, 1}, {41, 1}, {21, 1.0011}}, "1 2z; ", "1 2; "},
        {box(-9, 5, -1, 9), outside, outside},
        {box(-9, 5, 0, 9), "-9 3z; ", "-9 3; "},
        {box(101, 5, 109, 9), outside, outside},
        {box(100, 5, 109, 9), "100 3z; ", "100 3; "},
        {box(5, -9, 9, -1), outside, outside},
        {box(5, -9, 9, 0), "5 3z; ", "5 3; "},
        {box(5, 51, 9, 59), outside, outside},
        {box(5, 50, 9, 59), "5 3z; ", "5 3; "},
        {box(5, 5, 5.19, 5.1), tiny, tiny},
        {box(5, 5, 5.1, 5.21), "5 3z; ", "5 3; "},
    };
    for (const Row& row : rows) {
        const OutlineCurve curve = straight(row.points);
        const std::string what = "from " + std::to_string(row.points.front().x) + " to " +
                                 std::to_string(row.points.back().x);
        EXPECT_EQ(chosen({curve}, "red", ""), row.filled) << what;
        EXPECT_EQ(chosen({curve}, "red", "blue"), row.stroked) << what;
    }
    ImportOptions options;
    options.smallest = 0;
    EXPECT_EQ(chosen({straight(box(5, 5, 5.1, 5.1))}, "red", "", options), "5 3z; ");
    options.smallest = 12.5;
    EXPECT_EQ(chosen({straight(box(5, 5, 9, 9)), straight(box(5, 5, 9, 9))}, "red", "", options),
              "2 outlines left out: smaller than 12.5 % of the page; --smallest 0 keeps them; ");
}

TEST(DrawingRules, knowRectanglesAsLargeAsThePage) {
    OutlineCurve round = straight(box(0, 0, 100, 50));
    round.segments[1].straight = false;
    const std::pair<OutlineCurve, bool> rows[] = {
        {straight(box(0, 0, 100, 50)), false},
        {straight({{0, 0}, {100, 0}, {100, 50}, {0, 50}, {0, 0}}), false},
        {straight(box(0.4, 0.4, 99.6, 49.6)), false},
        {straight(box(-9, -9, 109, 59)), false},
        {straight(box(0.6, 0, 100, 50)), true},
        {straight(box(0, 0.6, 100, 50)), true},
        {straight(box(0, 0, 99.4, 50)), true},
        {straight(box(0, 0, 100, 49.4)), true},
        {straight({{0, 0}, {100, 0}, {100, 50}}), true},
        {straight({{50, 0}, {100, 0}, {100, 50}, {0, 50}, {0, 0}}), true},
        {straight({{0, 0}, {100, 0}, {100, 25}, {100, 50}, {0, 50}, {0, 0}}), true},
        {straight({{0, 0}, {100, 20}, {100, 50}, {0, 50}}), true},
        {round, true}};
    ImportOptions options;
    options.pageRectangles = false;
    for (const auto& [curve, kept] : rows) {
        const std::string result = chosen({curve}, "red", "", options);
        EXPECT_EQ(result == "1 outline left out: rectangles as large as the page; ", !kept)
            << result;
    }
}

TEST(DrawingRules, closeWhatIsWanted) {
    using Closed = ImportOptions::Closed;
    struct Row {
        OutlineCurve curve;
        const char* stroke;
        Closed closed;
        const char* result;
    };
    const Points open = box(5, 5, 20, 20);
    const Points meeting = {{5, 5}, {20, 5}, {20, 20}, {5.0009, 5}};
    const Points apart = {{5, 5}, {20, 5}, {20, 20}, {5.0011, 5}};
    const Row rows[] = {
        {straight(open), "", Closed::Keep, "5 3z; "},
        {straight(open), "blue", Closed::Keep, "5 3; "},
        {straight(open, true), "blue", Closed::Keep, "5 3z; "},
        {straight(meeting), "blue", Closed::Keep, "5 2z; "},
        {straight(apart), "blue", Closed::Keep, "5 3; "},
        {straight(open), "blue", Closed::All, "5 3z; "},
        {straight(apart), "blue", Closed::All, "5 3z; "},
        {straight(open), "", Closed::None, "5 3; "},
        {straight(open, true), "", Closed::None, "5 4; "},
        {straight(meeting, true), "", Closed::None, "5 3; "},
        {straight({{5, 5}, {9, 9}}), "blue", Closed::Keep, "5 1; "},
        {straight({{5, 5}, {9, 9}, {5, 5}}), "blue", Closed::Keep, "5 2z; "},
    };
    for (const Row& row : rows) {
        ImportOptions options;
        options.closed = row.closed;
        EXPECT_EQ(chosen({row.curve}, "red", row.stroke, options), row.result)
            << row.stroke << static_cast<int>(row.closed);
    }
}

TEST(DrawingRules, takePaintsAndOrderAsAsked) {
    const std::vector<OutlineCurve> curves{
        straight({{10, 10}, {90, 10}}), straight({{12, 9}, {30, 40}}),
        straight({{88, 12}, {70, 40}, {80, 10}}, true), straight({{80, 20}, {15, 10}})};
    ImportOptions options;
    EXPECT_EQ(chosen(curves, "", "red", options), "10 1; 12 1; 88 2z; 80 1; ");
    options.order = ImportOptions::Order::Nearest;
    EXPECT_EQ(chosen(curves, "", "red", options), "10 1; 88 2z; 80 1; 12 1; ");
    options.take = ImportOptions::Take::Fills;
    EXPECT_EQ(chosen(curves, "", "red", options), "4 outlines left out: stroked only; ");
    options.take = ImportOptions::Take::Strokes;
    EXPECT_EQ(chosen({curves[0]}, "red", "", options), "1 outline left out: filled only; ");
}

TEST(DrawingRules, joinThePaintingsOfOnePath) {
    const OutlineCurve a = straight({{1, 1}, {2, 2}});
    const OutlineCurve b = straight({{1, 1}, {3, 3}});
    std::vector<PaintedOutlines> painted{
        {{a}, {"i", "", "red", ""}},   {{a}, {"j", "", "blue", "green"}},
        {{a}, {"k", "", "", "black"}}, {{b}, {"l", "", "", ""}},
        {{b}, {"m", "", "grey", ""}},  {{a}, {"n", "", "", ""}}};
    joinRepeats(&painted);
    ASSERT_EQ(painted.size(), 3U);
    EXPECT_EQ(painted[0].source, (OutlineSource{"i", "", "red", "green"}));
    EXPECT_EQ(painted[1].source, (OutlineSource{"l", "", "grey", ""}));
    EXPECT_EQ(painted[2].source.id, "n");
}

} // namespace
} // namespace orbel
