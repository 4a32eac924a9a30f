#include "host/RasterProxy.h"
#include "tests/support/Scene.h"
#include "tests/support/TestHosts.h"

#include <gtest/gtest.h>

namespace orbel {
namespace {

using test::PlainHost;
using test::Rgba;
using Time = PluginHost_API::TimeObject;

class MemoryHost : public testing::Test {
protected:
    test::Scene m_scene{test::CIRCLE};
    test::Frame m_frame{m_scene};
    PlainHost m_host{&m_scene, m_frame};
    const Time m_now{0, 100, 0};
};

TEST_F(MemoryHost, gettersLeaveValuesOfUnknownIdentifiersAlone) {
    for (const int param : {0, 2, 84, static_cast<int>(PARAM_GROUP_CAMERA)}) {
        EXPECT_TRUE(test::answersNothing(m_host, param)) << param;
    }
}

TEST_F(MemoryHost, togglesAreTrueOnlyAtExactlyOne) {
    for (const double value : {0.0, 1.0, 2.0, -1.0, 1e300}) {
        m_scene.set(PARAM_LOOP, value);
        bool on = false;
        EXPECT_EQ(m_host.GetBoolValue(PARAM_LOOP, 0, m_now, on), 0);
        EXPECT_EQ(on, value == 1.0) << value;
    }
}

TEST_F(MemoryHost, readsAtTheTimeAsked) {
    m_scene.animate(PARAM_CAMERA_XY, {0, 1}, {1, 0});
    double x = 0.0;
    double y = 0.0;
    m_host.GetPoint2DValue(PARAM_CAMERA_XY, 0, Time(250, 100, 0), x, y);
    EXPECT_EQ(x, 0.25);
    EXPECT_EQ(y, 0.75);
    m_host.GetPoint2DValue(PARAM_CAMERA_XY, 0, Time(125, 50, 0), x, y);
    EXPECT_EQ(x, 0.25);
}

TEST_F(MemoryHost, updatesAreConstantsOfTheStore) {
    PluginUpdate_API* const update = m_host.makeUpdateApi();
    ASSERT_TRUE(update->isValid());
    update->setFloatValue(PARAM_THICKNESS, 0, 3.5);
    update->setAngleValue(PARAM_ROTATION_Z, 0, 90.0);
    update->setIntValue(PARAM_PRESETS, 0, 7);
    update->setBoolValue(PARAM_LOOP, 0, true);
    update->setEnumValue(PARAM_VIEW, 0, 6);
    update->setPoint2DValue(PARAM_POSITION_XY, 0, 0.1, 0.9);
    update->setColorValue(PARAM_COLOR, 0, 0.1, 0.2, 0.3);
    const std::pair<int, ParameterValue> expected[] = {{PARAM_THICKNESS, {3.5}},
                                                       {PARAM_ROTATION_Z, {90.0}},
                                                       {PARAM_PRESETS, {7}},
                                                       {PARAM_LOOP, {1}},
                                                       {PARAM_VIEW, {6}},
                                                       {PARAM_POSITION_XY, {0.1, 0.9}},
                                                       {PARAM_COLOR, {0.1, 0.2, 0.3}}};
    for (const auto& [param, value] : expected) {
        ParameterValue read{};
        m_scene.parameters.evaluate(param, 0.0, read);
        EXPECT_EQ(read, value) << param;
    }
}

TEST_F(MemoryHost, copiesTheInputTopLeftAsFarAsBothReach) {
    m_host.copyInputToOutput();
    EXPECT_TRUE(test::samePicture(m_frame.picture(), m_frame.input.info(), 0.0));
    m_host.fillOutput();
    EXPECT_EQ(test::alphaSum(m_frame.picture()), 0.0);
    test::GuardedImage small(10, 60, RF_RGBA8, {4, true});
    PluginRaster_MEMORY_Impl raster(small.info());
    const PluginRasterProxy input(&m_host, m_host.getInputRaster(0), true, true);
    m_host.copy(input.getImpl(), &raster);
    EXPECT_TRUE(small.guardsIntact());
    for (const int y : {0, 47, 48}) {
        EXPECT_EQ(test::pixelAt(small.info(), 9, y),
                  y < 48 ? test::pixelAt(m_frame.input.info(), 9, y) : Rgba{});
    }
}

TEST_F(MemoryHost, copiesRectanglesClippedToBothImages) {
    struct Row {
        Vx_Rect from; // top, left, bottom, right
        Vx_Rect to;
        int copied;
    };
    const Row rows[] = {
        {{2, 3, 6, 8}, {10, 20, 14, 25}, 20}, {{2, 3, 6, 8}, {10, 20, 12, 40}, 10},
        {{2, 3, 3, 4}, {46, 62, 99, 99}, 1},  {{-4, -4, 100, 100}, {0, 0, 48, 64}, 48 * 64},
        {{2, 3, 2, 8}, {10, 20, 14, 25}, 0},  {{0, 0, 9, 9}, {60, 70, 80, 90}, 0},
    };
    for (Row row : rows) {
        test::paint(m_frame.input.info(), [](int, int) { return Rgba{0, 0, 0, 1}; });
        m_host.fillOutput();
        const PluginRasterProxy input(&m_host, m_host.getInputRaster(0), true, true);
        const PluginRasterProxy output(&m_host, m_host.getOutputRaster(), true, true);
        m_host.copy(input.getImpl(), output.getImpl(), &row.from, &row.to);
        EXPECT_EQ(test::alphaSum(m_frame.picture()), row.copied) << row.from.top << row.to.top;
        EXPECT_TRUE(m_frame.output.guardsIntact());
    }
}

TEST_F(MemoryHost, allocatesRastersInTheLayoutOfTheOutput) {
    int rowBytes = 0;
    const PluginRasterProxy raster(
        &m_host, m_host.allocRaster(9, 5, PluginRaster_API::PIXEL_TYPE_FLOAT, rowBytes, 0), true,
        true);
    RasterInfo info;
    m_host.getRasterInfo(raster.getImpl(), &info);
    EXPECT_EQ(info.pixelFormat, RF_RGBA8);
    EXPECT_EQ(rowBytes, 36);
    EXPECT_EQ(raster->getRowBytes(), 36);
    EXPECT_EQ(raster->getPixelType(), PluginRaster_API::PIXEL_TYPE_8);
    const std::pair<int, int> impossible[] = {{0, 5}, {5, 0}, {-1, 5}, {40000, 5}, {5, 1 << 30}};
    for (const auto& [width, height] : impossible) {
        EXPECT_EQ(m_host.allocRaster(width, height, PluginRaster_API::PIXEL_TYPE_8, rowBytes, 0),
                  nullptr);
    }
}

TEST_F(MemoryHost, aRasterGivenBackIsEmpty) {
    int rowBytes = 0;
    PluginRaster_API* const raster =
        m_host.allocRaster(9, 5, PluginRaster_API::PIXEL_TYPE_8, rowBytes, 0);
    m_host.deallocRaster(raster);
    m_host.deallocRaster(nullptr);
    EXPECT_EQ(raster->getWidth(), 0);
    EXPECT_EQ(raster->getExtentRight(), -1);
    delete raster;
}

TEST_F(MemoryHost, aReplacedOutputTakesItsPlace) {
    test::GuardedImage other(7, 3, RF_RGBA8, {});
    PluginRaster_MEMORY_Impl raster(other.info());
    m_host.setOutputRaster(&raster);
    EXPECT_EQ(m_host.getOutputWidth(), 7);
    EXPECT_EQ(m_host.getOutputHeight(), 3);
    m_host.copyInputToOutput();
    EXPECT_GT(test::alphaSum(other.info()), 0.0);
    EXPECT_EQ(test::alphaSum(m_frame.picture()), 0.0);
}

TEST_F(MemoryHost, answersFromItsSettings) {
    m_scene.settings = {2.5, 0.5, 0.25, false, 600, 20, true};
    PlainHost host(&m_scene, m_frame);
    EXPECT_EQ(host.getCurrentTime(), 50);
    EXPECT_EQ(host.getTimeScale(), 600);
    EXPECT_EQ(host.getTimeStep(), 20);
    EXPECT_EQ(host.getScaleX(), 0.5);
    EXPECT_EQ(host.getScaleY(), 0.25);
    EXPECT_FALSE(host.isQualityHigh());
    EXPECT_TRUE(host.ignoreNormalComposite());
    EXPECT_EQ(host.getPathAPI(), nullptr);
    EXPECT_EQ(host.progress(1, 2), 0);
    host.showWarning("nobody listens");
    int a = 0;
    int b = 0;
    host.setOrigin(3, 4);
    host.getOrigin(a, b);
    EXPECT_EQ(a * 10 + b, 34);
    void* const memory = host.allocMemory(100);
    ASSERT_NE(memory, nullptr);
    EXPECT_EQ(host.lockMemory(memory), memory);
    host.deallocMemory(memory);
}

TEST_F(MemoryHost, mathsIsTheLibrarysInBothWidths) {
    const auto check = [this](auto x, auto y) {
        EXPECT_NEAR(m_host.math_sqrt(x), std::sqrt(x), 1e-6);
        EXPECT_NEAR(m_host.math_floor(x), std::floor(x), 1e-6);
        EXPECT_NEAR(m_host.math_exp(x), std::exp(x), 1e-6);
        EXPECT_NEAR(m_host.math_atan2(x, y), std::atan2(x, y), 1e-6);
        EXPECT_NEAR(m_host.math_fabs(y), std::fabs(y), 1e-6);
        EXPECT_NEAR(m_host.math_sin(x), std::sin(x), 1e-6);
        EXPECT_NEAR(m_host.math_cos(x), std::cos(x), 1e-6);
        EXPECT_NEAR(m_host.math_fmod(y, x), std::fmod(y, x), 1e-6);
        EXPECT_NEAR(m_host.math_pow(x, y), std::pow(x, y), 1e-6);
        EXPECT_NEAR(m_host.math_ceil(x), std::ceil(x), 1e-6);
        EXPECT_NEAR(m_host.math_log(x), std::log(x), 1e-6);
    };
    check(2.3, -7.7);
    check(2.3F, -7.7F);
}

} // namespace
} // namespace orbel
