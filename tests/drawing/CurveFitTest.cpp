#include "drawing/CurveFit.h"
#include "drawing/ShapeWriter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <numbers>

namespace orbel {
namespace {

double distanceTo(const OutlineCurve& curve, PlanePoint point) {
    double least = std::numeric_limits<double>::infinity();
    PlanePoint from = curve.start;
    for (const OutlineSegment& s : curve.segments) {
        for (int i = 0; i <= 800; ++i) {
            least = std::min(least, distanceOf(point, pointOf(from, s, i / 800.0)));
        }
        from = s.end;
    }
    return least;
}

std::vector<PlanePoint> sampled(int count, const std::function<PlanePoint(double)>& at) {
    std::vector<PlanePoint> points;
    for (int i = 0; i <= count; ++i) {
        points.push_back(at(static_cast<double>(i) / count));
    }
    return points;
}

TEST(CurveFit, passesItsPointsWithFewCubics) {
    struct Row {
        const char* what;
        std::vector<PlanePoint> points;
        double tolerance;
        std::size_t segments;
    };
    constexpr double turn = 2 * std::numbers::pi;
    const Row rows[] = {
        {"two points", {{1, 2}, {5, 6}}, 0.1, 1},
        {"points twice", {{1, 2}, {1, 2}, {5, 6}, {5, 6}}, 0.1, 1},
        {"a line of three", {{0, 0}, {5, 0}, {20, 0}}, 0.1, 1},
        {"a corner", {{0, 0}, {50, 0}, {50, 50}}, 0.1, 2},
        {"a zigzag", {{0, 0}, {10, 20}, {20, 0}, {30, 20}}, 0.1, 3},
        {"a quarter",
         sampled(20,
                 [](double t) {
                     return PlanePoint{100 * std::cos(t * turn / 4), 100 * std::sin(t * turn / 4)};
                 }),
         0.1, 1},
        {"a circle",
         sampled(90,
                 [](double t) {
                     return PlanePoint{100 * std::cos(t * turn), 100 * std::sin(t * turn)};
                 }),
         0.1, 10},
        {"waves",
         sampled(120,
                 [](double t) {
                     return PlanePoint{200 * t, 20 * std::sin(3 * t * turn)};
                 }),
         0.2, 21},
        {"finer waves",
         sampled(120,
                 [](double t) {
                     return PlanePoint{200 * t, 20 * std::sin(3 * t * turn)};
                 }),
         0.02, 41},
        {"a spiral",
         sampled(150,
                 [](double t) {
                     return PlanePoint{80 * t * std::cos(9 * t), 80 * t * std::sin(9 * t)};
                 }),
         0.1, 9},
    };
    for (const Row& row : rows) {
        const OutlineCurve curve = fitCurve(row.points, row.tolerance, 0.5);
        EXPECT_EQ(curve.segments.size(), row.segments) << row.what;
        EXPECT_EQ(curve.start, row.points.front()) << row.what;
        EXPECT_EQ(curve.end(), row.points.back()) << row.what;
        EXPECT_FALSE(curve.closed);
        for (std::size_t i = 0; i < row.points.size(); i += 3) {
            EXPECT_LT(distanceTo(curve, row.points[i]), row.tolerance + 0.1) << row.what << i;
        }
    }
    EXPECT_TRUE(fitCurve({}, 1, 1).segments.empty());
    EXPECT_TRUE(fitCurve({{1, 1}, {1, 1}}, 1, 1).segments.empty());
}

TEST(CurveFit, keepsCornersWhereTheRowBendsFar) {
    const std::vector<PlanePoint> bent{{0, 0}, {10, 0}, {20, 0}, {29, 4}, {38, 8}}; // by 0.42
    EXPECT_EQ(fitCurve(bent, 0.5, 0.4).segments.front().end, bent[2]);
    EXPECT_EQ(fitCurve(bent, 5, 0.5).segments.size(), 1U);
}

TEST(CurveFit, simplifiesOnlyToFewerSegments) {
    OutlineCurve curve;
    for (int i = 1; i <= 6; ++i) {
        curve.segments.push_back(lineSegment({10.0 * (i - 1), 0}, {10.0 * i, 0}));
    }
    curve.segments.push_back(lineSegment({60, 0}, {60, 30}));
    curve.segments.push_back({{60, 45}, {45, 60}, {30, 60}, false});
    curve.closed = true;
    OutlineCurve simple = curve;
    simplifyCurve(0.1, &simple);
    EXPECT_LT(simple.segments.size(), 5U);
    EXPECT_TRUE(simple.closed);
    EXPECT_EQ(simple.end(), curve.end());
    for (const PlanePoint corner : {PlanePoint{60, 0}, {60, 30}, {30, 0}}) {
        EXPECT_LT(distanceTo(simple, corner), 0.3) << corner.x << ' ' << corner.y;
    }
    OutlineCurve zigzag;
    zigzag.segments = {lineSegment({0, 0}, {9, 9}), lineSegment({9, 9}, {18, 0})};
    simple = zigzag;
    simplifyCurve(0.1, &simple);
    EXPECT_EQ(simple, zigzag);
}

TEST(ShapeWriter, writesWhatTheReaderRepresentsExactly) {
    DrawnPage page;
    page.width = 100;
    page.height = 50.25;
    OutlineCurve line;
    line.start = {0, -1e-9};
    line.segments = {lineSegment(line.start, {12, 8})};
    OutlineCurve curve;
    curve.segments = {{{1, 2}, {3, 4}, {5, 6.00006}, false}, lineSegment({5, 6}, {2, 0})};
    curve.closed = true;
    page.curves = {{line, {"a", "", "", ""}}, {curve, {"", "<&\"\n>", "#010203", "pattern"}}};
    EXPECT_EQ(
        shapeText(page),
        "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"100\" height=\"50.25\" "
        "viewBox=\"0 0 100 50.25\">\n<g fill=\"none\" stroke=\"black\">\n"
        "<path data-id=\"a\" d=\"M 0 0 C 2 1.3333 4 2.6667 6 4 C 8 5.3333 10 6.6667 12 8\"/>\n"
        "<path data-title=\"&lt;&amp;&quot; >\" data-fill=\"#010203\" data-stroke=\"pattern\" "
        "d=\"M 0 0 C 1 2 3 4 5 6.0001 C 4 4 3 2 2 0 Z\"/>\n</g>\n</svg>\n");
    for (const auto& [side, text] : {std::pair{1.0, "1 0.123457"},
                                     {1e-3, "0.001 0.000123457"},
                                     {1e9, "1000000000 123456789"}}) {
        DrawnPage other;
        other.width = side;
        other.height = 0.123456789 * side;
        EXPECT_NE(shapeText(other).find(std::string("viewBox=\"0 0 ") + text + "\""),
                  std::string::npos)
            << shapeText(other);
    }
}

} // namespace
} // namespace orbel
