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

/// Degrees between the direction in which an outline arrives at a point and that in which it goes
/// on.
double turn(const Vx_PathVertex& arriving, const Vx_PathVertex& leaving) {
    const double inX = arriving.x - arriving.tanInX;
    const double inY = arriving.y - arriving.tanInY;
    const double outX = leaving.tanOutX - leaving.x;
    const double outY = leaving.tanOutY - leaving.y;
    return std::abs(std::atan2(inX * outY - inY * outX, inX * outX + inY * outY)) * 180 / M_PI;
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

TEST_P(ArtworkGeometry, hasNoKinksWhereItIsMeantToBeSmooth) {
    if (!GetParam().smooth) {
        return;
    }
    const PluginPath_Impl path = parsedShape(GetParam());
    for (const Outline& outline : path.outlines()) {
        for (std::size_t i = 1; i + 1 < outline.vertices.size(); ++i) {
            EXPECT_LT(turn(outline.vertices[i], outline.vertices[i]), 0.5) << "vertex " << i;
        }
        if (!outline.isOpen) {
            EXPECT_LT(turn(outline.vertices.back(), outline.vertices.front()), 0.5) << "closing";
        }
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
