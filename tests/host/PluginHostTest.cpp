#include "host/PluginHost.h"

#include "tests/support/Pictures.h"
#include "tests/support/TestHosts.h"

#include <gtest/gtest.h>

namespace orbel {
namespace {

using Base = PluginHost_API;
using Time = PluginHost_API::TimeObject;

TEST(PluginHost, defaultsOfTheOptionalOperations) {
    test::BareHost host;
    int a = 5;
    int b = 6;
    long p = 7;
    float f = 8.0F;
    double d = 9.0;
    struct Row {
        const char* name;
        double actual;
        double expected;
    };
    const Row rows[] = {
        {"getOutputOriginX", 1.0 * host.Base::getOutputOriginX(), 0},
        {"getOutputOriginY", 1.0 * host.Base::getOutputOriginY(), 0},
        {"setCursor", 1.0 * host.Base::setCursor(3), 1},
        {"forceUIUpdate", 1.0 * host.Base::forceUIUpdate(), 1},
        {"getAppColor", 1.0 * host.Base::getAppColor(0, a, b, a), 1},
        {"getMousePos", 1.0 * host.Base::getMousePos(p, p), 1},
        {"getHostVersionNum", 1.0 * host.Base::getHostVersionNum(a, b), 1},
        {"transformWorld", 1.0 * host.Base::transformWorld(nullptr, nullptr, nullptr, nullptr), 1},
        {"getFloatColor", 1.0 * host.Base::getFloatColor(3, 0, &d, &d, &d, nullptr), 1},
        {"getHeightScale", host.Base::getHeightScale(), 1.0},
        {"hasCamera", 1.0 * host.Base::hasCamera(), 0},
        {"getLayerSize", 1.0 * host.Base::getLayerSize(0, 0, f, f), 1},
        {"setOutputSize", 1.0 * host.Base::setOutputSize(1, 1), 1},
        {"getFrameIncrement", 1.0 * host.Base::getFrameIncrement(), 1},
        {"getFPS", 1.0 * host.Base::getFPS(f), 0},
        {"ignoreNormalComposite", 1.0 * host.Base::ignoreNormalComposite(), 0},
        {"untouched int", 1.0 * a, 5},
        {"untouched second int", 1.0 * b, 6},
        {"untouched long", static_cast<double>(p), 7},
        {"untouched float", static_cast<double>(f), 8},
        {"untouched double", d, 9},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(row.actual, row.expected) << row.name;
    }
    EXPECT_EQ(host.Base::getOFXHost(), nullptr);
    EXPECT_EQ(host.Base::getGASKETHost(), nullptr);
    EXPECT_EQ(host.Base::getRTFXHost(), nullptr);
    EXPECT_EQ(host.Base::getVEGASHost(), nullptr);
    EXPECT_EQ(host.Base::makeUpdateApi(), nullptr);
    host.parameters.set(4, 12.5);
    EXPECT_EQ(host.GetFixedFloatValue(4, 0, Time(0, 100, 0), d), 0);
    EXPECT_EQ(d, 12.5);
    host.Base::getParamTriggerChangedEvent(a, b);
    EXPECT_EQ(a, -1);
    EXPECT_EQ(b, -1);
}

TEST(PluginHost, timeObjectsCarryTicks) {
    Time time(30, 100, 7);
    time.cur_time(-250);
    EXPECT_EQ(time.getTime(), -250.0);
    EXPECT_EQ(time.time_step(), 100);
    EXPECT_EQ(PluginHost_MEMORY_Impl::timeToFrame(time), -2.5);
}

TEST(PluginHost, fillClipsItsRectangleAndClearsEverythingWithoutOne) {
    constexpr std::int16_t NO_RECT = 999;
    struct Row {
        Vx_Rect rect; // top, left, bottom, right
        int cleared;
    };
    const Row rows[] = {
        {{1, 2, 3, 4}, 4},
        {{-5, -5, 2, 3}, 6},
        {{4, 6, 100, 100}, 2},
        {{0, 0, 5, 8}, 40},
        {{3, 3, 3, 5}, 0},
        {{3, 5, 4, 3}, 0},
        {{9, 9, 12, 12}, 0},
        {{-9, -9, -1, -1}, 0},
        {{4, 2, 1, 6}, 0},
        {{NO_RECT, 0, 0, 0}, 40},
        {{-32768, -32768, 32767, 32767}, 40},
    };
    for (const RasterFormat format : test::RENDERED_FORMATS) {
        for (const Row& row : rows) {
            test::GuardedImage image(8, 5, format, {16, true});
            test::paint(image.info(), [](int, int) { return test::Rgba{1, 1, 1, 1}; });
            PluginRaster_MEMORY_Impl raster(image.info());
            Vx_Rect rect = row.rect;
            test::BareHost().fill(&raster, row.rect.top == NO_RECT ? nullptr : &rect);
            EXPECT_EQ(test::alphaSum(image.info()), 40 - row.cleared) << rect.top << rect.left;
            EXPECT_TRUE(image.guardsIntact());
        }
    }
}

TEST(PluginUpdate, renamesBeforeItEnables) {
    struct Update final : PluginUpdate_API {
        std::vector<std::string> log;
        bool isValid() override { return true; }
        void setFloatValue(int, int, double) override {}
        void setAngleValue(int, int, double) override {}
        void setIntValue(int, int, int) override {}
        void setBoolValue(int, int, bool) override {}
        void setEnumValue(int, int, unsigned) override {}
        void setPoint2DValue(int, int, double, double) override {}
        void setColorValue(int, int, double, double, double) override {}
        void setEnable(int param, int sub, bool enable) override {
            log.push_back(std::to_string(param) + std::to_string(sub) + (enable ? "on" : "off"));
        }
        void setGroupOpen(int, int, bool) override {}
        void setParamName(int, int, const char* name) override { log.emplace_back(name); }
    } update;
    update.setParamNameEnable(8, 1, "Depth", true);
    EXPECT_EQ(update.log, (std::vector<std::string>{"Depth", "81on"}));
}

} // namespace
} // namespace orbel
