#include "params/ParameterTable.h"

#include <gtest/gtest.h>

#include <limits>
#include <map>

namespace orbel {
namespace {

// What every row declares is written out a second time in docs/parameters.md and in the lists that
// the doors' tests compare with: tests/doors/fxplug/declarations.txt,
// tests/doors/ofx/declarations.txt.
TEST(ParameterTable, retiredIdentifiersStayUnused) {
    for (const int id : {0, 2, 13, 25, 29, 33, 45, 46, 47, 49, 59, 74, 80, 84}) {
        EXPECT_EQ(findParameter(id), nullptr) << id;
    }
    std::map<int, int> uses;
    for (const ParameterRow& row : parameterTable()) {
        EXPECT_TRUE(row.id == 0 || ++uses[row.id] == 1) << row.id;
    }
}

TEST(ParameterTable, findsParametersByWhatAUserTypes) {
    struct Row {
        const char* text;
        std::vector<int> ids;
    };
    // At top level a name wins over the same one in a group.
    const Row rows[] = {{"4", {4}},
                        {"Thickness", {4}},
                        {"Camera/Zoom", {55}},
                        {"Zoom", {55}},
                        {"Opacity", {34}},
                        {"Repeater/Opacity", {64}},
                        {"X Rotation", {9, 22, 56}},
                        {"XY Position", {7, 53}},
                        {"Z Position", {8, 54}},
                        {"Motion Blur", {41}},
                        {"Motion Blur/Motion Blur", {41}},
                        {"Scale", {18}},
                        {"Transform", {}},
                        {"6", {}},
                        {"0", {}},
                        {"2", {}},
                        {"04", {4}},
                        {"-4", {}},
                        {"4 ", {}},
                        {"4.0", {}},
                        {"99999999999999999999", {}},
                        {"thickness", {}},
                        {"", {}},
                        {"/Thickness", {}},
                        {"Camera/", {}}};
    for (const Row& row : rows) {
        std::vector<int> ids;
        for (const ParameterRow* const found : findParameters(row.text)) {
            ids.push_back(found->id);
        }
        EXPECT_EQ(ids, row.ids) << row.text;
    }
}

TEST(ParameterTable, everyFullNameFindsItsRowAlone) {
    for (const ParameterRow& row : parameterTable()) {
        if (row.isParameter()) {
            EXPECT_EQ(findParameters(fullName(row)), std::vector{&row}) << fullName(row);
        }
    }
}

TEST(ParameterTable, legalValuesAreAcceptedAndOthersLimited) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    struct Row {
        int id;
        double value;
        bool legal;
        double limited;
    };
    const Row rows[] = {
        {PARAM_THICKNESS, 0.2, true, 0.2},
        {PARAM_THICKNESS, 0.19, false, 0.2},
        {PARAM_THICKNESS, 1000, true, 1000},
        {PARAM_THICKNESS, 1001, false, 1000},
        {PARAM_THICKNESS, infinity, false, 1000},
        {PARAM_THICKNESS, nan, false, 10},
        {PARAM_ROTATION_X, -3600.5, false, -3600},
        {PARAM_COLOR, 1.5, false, 1},
        {PARAM_COLOR, nan, false, 1},
        {PARAM_LOOP, 1, true, 1},
        {PARAM_LOOP, 0.5, false, 0},
        {PARAM_LOOP, 2, false, 0},
        {PARAM_COMPRESS_TO_FIT, nan, false, 0},
        {PARAM_STEP_ADJUST_METHOD, 0, true, 0},
        {PARAM_STEP_ADJUST_METHOD, 2, false, 1},
        {PARAM_STEP_ADJUST_METHOD, 0.5, false, 1},
        {PARAM_STEP_ADJUST_METHOD, -1, false, 1},
        {PARAM_TRANSFER_MODE, 17, true, 17},
        {PARAM_PRESETS, 40, true, 40},
        {PARAM_PRESETS, 41, false, 0},
        {PARAM_POSITION_XY, -7, true, -7},
        {PARAM_POSITION_XY, infinity, false, 0.5},
    };
    for (const Row& row : rows) {
        const ParameterRow& parameter = *findParameter(row.id);
        EXPECT_EQ(accepts(parameter, row.value), row.legal) << row.id << " " << row.value;
        EXPECT_EQ(limited(parameter, row.value), row.limited) << row.id << " " << row.value;
    }
}

} // namespace
} // namespace orbel
