#include "host/PluginHost.h"

#include "tests/support/TestHosts.h"

#include <gtest/gtest.h>

#include <cstring>

namespace orbel {
namespace {

using Base = PluginHost_API;

// The place of an operation in the table of virtual functions, as this ABI keeps it in a pointer to
// a member.
template<class Member>
std::size_t slotOf(Member member) {
    std::ptrdiff_t place[2];
    static_assert(sizeof member == sizeof place);
    std::memcpy(place, &member, sizeof place);
    return static_cast<std::size_t>(place[0]) / sizeof(void*); // its lowest bit is a mark
}

// Binaries call by place: operations of old stay where they are, new ones follow the last.
TEST(PluginHost, operationsKeepTheirSlots) {
    EXPECT_EQ(slotOf(&Base::getOutputWidth), 0U);
    EXPECT_EQ(slotOf(&Base::getInputRaster), 10U);
    EXPECT_EQ(slotOf(&Base::getAEHost), 19U);
    EXPECT_EQ(slotOf(&Base::getInputRasterInfo), 28U);
    EXPECT_EQ(slotOf(&Base::maintainEvenSize), 53U);
    EXPECT_EQ(slotOf(&Base::getTimeScale), 65U);
    EXPECT_EQ(slotOf(&Base::getUserData), 71U);
    EXPECT_EQ(slotOf(&Base::GetFixedFloatValue), 79U);
    EXPECT_EQ(slotOf(&Base::progress), 87U);
    EXPECT_EQ(slotOf(&Base::setCursor), 99U);
    EXPECT_EQ(slotOf(&Base::setOutputRaster), 104U);
    EXPECT_EQ(slotOf(&Base::ignoreNormalComposite), 121U);
    EXPECT_EQ(slotOf(&Base::makeUpdateApi), 122U);
    EXPECT_EQ(slotOf(&Base::getAlphaHandling), 123U);
    EXPECT_EQ(slotOf(&Base::getShapeText), 124U);
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
