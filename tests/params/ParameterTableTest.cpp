#include "params/ParameterTable.h"

#include "shapes/ShapeTable.h"

#include <gtest/gtest.h>

#include <map>

namespace orbel {
namespace {

constexpr RowKind F = RowKind::Float;
constexpr RowKind A = RowKind::Angle;
constexpr RowKind T = RowKind::Toggle;
constexpr RowKind C = RowKind::Color;
constexpr RowKind P = RowKind::Point;
constexpr RowKind M = RowKind::Menu;
constexpr RowKind X = RowKind::Custom;
constexpr RowKind OPEN = RowKind::GroupStart;
constexpr RowKind CLOSE = RowKind::GroupEnd;
constexpr RowKind CAMERA = RowKind::CompositionCamera;

struct Expected {
    int id;
    const char* name;
    RowKind kind;
    std::array<double, 3> defaults;
    int flags;
    const char* group;
    std::array<double, 2> range;
    std::array<double, 2> slider;
};

// What saved projects rely on: written out a second time on purpose.
// clang-format off
constexpr Expected ROWS[] = {
    {1, "Shape", X, {}, 96, "", {}, {}},
    {83, "Presets", M, {0}, 0, "", {}, {}},
    {81, "ScaleX", F, {1}, 8, "", {0.01, 10}, {0.01, 10}},
    {82, "ScaleY", F, {1}, 8, "", {0.01, 10}, {0.01, 10}},
    {36, "Stroke Sequentially", T, {0}, 33, "", {0, 1}, {0, 1}},
    {3, "Color", C, {1, 1, 1}, 0, "", {0, 1}, {0, 1}},
    {4, "Thickness", F, {10}, 8, "", {0.2, 1000}, {1, 50}},
    {5, "Feather", F, {0}, 40, "", {0, 100}, {0, 100}},
    {37, "Start", F, {0}, 40, "", {0, 100}, {0, 100}},
    {38, "End", F, {100}, 40, "", {0, 100}, {0, 100}},
    {75, "Offset", F, {0}, 8, "", {-100, 10000}, {-100, 2000}},
    {78, "Loop", T, {0}, 32, "", {0, 1}, {0, 1}},
    {65, "Taper", OPEN, {}, 40, "", {}, {}},
    {66, "Enable Taper", T, {0}, 1, "Taper", {0, 1}, {0, 1}},
    {67, "Compress to fit", T, {1}, 33, "Taper", {0, 1}, {0, 1}},
    {68, "Start Thickness", F, {0}, 40, "Taper", {0, 100}, {0, 100}},
    {69, "End Thickness", F, {0}, 40, "Taper", {0, 100}, {0, 100}},
    {70, "Taper Start", F, {50}, 40, "Taper", {0, 100}, {0, 100}},
    {71, "Taper End", F, {50}, 8, "Taper", {0, 100}, {0, 100}},
    {72, "Start Shape", F, {1}, 40, "Taper", {0.1, 10}, {0.1, 3}},
    {73, "End Shape", F, {1}, 40, "Taper", {0.1, 10}, {0.1, 3}},
    {79, "Step Adjust Method", M, {1}, 32, "Taper", {}, {}},
    {0, "", CLOSE, {}, 0, "Taper", {}, {}},
    {6, "Transform", OPEN, {}, 40, "", {}, {}},
    {61, "Bend", F, {0}, 40, "Transform", {0, 100}, {0, 2}},
    {76, "Bend Axis", A, {0}, 8, "Transform", {-3600, 3600}, {}},
    {62, "Bend Around Center", T, {0}, 32, "Transform", {0, 1}, {0, 1}},
    {7, "XY Position", P, {0.5, 0.5}, 32, "Transform", {}, {}},
    {8, "Z Position", F, {0}, 40, "Transform", {-10000, 10000}, {-500, 500}},
    {9, "X Rotation", A, {0}, 40, "Transform", {-3600, 3600}, {}},
    {10, "Y Rotation", A, {0}, 40, "Transform", {-3600, 3600}, {}},
    {11, "Z Rotation", A, {0}, 40, "Transform", {-3600, 3600}, {}},
    {12, "Order", M, {0}, 32, "Transform", {}, {}},
    {0, "", CLOSE, {}, 0, "Transform", {}, {}},
    {14, "Repeater", OPEN, {}, 40, "", {}, {}},
    {15, "Enable Repeater", T, {0}, 32, "Repeater", {0, 1}, {0, 1}},
    {16, "Symmetric Doubler", T, {1}, 36, "Repeater", {0, 1}, {0, 1}},
    {17, "Instances", F, {2}, 44, "Repeater", {0, 1000}, {0, 10}},
    {64, "Opacity", F, {100}, 44, "Repeater", {1, 100}, {20, 100}},
    {18, "Scale", F, {100}, 44, "Repeater", {1, 1000}, {20, 200}},
    {63, "Factor", F, {1}, 44, "Repeater", {0.1, 1000}, {0.75, 1.5}},
    {19, "X Displace", F, {0}, 44, "Repeater", {-10000, 10000}, {-500, 500}},
    {20, "Y Displace", F, {0}, 44, "Repeater", {-10000, 10000}, {-500, 500}},
    {21, "Z Displace", F, {30}, 44, "Repeater", {-10000, 10000}, {-500, 500}},
    {22, "X Rotation", A, {0}, 44, "Repeater", {-3600, 3600}, {}},
    {23, "Y Rotation", A, {0}, 44, "Repeater", {-3600, 3600}, {}},
    {24, "Z Rotation", A, {0}, 44, "Repeater", {-3600, 3600}, {}},
    {0, "", CLOSE, {}, 0, "Repeater", {}, {}},
    {26, "Advanced", OPEN, {}, 40, "", {}, {}},
    {27, "Adjust Step", F, {100}, 40, "Advanced", {1, 10000}, {1, 200}},
    {39, "Exact Step Match", T, {0}, 33, "Advanced", {0, 1}, {0, 1}},
    {28, "Internal Opacity", F, {100}, 40, "Advanced", {0, 100}, {0, 100}},
    {30, "Low Alpha Sat Boost", F, {0}, 40, "Advanced", {0, 100}, {0, 100}},
    {31, "Low Alpha Hue Rotation", F, {0}, 40, "Advanced", {-7200, 7200}, {-360, 360}},
    {32, "Hi Alpha Bright Boost", F, {0}, 40, "Advanced", {0, 100}, {0, 100}},
    {0, "", CLOSE, {}, 0, "Advanced", {}, {}},
    {48, "Camera", OPEN, {}, 40, "", {}, {}},
    {0, "", CAMERA, {}, 0, "Camera", {}, {}},
    {60, "View", M, {0}, 33, "Camera", {}, {}},
    {50, "Z Clip Front", F, {0}, 40, "Camera", {0, 30000}, {0, 500}},
    {51, "Z Clip Back", F, {30000}, 40, "Camera", {0, 30000}, {0, 30000}},
    {77, "Start Fade", F, {30000}, 40, "Camera", {0, 30000}, {0, 30000}},
    {52, "Auto Orient", T, {1}, 32, "Camera", {0, 1}, {0, 1}},
    {53, "XY Position", P, {0.5, 0.5}, 32, "Camera", {}, {}},
    {54, "Z Position", F, {-355.6}, 40, "Camera", {-30000, 30000}, {-500, 500}},
    {55, "Zoom", F, {355.6}, 40, "Camera", {0, 30000}, {0, 500}},
    {56, "X Rotation", A, {0}, 40, "Camera", {-3600, 3600}, {}},
    {57, "Y Rotation", A, {0}, 40, "Camera", {-3600, 3600}, {}},
    {58, "Z Rotation", A, {0}, 40, "Camera", {-3600, 3600}, {}},
    {0, "", CLOSE, {}, 0, "Camera", {}, {}},
    {40, "Motion Blur", OPEN, {}, 40, "", {}, {}},
    {41, "Motion Blur", M, {0}, 33, "Motion Blur", {}, {}},
    {42, "Shutter Angle", F, {360}, 45, "Motion Blur", {0, 720}, {0, 360}},
    {43, "Shutter Phase", F, {0}, 45, "Motion Blur", {-360, 360}, {-360, 360}},
    {44, "Levels", F, {8}, 40, "Motion Blur", {1, 64}, {1, 32}},
    {0, "", CLOSE, {}, 0, "Motion Blur", {}, {}},
    {34, "Opacity", F, {100}, 8, "", {0, 100}, {0, 100}},
    {35, "Transfer Mode", M, {0}, 0, "", {}, {}},
};
// clang-format on

TEST(ParameterTable, everyRowStaysAsDeclared) {
    ASSERT_EQ(parameterTable().size(), 78U);
    ASSERT_EQ(std::size(ROWS), 78U);
    for (std::size_t i = 0; i < std::size(ROWS); ++i) {
        SCOPED_TRACE(testing::Message() << "row " << i + 1 << ", " << ROWS[i].name);
        const ParameterRow& row = parameterTable()[i];
        EXPECT_EQ(row.id, ROWS[i].id);
        EXPECT_STREQ(row.name, ROWS[i].name);
        EXPECT_EQ(row.kind, ROWS[i].kind);
        EXPECT_EQ(row.defaults, ROWS[i].defaults);
        EXPECT_EQ(row.flags, ROWS[i].flags);
        EXPECT_STREQ(row.group, ROWS[i].group);
        EXPECT_EQ(row.min, ROWS[i].range[0]);
        EXPECT_EQ(row.max, ROWS[i].range[1]);
        if (row.kind == F) {
            EXPECT_EQ(row.sliderMin, ROWS[i].slider[0]);
            EXPECT_EQ(row.sliderMax, ROWS[i].slider[1]);
            EXPECT_EQ(row.delta, row.id == 17 ? 0.5 : 1.0);
        }
    }
}

TEST(ParameterTable, retiredIdentifiersStayUnused) {
    for (const int id : {0, 2, 13, 25, 29, 33, 45, 46, 47, 49, 59, 74, 80, 84}) {
        EXPECT_EQ(findParameter(id), nullptr) << id;
    }
    std::map<int, int> uses;
    for (const ParameterRow& row : parameterTable()) {
        EXPECT_TRUE(row.id == 0 || ++uses[row.id] == 1) << row.id;
    }
}

TEST(ParameterTable, menusListTheirEntriesInOrder) {
    using Entries = std::vector<std::string>;
    const std::map<int, Entries> menus = {
        {79, {"None", "Dynamic"}},
        {12, {"Rotate Translate", "Translate Rotate"}},
        {60, {"Camera", "Front", "Left", "Top", "Back", "Right", "Bottom"}},
        {41, {"Off", "On"}},
        {35,
         {"None", "Normal", "Add", "Multiply", "Screen", "Overlay", "Soft Light", "Hard Light",
          "Color Dodge", "Color Burn", "Darken", "Lighten", "Difference", "Exclusion", "Hue",
          "Saturation", "Color", "Luminosity"}}};
    for (const ParameterRow& row : parameterTable()) {
        if (row.id != PARAM_PRESETS) {
            EXPECT_EQ(menuEntries(row), row.kind == M ? menus.at(row.id) : Entries{}) << row.name;
        }
    }
}

TEST(ParameterTable, presetsAreTheBuiltInShapesWhetherInstalledOrNot) {
    const std::vector<std::string> presets = menuEntries(*findParameter(PARAM_PRESETS));
    ASSERT_EQ(presets.size(), 41U);
    EXPECT_EQ(presets.front(), "None");
    EXPECT_EQ(presets.back(), "Wrinkled Petals");
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
