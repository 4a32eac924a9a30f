#include "drawing/Outline.h"

#include <gtest/gtest.h>

#include <random>

namespace orbel {
namespace {

// Small whole numbers, so that cubics that are none are among them.
TEST(Outline, itsBoxHoldsTheCurveAndNoMore) {
    std::mt19937 random(3); // NOLINT(cert-msc51-cpp): the same curves in every run
    const auto point = [&random] {
        return PlanePoint{static_cast<double>(random() % 9), static_cast<double>(random() % 9)};
    };
    for (int i = 0; i < 300; ++i) {
        OutlineCurve curve;
        curve.start = point();
        curve.segments = {lineSegment(curve.start, point()),
                          {point(), point(), point(), false},
                          {point(), point(), point(), false}};
        OutlineBox sampled;
        PlanePoint from = curve.start;
        for (const OutlineSegment& segment : curve.segments) {
            for (int t = 0; t <= 500; ++t) {
                sampled.add(pointOf(from, segment, t / 500.0));
            }
            from = segment.end;
        }
        const OutlineBox box = boxOf(curve);
        EXPECT_NEAR(box.left, sampled.left, 1e-3) << i;
        EXPECT_NEAR(box.top, sampled.top, 1e-3) << i;
        EXPECT_NEAR(box.right, sampled.right, 1e-3) << i;
        EXPECT_NEAR(box.bottom, sampled.bottom, 1e-3) << i;
    }
}

TEST(Outline, aBoxOfNothingIsEmptyAndAddsNothing) {
    OutlineBox box;
    EXPECT_TRUE(box.empty());
    EXPECT_EQ(box.longerSide(), 0.0);
    box.add(PlanePoint{3, 4});
    box.add(OutlineBox{});
    box.add(OutlineBox{1, 4, 2, 9});
    EXPECT_FALSE(box.empty());
    EXPECT_EQ(box.longerSide(), 5.0);
}

} // namespace
} // namespace orbel
