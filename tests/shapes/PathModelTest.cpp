#include "shapes/PathModel.h"

#include "doors/memory/PluginHost_MEMORY_Impl.h"
#include "tests/shapes/SvgText.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

namespace orbel {
namespace {

using test::Outline;

Vx_PathVertex corner(double x, double y) {
    return {x, y, x, y, x, y};
}

PluginPath_Impl shapeOf(const Outline& outline) {
    PluginPath_Impl shape;
    shape.addOutline(outline);
    return shape;
}

void* checkout(PluginPath_Impl& shape, unsigned long id) {
    void* outline = &shape;
    EXPECT_EQ(shape.CheckoutPath(nullptr, id, 0, 1, 1, &outline), 0);
    return outline;
}

Vx_PathVertex vertexOf(PluginPath_Impl& shape, long index) {
    Vx_PathVertex vertex{};
    EXPECT_EQ(shape.PathVertexInfo(nullptr, checkout(shape, 1), index, &vertex), 0);
    return vertex;
}

TEST(PathModel, identifiersAreOneBasedAtCheckoutOnly) {
    PluginPath_Impl shape;
    shape.addOutline({{corner(1, 1)}, true});
    shape.addOutline({{corner(2, 2)}, false});
    unsigned long id = 0;
    EXPECT_EQ(shape.PathInfo(nullptr, 2, &id), 0);
    EXPECT_EQ(id, 2U);
    EXPECT_EQ(checkout(shape, id), &shape.outlines()[1]);
    for (const unsigned long unknown : {0UL, 3UL, ~0UL}) {
        EXPECT_EQ(checkout(shape, unknown), nullptr) << unknown;
    }
    long count = 0;
    EXPECT_EQ(shape.NumPaths(nullptr, &count), 0);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(shape.CheckinPath(nullptr, 1, true, nullptr), 0);
}

TEST(PathModel, whatIsNotThereIsAnError) {
    PluginPath_Impl shape = shapeOf({{corner(1, 1)}, true});
    bool open = false;
    long count = 0;
    Vx_PathVertex vertex{};
    EXPECT_EQ(shape.PathIsOpen(nullptr, nullptr, &open), 1);
    EXPECT_EQ(shape.PathNumSegments(nullptr, nullptr, &count), 1);
    EXPECT_EQ(shape.PathVertexInfo(nullptr, nullptr, 0, &vertex), 1);
    EXPECT_EQ(shape.PathVertexInfo(nullptr, checkout(shape, 1), -1, &vertex), 1);
    EXPECT_EQ(shape.PathVertexInfo(nullptr, checkout(shape, 1), 1, &vertex), 1);
}

TEST(PathModel, segmentsFollowFromVerticesAndOpenness) {
    struct Case {
        std::size_t vertices;
        bool open;
        long segments;
    };
    for (const Case& c : {Case{0, true, 0}, Case{0, false, 0}, Case{1, true, 0}, Case{1, false, 1},
                          Case{4, true, 3}, Case{4, false, 4}}) {
        PluginPath_Impl shape = shapeOf({test::Vertices(c.vertices), c.open});
        long segments = -1;
        bool open = !c.open;
        EXPECT_EQ(shape.PathNumSegments(nullptr, checkout(shape, 1), &segments), 0);
        EXPECT_EQ(shape.PathIsOpen(nullptr, checkout(shape, 1), &open), 0);
        EXPECT_EQ(segments, c.segments);
        EXPECT_EQ(open, c.open);
    }
}

struct OutputCase {
    int width;
    int height;
    double aspect;
    double renderScale;
    double left; // where the unit square begins and ends
    double right;
    double top;
    double bottom;
};

TEST(PathModel, theUnitSquareSpansTheShorterSideOfTheOutput) {
    for (const OutputCase& c : {OutputCase{1920, 1080, 1.0, 1.0, 420, 1500, 0, 1080},
                                OutputCase{1920, 1080, 0.9, 1.0, 360, 1560, 0, 1080},
                                OutputCase{100, 201, 1.0, 1.0, 0, 100, 50.5, 150.5},
                                OutputCase{960, 540, 1.0, 0.5, 345, 615, 135, 405}}) {
        MemoryHostSettings settings;
        settings.renderScaleX = settings.renderScaleY = c.renderScale;
        RasterInfo info;
        info.width = c.width;
        info.height = c.height;
        PluginHost_MEMORY_Impl host(info, info, nullptr, settings);
        PluginPath_Impl shape = shapeOf({{corner(0, 0), corner(1, 1), corner(0.5, 0.5)}, true});
        EXPECT_EQ(shape.setPathAspectRatio(c.aspect, &host), 0);
        EXPECT_EQ(vertexOf(shape, 0), corner(c.left, c.top));
        EXPECT_EQ(vertexOf(shape, 1), corner(c.right, c.bottom));
        EXPECT_EQ(vertexOf(shape, 2), corner(c.width * 0.5, c.height * 0.5));
    }
}

TEST(PathModel, setPathScaleReplacesTheScaleOfTheHost) {
    RasterInfo info;
    info.width = info.height = 100;
    PluginHost_MEMORY_Impl host(info, info, nullptr, {});
    PluginPath_Impl shape = shapeOf({{corner(0, 0), corner(1, 1)}, true});
    shape.setPathAspectRatio(1.0, &host);
    EXPECT_TRUE(shape.setPathScale(2.0, 0.5, true));
    EXPECT_EQ(vertexOf(shape, 0), corner(-50, 25));
    EXPECT_EQ(vertexOf(shape, 1), corner(150, 75));
    EXPECT_FALSE(shape.setPathScale(1.0, 1.0, false));
}

TEST(PathModel, clampUnitesABoxWithAPoint) {
    std::array<double, 4> box{1, 1, 0, 0};
    PluginPath_Impl::clamp(5, -3, box.data());
    EXPECT_EQ(box, (std::array<double, 4>{5, -3, 5, -3}));
    PluginPath_Impl::clamp(-1, 2, box.data());
    EXPECT_EQ(box, (std::array<double, 4>{-1, -3, 5, 2}));
    PluginPath_Impl::clamp(0, 0, box.data());
    EXPECT_EQ(box, (std::array<double, 4>{-1, -3, 5, 2}));
    std::array<double, 4> emptyInY{0, 3, 9, 2};
    PluginPath_Impl::clamp(7, 8, emptyInY.data());
    EXPECT_EQ(emptyInY, (std::array<double, 4>{7, 8, 7, 8}));
}

TEST(PathModel, normalizeTakesControlsIntoTheBox) {
    PluginPath_Impl shape = shapeOf({{{-10, 0, 0, 0, 10, 0}, {0, -10, 0, 0, 0, 10}}, true});
    shape.normalize();
    EXPECT_EQ(shape.outlines()[0].vertices[0], (Vx_PathVertex{0.25, 0.5, 0.5, 0.5, 0.75, 0.5}));
}

TEST(PathModel, normalizeFlipsWhenTheFlagWasSetBefore) {
    PluginPath_Impl shape = shapeOf({{corner(0, 0), corner(2, 1)}, true});
    shape.setPathScale(1, 1, true);
    shape.normalize();
    EXPECT_EQ(shape.outlines()[0].vertices[0], corner(0.25, 0.625));
}

TEST(PathModel, aFlatShapeHasNoNumberInTheFlatDirection) {
    PluginPath_Impl shape = shapeOf({{corner(0, 5), corner(10, 5)}, true});
    shape.normalize();
    for (const Vx_PathVertex& vertex : shape.outlines()[0].vertices) {
        EXPECT_TRUE(std::isnan(vertex.y) && std::isnan(vertex.tanInY));
    }
    EXPECT_EQ(shape.outlines()[0].vertices[1].x, 0.75);
    PluginPath_Impl().normalize();
}

} // namespace
} // namespace orbel
