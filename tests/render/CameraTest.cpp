#include "render/Camera.h"

#include "render/Projection.h"
#include "render/Units.h"
#include "tests/support/Scene.h"
#include "tests/support/TestHosts.h"

#include <gtest/gtest.h>

#include <cmath>

namespace orbel {
namespace {

class Camera : public testing::Test {
protected:
    Vx_Matrix4 camera(bool autoOrient, long time) {
        const test::Frame frame(m_scene);
        test::PlainHost host(&m_scene, frame);
        RenderArguments args;
        args.autoOrient = autoOrient;
        Vx_Matrix4 matrix;
        EXPECT_EQ(
            UGetCameraMatrix(&host, &args, &matrix, &m_zoom, time, 3000, frameGeometry(&host)), 0);
        return matrix;
    }
    static std::array<double, 3> forward(const Vx_Matrix4& camera) {
        const Vx_Point4 ahead{0, 0, 1, 0};
        Vx_Point4 seen;
        TransformPoint4(&ahead, &camera, &seen);
        return {seen.x, seen.y, seen.z};
    }

    test::Scene m_scene{test::CIRCLE};
    double m_zoom = 0.0;
};

TEST_F(Camera, autoOrientTurnsTowardTheMiddleFromEverywhere) {
    const std::array<double, 3> places[] = {{0.1, 0.5, -300}, {0.9, 0.5, -300}, {0.5, 0.1, -300},
                                            {0.5, 0.9, -300}, {0.2, 0.8, -50},  {-3, 2, -10},
                                            {0.3, 0.4, 200},  {0.5, 0.5, 100}};
    for (const auto& [x, y, z] : places) {
        m_scene.parameters.set(PARAM_CAMERA_XY, {x, y});
        m_scene.set(PARAM_CAMERA_Z, z);
        const std::array<double, 3> way{(0.5 - x) * 64, (0.5 - y) * 48, -z};
        const double distance = std::hypot(way[0], way[1], way[2]);
        const std::array<double, 3> ahead = forward(camera(true, 0));
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_NEAR(ahead[i], way[i] / distance, 1e-12) << x << " " << y << " " << z;
        }
    }
}

TEST_F(Camera, itsRotationsAreDegrees) {
    struct Row {
        int param;
        int axis; // row of the matrix: where the axis leads
        std::array<double, 3> expected;
    };
    const Row rows[] = {{PARAM_CAMERA_ROTATION_X, 2, {0, -1, 0}},
                        {PARAM_CAMERA_ROTATION_Y, 2, {1, 0, 0}},
                        {PARAM_CAMERA_ROTATION_Z, 0, {0, 1, 0}}};
    for (const Row& row : rows) {
        m_scene.set(row.param, 90);
        const Vx_Matrix4 matrix = camera(false, 0);
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_NEAR(matrix.m[row.axis][i], row.expected[i], 1e-12) << row.param;
        }
        m_scene.set(row.param, 0);
    }
}

TEST_F(Camera, isReadAtTheTimeAskedEvenBeforeTheFirstFrame) {
    m_scene.parameters.setKeys(PARAM_ZOOM, {{-1, {100}, Easing::Linear}, {1, {300}, Easing::Hold}});
    m_scene.animate(PARAM_CAMERA_Z, {-100}, {-200});
    EXPECT_EQ(camera(true, -50).m[3][2], -100.0);
    EXPECT_EQ(m_zoom, 150.0);
    EXPECT_EQ(camera(true, 500).m[3][2], -150.0);
}

} // namespace
} // namespace orbel
