#include "host/PluginHost.h"

#include "tests/support/Pictures.h"
#include "tests/support/TestHosts.h"

#include <gtest/gtest.h>

namespace orbel {
namespace {

using Base = PluginHost_API;
using Time = PluginHost_API::TimeObject;

TEST(PluginHost, whatNoHostAnswersIsLeftAlone) {
    test::BareHost host;
    int a = 5;
    int b = 6;
    double d = 9.0;
    EXPECT_NE(host.Base::getAppColor(0, a, b, a), 0);
    EXPECT_NE(host.Base::getHostVersionNum(a, b), 0);
    EXPECT_NE(host.Base::getFloatColor(3, 0, &d, &d, &d, nullptr), 0);
    EXPECT_EQ(a + b + d, 20);
    host.parameters.set(4, 12.5);
    EXPECT_EQ(host.GetFixedFloatValue(4, 0, Time(0, 100, 0), d), 0);
    EXPECT_EQ(d, 12.5);
    host.Base::getParamTriggerChangedEvent(a, b);
    EXPECT_EQ(a, -1);
    EXPECT_EQ(b, -1);
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
    struct Update final : test::SilentUpdate {
        std::vector<std::string> log;
        void setEnable(int param, int sub, bool enable) override {
            log.push_back(std::to_string(param) + std::to_string(sub) + (enable ? "on" : "off"));
        }
        void setParamName(int, int, const char* name) override { log.emplace_back(name); }
    } update;
    update.setParamNameEnable(8, 1, "Depth", true);
    EXPECT_EQ(update.log, (std::vector<std::string>{"Depth", "81on"}));
}

} // namespace
} // namespace orbel
