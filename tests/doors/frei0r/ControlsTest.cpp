#include "tests/doors/frei0r/LoadedPlugin.h"

#include "doors/memory/ParameterStore.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <fstream>
#include <limits>
#include <sstream>

namespace orbel::frei0r {
namespace {

const std::array<const char*, 5> typeNames{"bool", "double", "color", "position", "string"};

std::string textOf(const Effect& effect, const f0r_param_info_t& control) {
    std::ostringstream text;
    switch (control.type) {
    case F0R_PARAM_STRING:
        text << '"' << effect.get<f0r_param_string>(control.name) << '"';
        break;
    case F0R_PARAM_COLOR: {
        const auto color = effect.get<f0r_param_color_t>(control.name);
        text << color.r << '/' << color.g << '/' << color.b;
        break;
    }
    case F0R_PARAM_POSITION: {
        const auto position = effect.get<f0r_param_position_t>(control.name);
        text << position.x << '/' << position.y;
        break;
    }
    default:
        text << effect.get<double>(control.name);
    }
    return text.str();
}

// Projects refer to controls by name, command lines by place: both are written down for ever.
TEST(Frei0rControls, keepTheirPlacesNamesTypesAndInitialValues) {
    const Effect effect(8, 8);
    std::ostringstream actual;
    for (int i = 0; i < plugin().info().num_params; ++i) {
        const f0r_param_info_t control = plugin().control(i);
        ASSERT_NE(control.explanation, nullptr);
        actual << i << ' ' << typeNames.at(static_cast<std::size_t>(control.type)) << ' '
               << textOf(effect, control) << ' ' << control.name << '\n';
    }
    std::ifstream file(ORBEL_FREI0R_CONTROLS);
    std::ostringstream expected;
    expected << file.rdbuf();
    EXPECT_EQ(actual.str(), expected.str());
}

TEST(Frei0rControls, giveBackWhatTheyWereSetTo) {
    Effect effect(8, 8);
    for (int i = 0; i < plugin().info().num_params; ++i) {
        const f0r_param_info_t control = plugin().control(i);
        switch (control.type) {
        case F0R_PARAM_STRING:
            break; // a text has to make sense: see the scenes
        case F0R_PARAM_COLOR:
            effect.set(control.name, f0r_param_color_t{0.25F, 0.1F, 0.7F});
            EXPECT_EQ(textOf(effect, control), "0.25/0.1/0.7");
            break;
        case F0R_PARAM_POSITION:
            effect.set(control.name, f0r_param_position_t{-0.25, 1.5});
            EXPECT_EQ(textOf(effect, control), "-0.25/1.5");
            break;
        default:
            effect.set(control.name, 0.625);
            EXPECT_EQ(textOf(effect, control), "0.625") << control.name;
        }
    }
}

TEST(Frei0rControls, thatDoNotExistAreLeftAlone) {
    Effect effect(8, 8);
    double value = 0.5;
    for (const int index : {-1, 1000, std::numeric_limits<int>::min()}) {
        plugin().setParamValue(effect.instance(), &value, index);
        plugin().getParamValue(effect.instance(), &value, index);
        f0r_param_info_t info{};
        plugin().getParamInfo(&info, index);
        EXPECT_EQ(info.name, nullptr);
    }
    plugin().setParamValue(nullptr, &value, 1);
    plugin().setParamValue(effect.instance(), nullptr, 1);
    EXPECT_EQ(value, 0.5);
    char* missing = nullptr;
    plugin().setParamValue(effect.instance(), &missing, plugin().find("Scene"));
    EXPECT_STREQ(effect.get<f0r_param_string>("Scene"), "");
}

TEST(Frei0rControls, describeAFilterOfStraightRgba) {
    const f0r_plugin_info_t info = plugin().info();
    EXPECT_EQ(info.plugin_type, F0R_PLUGIN_TYPE_FILTER);
    EXPECT_EQ(info.color_model, F0R_COLOR_MODEL_RGBA8888);
    EXPECT_EQ(info.frei0r_version, 1);
    EXPECT_STREQ(info.name, "Orbel");
}

} // namespace
} // namespace orbel::frei0r
