#include "params/ParameterRules.h"

#include "params/ParameterTable.h"

#include <gmock/gmock.h>

#include <map>

namespace orbel {
namespace {

class SwitchLog final : public PluginUpdate_API {
public:
    std::map<int, bool> enabled;
    bool isValid() override { return true; }
    void setFloatValue(int, int, double) override {}
    void setAngleValue(int, int, double) override {}
    void setIntValue(int, int, int) override {}
    void setBoolValue(int, int, bool) override {}
    void setEnumValue(int, int, unsigned) override {}
    void setPoint2DValue(int, int, double, double) override {}
    void setColorValue(int, int, double, double, double) override {}
    void setEnable(int param, int, bool enable) override { enabled[param] = enable; }
    void setGroupOpen(int, int, bool) override {}
    void setParamName(int, int, const char*) override {}
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
