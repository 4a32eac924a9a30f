#include "render/RenderDispatch.h"

#include "tests/support/Scene.h"
#include "tests/support/TestHosts.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>

namespace orbel {
namespace {

using test::Frame;
using test::Scene;
using Host = test::SceneHost<test::FailingHost>;

/// Renders with a failure and checks that every raster came back.
class RenderFailure : public testing::Test {
protected:
    RenderFailure() { m_scene.set(PARAM_THICKNESS, 3).animate(PARAM_START, {0}, {90}); }

    int renderWith(const std::function<void(Host&)>& arrange) {
        m_frame = Frame(m_scene);
        Host host(&m_scene, m_frame);
        arrange(host);
        const int result = Render(&host);
        EXPECT_TRUE(host.held.empty());
        EXPECT_TRUE(m_frame.output.guardsIntact());
        m_allocated = host.allocated;
        m_progressCalls = host.progressCalls;
        return result;
    }

    Scene m_scene{test::CIRCLE};
    Frame m_frame{m_scene};
    int m_allocated = 0;
    long m_progressCalls = 0;
};

TEST_F(RenderFailure, missingRastersEndTheFrame) {
    EXPECT_EQ(renderWith([](Host& host) { host.inputMissing = true; }), 1);
    EXPECT_EQ(renderWith([](Host& host) { host.outputMissing = true; }), 1);
    EXPECT_EQ(test::alphaSum(m_frame.picture()), 0.0);
}

TEST_F(RenderFailure, onlyBlurNeedsASampleRaster) {
    EXPECT_EQ(renderWith([](Host& host) { host.allocFails = true; }), 0);
    EXPECT_EQ(m_allocated, 0);
    m_scene.set(PARAM_MOTION_BLUR, 1);
    EXPECT_EQ(renderWith([](Host&) {}), 0);
    EXPECT_EQ(m_allocated, 1);
    EXPECT_EQ(renderWith([](Host& host) { host.allocFails = true; }), 1);
    m_scene.set(PARAM_START, 0); // nothing moves: no raster either
    EXPECT_EQ(renderWith([](Host& host) { host.allocFails = true; }), 0);
}

TEST_F(RenderFailure, exhaustedMemoryEndsTheFrame) {
    EXPECT_EQ(renderWith([](Host& host) { host.memoryFails = true; }), 1);
    EXPECT_EQ(renderWith([](Host& host) { host.lockFails = true; }), 1);
}

TEST_F(RenderFailure, rastersThatNobodyCanDescribeEndTheFrame) {
    EXPECT_EQ(renderWith([](Host& host) { host.recordsMissing = true; }), 1);
    EXPECT_EQ(test::alphaSum(m_frame.picture()), 0.0);
}

TEST_F(RenderFailure, anExceptionEndsTheFrameAndTheLockIsFree) {
    EXPECT_EQ(renderWith([](Host& host) { host.mathsThrows = true; }), 1);
    EXPECT_EQ(renderWith([](Host&) {}), 0);
}

TEST_F(RenderFailure, theUsersAbortIsHandedBack) {
    m_scene.set(PARAM_THICKNESS, 0.5);
    EXPECT_EQ(renderWith([](Host&) {}), 0);
    const long calls = m_progressCalls;
    ASSERT_GE(calls, 3);
    for (const long at : {1L, 2L, calls}) {
        EXPECT_EQ(renderWith([at](Host& host) { host.abortAtCall = at; }), 42);
        EXPECT_EQ(m_progressCalls, at);
    }
    m_scene.set(PARAM_MOTION_BLUR, 1).set(PARAM_ENABLE_REPEATER, 1);
    EXPECT_EQ(renderWith([calls](Host& host) { host.abortAtCall = 2 * calls; }), 42);
}

// Whatever a host hands in, a frame ends, and soon.
TEST_F(RenderFailure, hostileParametersNeitherHangNorCrash) {
    m_scene.width = 24;
    m_scene.height = 18;
    m_scene.set(PARAM_ENABLE_REPEATER, 1).set(PARAM_ENABLE_TAPER, 1).set(PARAM_LOOP, 1);
    m_scene.set(PARAM_BEND, 0.3).set(PARAM_MOTION_BLUR, 1).set(PARAM_LEVELS, 2);
    const double hostile[] = {std::nan(""), HUGE_VAL, -HUGE_VAL, 1e300, -1e300,
                              1e9,          0.0,      -1.0,      1e-300};
    for (const ParameterRow& row : parameterTable()) {
        for (const double value : hostile) {
            if (row.isParameter()) {
                const ParameterStore former = m_scene.parameters;
                m_scene.parameters.set(row.id, {value, value, value});
                const auto begin = std::chrono::steady_clock::now();
                renderWith([](Host&) {});
                EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(30))
                    << row.name << " " << value;
                m_scene.parameters = former;
            }
        }
    }
}

TEST_F(RenderFailure, hostileShapesEnd) {
    for (const char* const content :
         {"<circle/>", "<line/>", "<line x2='1e308' y2='1e-308'/>", "<path d='M0 0'/>",
          "<path d='M1 1 L1 1 L1 1 Z'/>", "<path d='M0 0 L1e308 1e308 L-1e308 5 Z'/>",
          "<polygon points=''/>", "<path d='Z Z Z'/>", "text"}) {
        setUserDataPath(&m_scene.shape, test::shapeFile(content).c_str());
        EXPECT_EQ(renderWith([](Host&) {}), 0) << content;
    }
}

TEST_F(RenderFailure, tinyAndThinPicturesRender) {
    for (const auto& [width, height] : {std::pair{1, 1}, {1, 300}, {300, 1}, {2, 2}, {3, 1}}) {
        m_scene.width = width;
        m_scene.height = height;
        for (const RasterFormat format : test::RENDERED_FORMATS) {
            m_scene.format = format;
            EXPECT_EQ(renderWith([](Host&) {}), 0) << width << " x " << height;
        }
    }
}

TEST_F(RenderFailure, hostileInputPixelsDoNoHarm) {
    for (const RasterFormat format : {RF_ARGB32F, RF_RGBA32F}) {
        m_scene.format = format;
        for (int mode = 0; mode < 18; ++mode) {
            m_scene.set(PARAM_TRANSFER_MODE, mode);
            EXPECT_EQ(renderWith([this](Host&) {
                          test::paint(m_frame.input.info(), [](int x, int y) {
                              const double values[] = {std::nan(""), HUGE_VAL, -HUGE_VAL, 1e30,
                                                       -1.0,         0.0,      1e-40};
                              return test::Rgba{values[x % 7], values[y % 7], values[(x + y) % 7],
                                                values[(x * y) % 7]};
                          });
                      }),
                      0);
        }
    }
}

} // namespace
} // namespace orbel
