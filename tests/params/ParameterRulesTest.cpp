#include "params/ParameterRules.h"

#include "params/ParameterTable.h"
#include "tests/support/TestHosts.h"

#include <gmock/gmock.h>

#include <map>

namespace orbel {
namespace {

struct SwitchLog final : test::SilentUpdate {
    std::map<int, bool> enabled;
    void setEnable(int param, int, bool enable) override { enabled[param] = enable; }
};

std::map<int, bool> afterChange(int param, std::optional<int> value) {
    SwitchLog log;
    applyEnablingRules(
        param, [&](const EnablingRule&) { return value; }, log);
    return log.enabled;
}

TEST(ParameterRules, switchTheDependentsOfTheChangedParameter) {
    const std::map<int, bool> shutterOff{{42, false}, {43, false}, {44, false}};
    EXPECT_EQ(afterChange(PARAM_MOTION_BLUR, 0), shutterOff);
    EXPECT_EQ(afterChange(PARAM_MOTION_BLUR, 2), shutterOff);
    EXPECT_EQ(afterChange(PARAM_STROKE_SEQUENTIALLY, 0),
              (std::map<int, bool>{{PARAM_LOOP, true}, {PARAM_COMPRESS_TO_FIT, true}}));
    EXPECT_EQ(afterChange(PARAM_ENABLE_REPEATER, 1).size(), 11U);
    EXPECT_EQ(afterChange(PARAM_ENABLE_REPEATER, std::nullopt).size(), 0U);
    EXPECT_EQ(afterChange(PARAM_THICKNESS, 1).size(), 0U);
}

} // namespace
} // namespace orbel
