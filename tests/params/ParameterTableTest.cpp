#include "params/ParameterTable.h"

#include <gtest/gtest.h>

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

} // namespace
} // namespace orbel
