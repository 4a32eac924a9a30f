#pragma once

#include "params/ParameterTable.h"
#include "pixel/TransferCodes.h"

/// The declaration list itself, for what is decided while compiling. Everything else asks
/// `parameterTable()`.
namespace orbel::rows {

inline constexpr const char* STEP_ADJUST_ENTRIES[] = {"None", "Dynamic"};
inline constexpr const char* ORDER_ENTRIES[] = {"Rotate Translate", "Translate Rotate"};
inline constexpr const char* VIEW_ENTRIES[] = {"Camera", "Front", "Left",  "Top",
                                               "Back",   "Right", "Bottom"};
inline constexpr const char* MOTION_BLUR_ENTRIES[] = {"Off", "On"};
inline constexpr auto TRANSFER_MODE_ENTRIES = [] {
    std::array<const char*, TRANSFER_MENU.size()> names{};
    for (std::size_t i = 0; i < names.size(); ++i) {
        names.at(i) = TRANSFER_MENU.at(i).name;
    }
    return names;
}();

inline constexpr Range WHOLE{0, 100};
inline constexpr Range TEN_TURNS{-3600, 3600};

/// Enters every row's group, which follows from the rows around it.
template<std::size_t N>
consteval std::array<ParameterRow, N> withGroups(std::array<ParameterRow, N> rows) {
    const char* group = "";
    for (ParameterRow& row : rows) {
        row.group = row.kind == RowKind::GroupStart ? "" : group;
        group = row.kind == RowKind::GroupStart ? row.name
                : row.kind == RowKind::GroupEnd ? ""
                                                : group;
    }
    return rows;
}

using enum RowKind;
using enum Unit;

// Order, identifiers, names and flags are part of saved projects. Several sliders carry the
// collapsed bit although they are no groups: declared like that for ever.
// clang-format off
inline constexpr auto TABLE = withGroups(std::to_array<ParameterRow>({
    {.kind = Custom, .id = PARAM_SHAPE, .name = "Shape", .flags = 96},
    {.kind = Presets, .id = PARAM_PRESETS, .name = "Presets"},
    {.kind = Float, .id = PARAM_SCALE_X, .name = "ScaleX", .flags = 8,
     .defaults = {1}, .range = Range{0.01, 10}},
    {.kind = Float, .id = PARAM_SCALE_Y, .name = "ScaleY", .flags = 8,
     .defaults = {1}, .range = Range{0.01, 10}},
    {.kind = Toggle, .id = PARAM_STROKE_SEQUENTIALLY, .name = "Stroke Sequentially", .flags = 33},
    {.kind = Color, .id = PARAM_COLOR, .name = "Color",
     .defaults = {1, 1, 1}, .range = Range{0, 1}},
    {.kind = Float, .id = PARAM_THICKNESS, .name = "Thickness", .flags = 8,
     .defaults = {10}, .range = Range{0.2, 1000}, .slider = Range{1, 50}, .unit = Pixels},
    {.kind = Float, .id = PARAM_FEATHER, .name = "Feather", .flags = 40,
     .range = WHOLE, .unit = Percent},
    {.kind = Float, .id = PARAM_START, .name = "Start", .flags = 40,
     .range = WHOLE, .unit = Percent},
    {.kind = Float, .id = PARAM_END, .name = "End", .flags = 40,
     .defaults = {100}, .range = WHOLE, .unit = Percent},
    {.kind = Float, .id = PARAM_OFFSET, .name = "Offset", .flags = 8,
     .range = Range{-100, 10000}, .slider = Range{-100, 2000}, .unit = Percent},
    {.kind = Toggle, .id = PARAM_LOOP, .name = "Loop", .flags = 32},
    {.kind = GroupStart, .id = PARAM_GROUP_TAPER, .name = "Taper", .flags = 40},
    {.kind = Toggle, .id = PARAM_ENABLE_TAPER, .name = "Enable Taper", .flags = 1},
    {.kind = Toggle, .id = PARAM_COMPRESS_TO_FIT, .name = "Compress to fit", .flags = 33,
     .defaults = {1}},
    {.kind = Float, .id = PARAM_START_THICKNESS, .name = "Start Thickness", .flags = 40,
     .range = WHOLE, .unit = Percent},
    {.kind = Float, .id = PARAM_END_THICKNESS, .name = "End Thickness", .flags = 40,
     .range = WHOLE, .unit = Percent},
    {.kind = Float, .id = PARAM_TAPER_START, .name = "Taper Start", .flags = 40,
     .defaults = {50}, .range = WHOLE, .unit = Percent},
    {.kind = Float, .id = PARAM_TAPER_END, .name = "Taper End", .flags = 8,
     .defaults = {50}, .range = WHOLE, .unit = Percent},
    {.kind = Float, .id = PARAM_START_SHAPE, .name = "Start Shape", .flags = 40,
     .defaults = {1}, .range = Range{0.1, 10}, .slider = Range{0.1, 3}},
    {.kind = Float, .id = PARAM_END_SHAPE, .name = "End Shape", .flags = 40,
     .defaults = {1}, .range = Range{0.1, 10}, .slider = Range{0.1, 3}},
    {.kind = Menu, .id = PARAM_STEP_ADJUST_METHOD, .name = "Step Adjust Method", .flags = 32,
     .defaults = {1}, .menu = STEP_ADJUST_ENTRIES},
    {.kind = GroupEnd},
    {.kind = GroupStart, .id = PARAM_GROUP_TRANSFORM, .name = "Transform", .flags = 40},
    {.kind = Float, .id = PARAM_BEND, .name = "Bend", .flags = 40,
     .range = WHOLE, .slider = Range{0, 2}},
    {.kind = Angle, .id = PARAM_BEND_AXIS, .name = "Bend Axis", .flags = 8,
     .range = TEN_TURNS, .unit = Degrees},
    {.kind = Toggle, .id = PARAM_BEND_AROUND_CENTER, .name = "Bend Around Center", .flags = 32},
    {.kind = Point, .id = PARAM_POSITION_XY, .name = "XY Position", .flags = 32,
     .defaults = {0.5, 0.5}},
    {.kind = Float, .id = PARAM_POSITION_Z, .name = "Z Position", .flags = 40,
     .range = Range{-10000, 10000}, .slider = Range{-500, 500}, .unit = Pixels},
    {.kind = Angle, .id = PARAM_ROTATION_X, .name = "X Rotation", .flags = 40,
     .range = TEN_TURNS, .unit = Degrees},
    {.kind = Angle, .id = PARAM_ROTATION_Y, .name = "Y Rotation", .flags = 40,
     .range = TEN_TURNS, .unit = Degrees},
    {.kind = Angle, .id = PARAM_ROTATION_Z, .name = "Z Rotation", .flags = 40,
     .range = TEN_TURNS, .unit = Degrees},
    {.kind = Menu, .id = PARAM_ORDER, .name = "Order", .flags = 32, .menu = ORDER_ENTRIES},
    {.kind = GroupEnd},
    {.kind = GroupStart, .id = PARAM_GROUP_REPEATER, .name = "Repeater", .flags = 40},
    {.kind = Toggle, .id = PARAM_ENABLE_REPEATER, .name = "Enable Repeater", .flags = 32},
    {.kind = Toggle, .id = PARAM_SYMMETRIC_DOUBLER, .name = "Symmetric Doubler", .flags = 36,
     .defaults = {1}},
    {.kind = Float, .id = PARAM_INSTANCES, .name = "Instances", .flags = 44,
     .defaults = {2}, .range = Range{0, 1000}, .slider = Range{0, 10}, .delta = 0.5},
    {.kind = Float, .id = PARAM_REPEATER_OPACITY, .name = "Opacity", .flags = 44,
     .defaults = {100}, .range = Range{1, 100}, .slider = Range{20, 100}, .unit = Percent},
    {.kind = Float, .id = PARAM_REPEATER_SCALE, .name = "Scale", .flags = 44,
     .defaults = {100}, .range = Range{1, 1000}, .slider = Range{20, 200}, .unit = Percent},
    {.kind = Float, .id = PARAM_REPEATER_FACTOR, .name = "Factor", .flags = 44,
     .defaults = {1}, .range = Range{0.1, 1000}, .slider = Range{0.75, 1.5}},
    {.kind = Float, .id = PARAM_DISPLACE_X, .name = "X Displace", .flags = 44,
     .range = Range{-10000, 10000}, .slider = Range{-500, 500}, .unit = Pixels},
    {.kind = Float, .id = PARAM_DISPLACE_Y, .name = "Y Displace", .flags = 44,
     .range = Range{-10000, 10000}, .slider = Range{-500, 500}, .unit = Pixels},
    {.kind = Float, .id = PARAM_DISPLACE_Z, .name = "Z Displace", .flags = 44,
     .defaults = {30}, .range = Range{-10000, 10000}, .slider = Range{-500, 500}, .unit = Pixels},
    {.kind = Angle, .id = PARAM_REPEATER_ROTATION_X, .name = "X Rotation", .flags = 44,
     .range = TEN_TURNS, .unit = Degrees},
    {.kind = Angle, .id = PARAM_REPEATER_ROTATION_Y, .name = "Y Rotation", .flags = 44,
     .range = TEN_TURNS, .unit = Degrees},
    {.kind = Angle, .id = PARAM_REPEATER_ROTATION_Z, .name = "Z Rotation", .flags = 44,
     .range = TEN_TURNS, .unit = Degrees},
    {.kind = GroupEnd},
    {.kind = GroupStart, .id = PARAM_GROUP_ADVANCED, .name = "Advanced", .flags = 40},
    {.kind = Float, .id = PARAM_ADJUST_STEP, .name = "Adjust Step", .flags = 40,
     .defaults = {100}, .range = Range{1, 10000}, .slider = Range{1, 200}, .unit = Percent},
    {.kind = Toggle, .id = PARAM_EXACT_STEP_MATCH, .name = "Exact Step Match", .flags = 33},
    {.kind = Float, .id = PARAM_INTERNAL_OPACITY, .name = "Internal Opacity", .flags = 40,
     .defaults = {100}, .range = WHOLE, .unit = Percent},
    {.kind = Float, .id = PARAM_LOW_ALPHA_SAT_BOOST, .name = "Low Alpha Sat Boost", .flags = 40,
     .range = WHOLE, .unit = Percent},
    {.kind = Float, .id = PARAM_LOW_ALPHA_HUE_ROTATION, .name = "Low Alpha Hue Rotation",
     .flags = 40, .range = Range{-7200, 7200}, .slider = Range{-360, 360}, .unit = Degrees},
    {.kind = Float, .id = PARAM_HI_ALPHA_BRIGHT_BOOST, .name = "Hi Alpha Bright Boost", .flags = 40,
     .range = WHOLE, .unit = Percent},
    {.kind = GroupEnd},
    {.kind = GroupStart, .id = PARAM_GROUP_CAMERA, .name = "Camera", .flags = 40},
    {.kind = CompositionCamera},
    {.kind = Menu, .id = PARAM_VIEW, .name = "View", .flags = 33, .menu = VIEW_ENTRIES},
    {.kind = Float, .id = PARAM_Z_CLIP_FRONT, .name = "Z Clip Front", .flags = 40,
     .range = Range{0, 30000}, .slider = Range{0, 500}, .unit = Pixels},
    {.kind = Float, .id = PARAM_Z_CLIP_BACK, .name = "Z Clip Back", .flags = 40,
     .defaults = {30000}, .range = Range{0, 30000}, .unit = Pixels},
    {.kind = Float, .id = PARAM_START_FADE, .name = "Start Fade", .flags = 40,
     .defaults = {30000}, .range = Range{0, 30000}, .unit = Pixels},
    {.kind = Toggle, .id = PARAM_AUTO_ORIENT, .name = "Auto Orient", .flags = 32, .defaults = {1}},
    {.kind = Point, .id = PARAM_CAMERA_XY, .name = "XY Position", .flags = 32,
     .defaults = {0.5, 0.5}},
    {.kind = Float, .id = PARAM_CAMERA_Z, .name = "Z Position", .flags = 40, .defaults = {-355.6},
     .range = Range{-30000, 30000}, .slider = Range{-500, 500}, .unit = Pixels},
    {.kind = Float, .id = PARAM_ZOOM, .name = "Zoom", .flags = 40,
     .defaults = {355.6}, .range = Range{0, 30000}, .slider = Range{0, 500}, .unit = Pixels},
    {.kind = Angle, .id = PARAM_CAMERA_ROTATION_X, .name = "X Rotation", .flags = 40,
     .range = TEN_TURNS, .unit = Degrees},
    {.kind = Angle, .id = PARAM_CAMERA_ROTATION_Y, .name = "Y Rotation", .flags = 40,
     .range = TEN_TURNS, .unit = Degrees},
    {.kind = Angle, .id = PARAM_CAMERA_ROTATION_Z, .name = "Z Rotation", .flags = 40,
     .range = TEN_TURNS, .unit = Degrees},
    {.kind = GroupEnd},
    {.kind = GroupStart, .id = PARAM_GROUP_MOTION_BLUR, .name = "Motion Blur", .flags = 40},
    {.kind = Menu, .id = PARAM_MOTION_BLUR, .name = "Motion Blur", .flags = 33,
     .menu = MOTION_BLUR_ENTRIES},
    {.kind = Float, .id = PARAM_SHUTTER_ANGLE, .name = "Shutter Angle", .flags = 45,
     .defaults = {360}, .range = Range{0, 720}, .slider = Range{0, 360}, .unit = Degrees},
    {.kind = Float, .id = PARAM_SHUTTER_PHASE, .name = "Shutter Phase", .flags = 45,
     .range = Range{-360, 360}, .unit = Degrees},
    {.kind = Float, .id = PARAM_LEVELS, .name = "Levels", .flags = 40,
     .defaults = {8}, .range = Range{1, 64}, .slider = Range{1, 32}},
    {.kind = GroupEnd},
    {.kind = Float, .id = PARAM_OPACITY, .name = "Opacity", .flags = 8,
     .defaults = {100}, .range = WHOLE, .unit = Percent},
    {.kind = Menu, .id = PARAM_TRANSFER_MODE, .name = "Transfer Mode",
     .menu = TRANSFER_MODE_ENTRIES},
}));
// clang-format on

static_assert(TABLE.size() == 78);

/// Where the row of each identifier stands, -1 for numbers without a parameter.
inline constexpr auto PLACES = [] {
    std::array<int, PARAM_PRESETS + 1> places{};
    places.fill(-1);
    for (std::size_t i = 0; i < TABLE.size(); ++i) {
        if (TABLE[i].isParameter()) {
            places.at(static_cast<std::size_t>(TABLE[i].id)) = static_cast<int>(i);
        }
    }
    return places;
}();

} // namespace orbel::rows
