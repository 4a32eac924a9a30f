#include "tests/artwork/OutlineMeasures.h"
#include "tests/artwork/ShippedShapes.h"

#include "shapes/ShapeTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace orbel::test {
namespace {

using Outline = PluginPath_Impl::Vx_PathOutline;

class ArtworkGeometry : public testing::TestWithParam<ShippedShape> {};

template<typename Visit>
void forEachPoint(const PluginPath_Impl& path, const Visit& visit) {
    for (const Outline& outline : path.outlines()) {
        for (const Vx_PathVertex& v : outline.vertices) {
            visit(v.tanInX, v.tanInY);
            visit(v.x, v.y);
            visit(v.tanOutX, v.tanOutY);
        }
    }
}

/// A stated length or gap is what the file holds to within two in a hundred.
void expectStated(double stated, double measured) {
    if (std::isfinite(stated)) {
        EXPECT_NEAR(measured, stated, 0.02 * stated + 0.1);
    } else {
        EXPECT_EQ(measured, stated);
    }
}

TEST_P(ArtworkGeometry, holdsTheOutlinesThatAreMeant) {
    const PluginPath_Impl path = parsedShape(GetParam());
    const auto open = std::count_if(path.outlines().begin(), path.outlines().end(),
                                    [](const Outline& outline) { return outline.isOpen; });
    EXPECT_EQ(open, GetParam().open);
    EXPECT_EQ(static_cast<long>(path.outlines().size()) - open, GetParam().closed);
    for (const Outline& outline : path.outlines()) {
        EXPECT_GE(outline.vertices.size(), 2U);
    }
}

TEST_P(ArtworkGeometry, endsEveryClosedOutlineWhereItBegan) {
    const PluginPath_Impl path = parsedShape(GetParam());
    for (const Outline& outline : path.outlines()) {
        const Vx_PathVertex& first = outline.vertices.front();
        const Vx_PathVertex& last = outline.vertices.back();
        const double distance = std::hypot(last.x - first.x, last.y - first.y);
        if (outline.isOpen) {
            EXPECT_GT(distance, 10.0);
        } else {
            EXPECT_EQ(distance, 0.0);
        }
    }
}

TEST_P(ArtworkGeometry, hasTheBendsAndGapsThatItStates) {
    const PluginPath_Impl path = parsedShape(GetParam());
    int corners = 0;
    int swings = 0;
    int turns = 0;
    double area = 0;
    double radius = std::numeric_limits<double>::infinity();
    for (const Outline& outline : path.outlines()) {
        const OutlineMeasures measures = measured(outline);
        corners += measures.corners;
        swings += measures.swings;
        turns += measures.turns;
        area += outline.isOpen ? 0 : measures.area;
        radius = std::min(radius, measures.smallestRadius);
    }
    EXPECT_EQ(corners, GetParam().corners);
    EXPECT_EQ(swings, GetParam().swings);
    EXPECT_EQ(turns, GetParam().turns);
    EXPECT_NEAR(area / (512 * 512) * 100, GetParam().area, 0.0035 * GetParam().area + 0.05);
    expectStated(GetParam().smallestRadius, radius);
    expectStated(GetParam().smallestGap, smallestGap(path));
}

TEST_P(ArtworkGeometry, runsClockwiseAndIsCutAtItsExtremes) {
    const PluginPath_Impl path = parsedShape(GetParam());
    for (const Outline& outline : path.outlines()) {
        const OutlineMeasures measures = measured(outline);
        EXPECT_TRUE(outline.isOpen || measures.area > 0);
        EXPECT_LT(measures.overhang, 1.0);
    }
}

TEST_P(ArtworkGeometry, fillsTheBoxAlongItsLongerSide) {
    PluginPath_Impl path = parsedShape(GetParam());
    path.normalize();
    double low[2] = {1, 1};
    double high[2] = {0, 0};
    forEachPoint(path, [&](double x, double y) {
        ASSERT_TRUE(std::isfinite(x) && std::isfinite(y));
        low[0] = std::min(low[0], x);
        low[1] = std::min(low[1], y);
        high[0] = std::max(high[0], x);
        high[1] = std::max(high[1], y);
    });
    EXPECT_NEAR(std::max(high[0] - low[0], high[1] - low[1]), 0.5, 1e-12);
    EXPECT_GT(std::min(high[0] - low[0], high[1] - low[1]), 0.2);
    EXPECT_NEAR(low[0] + high[0], 1.0, 1e-12);
    EXPECT_NEAR(low[1] + high[1], 1.0, 1e-12);
}

INSTANTIATE_TEST_SUITE_P(Shapes, ArtworkGeometry,
                         testing::ValuesIn(shippedShapes().begin(), shippedShapes().end()),
                         [](const auto& test) { return testName(test.param); });

TEST(Artwork, hasAFileForEveryEntryOfTheTable) {
    const SVGShapeInfo* entry = g_svgShapes + 1;
    for (const ShippedShape& shape : shippedShapes()) {
        ASSERT_NE(entry->name, nullptr);
        EXPECT_STREQ(shape.name, entry->name);
        ++entry;
    }
    EXPECT_EQ(entry->name, nullptr);
}

} // namespace
} // namespace orbel::test
