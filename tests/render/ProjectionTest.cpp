#include "render/Projection.h"

#include "render/Units.h"
#include "tests/support/TestHosts.h"

#include <gtest/gtest.h>

namespace orbel {
namespace {

struct Projected {
    double x;
    double y;
    double depth;
    double size;
};

Vx_Matrix4 translation(double x, double y, double z) {
    return {{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {x, y, z, 1}}};
}

ProjectionSetup setupFor(int view) {
    ProjectionSetup setup{};
    setup.viewFromPath = translation(-32, -24, 100);
    setup.layerFromPath = translation(0, 0, 10);
    setup.zoom = 200;
    setup.horizontalAspect = 1.0;
    setup.scaleX = 0.5;
    setup.scaleY = 0.25;
    setup.width = 64;
    setup.height = 48;
    setup.view = view;
    return setup;
}

Projected projected(double x, double y, const ProjectionSetup& setup) {
    test::BareHost host;
    Projected p{x, y, -1.0, 2.0};
    project(&host, &p.x, &p.y, &p.depth, &p.size, setup);
    return p;
}

TEST(Projection, theCameraDividesByDepth) {
    struct Row {
        double aspect;
        double width; // an odd size has its middle on half a pixel
        double z;
        Projected expected;
    };
    const Row rows[] = {{1, 64, 100, {42, 29, 100, 2}},   {1.5, 64, 100, {47, 29, 100, 2}},
                        {1, 65, 100, {42.5, 29, 100, 2}}, {1, 64, 200, {37, 26.5, 200, 1}},
                        {1, 64, 0, {0, 0, 0, 0}},         {1, 64, -100, {22, 19, -100, -2}}};
    for (const Row& row : rows) {
        ProjectionSetup setup = setupFor(VIEW_CAMERA);
        setup.viewFromPath = translation(-32, -24, row.z);
        setup.horizontalAspect = row.aspect;
        setup.width = row.width;
        const Projected p = projected(42, 34, setup);
        EXPECT_DOUBLE_EQ(p.x, row.expected.x) << row.z;
        EXPECT_DOUBLE_EQ(p.y, row.expected.y) << row.z;
        EXPECT_DOUBLE_EQ(p.depth, row.expected.depth) << row.z;
        EXPECT_DOUBLE_EQ(p.size, row.expected.size) << row.z;
    }
}

// The place comes from the layer alone, the depth that clips and fades from the camera.
TEST(Projection, theOtherViewsAreOrthographic) {
    struct Row {
        View view;
        double x;
        double y;
    };
    const Row rows[] = {{VIEW_FRONT, 21, 8.5}, {VIEW_LEFT, 27, 8.5},  {VIEW_TOP, 21, 21.5},
                        {VIEW_BACK, 43, 8.5},  {VIEW_RIGHT, 37, 8.5}, {VIEW_BOTTOM, 21, 26.5}};
    for (const Row& row : rows) {
        const Projected p = projected(42, 34, setupFor(row.view));
        EXPECT_DOUBLE_EQ(p.x, row.x) << row.view;
        EXPECT_DOUBLE_EQ(p.y, row.y) << row.view;
        EXPECT_DOUBLE_EQ(p.depth, 100) << row.view;
        EXPECT_DOUBLE_EQ(p.size, 1) << row.view;
    }
}

TEST(Projection, aViewOutsideTheMenuIsTheTop) {
    const Projected top = projected(42, 34, setupFor(VIEW_TOP));
    for (const int view : {0, 8}) {
        const Projected p = projected(42, 34, setupFor(view));
        EXPECT_EQ(p.x, top.x) << view;
        EXPECT_EQ(p.y, top.y) << view;
    }
}

TEST(Projection, bendUsesFullResolutionUnits) {
    ProjectionSetup setup = setupFor(VIEW_FRONT); // 64 at scale 0.5: 128 wide
    setup.bend = 1;
    EXPECT_NEAR(projected(64, 96, setup).x, 32, 1e-9);
    EXPECT_NEAR(projected(128, 96, setup).x, 32 + 64 / PI, 1e-9);
}

} // namespace
} // namespace orbel
