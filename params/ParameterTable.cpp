#include "params/ParameterTable.h"

#include "shapes/ShapeTable.h"

#include <charconv>

namespace orbel {

namespace {

constexpr const char* STEP_ADJUST_ENTRIES[] = {"None", "Dynamic"};
constexpr const char* ORDER_ENTRIES[] = {"Rotate Translate", "Translate Rotate"};
constexpr const char* VIEW_ENTRIES[] = {"Camera", "Front", "Left",  "Top",
                                        "Back",   "Right", "Bottom"};
constexpr const char* MOTION_BLUR_ENTRIES[] = {"Off", "On"};
constexpr const char* TRANSFER_MODE_ENTRIES[] = {
    "None",       "Normal",     "Add",         "Multiply",   "Screen", "Overlay",
    "Soft Light", "Hard Light", "Color Dodge", "Color Burn", "Darken", "Lighten",
    "Difference", "Exclusion",  "Hue",         "Saturation", "Color",  "Luminosity"};
constexpr std::span<const char* const> NO_ENTRIES{};

struct Range {
    double min;
    double max;
};

constexpr ParameterRow custom(int id, const char* name, int flags) {
    return {RowKind::Custom, id, name, {}, 0, 0, 0, 0, 0, flags, "", {}};
}

constexpr ParameterRow menu(int id, const char* name, int index,
                            std::span<const char* const> entries, int flags, const char* group) {
    return {RowKind::Menu, id,    name,   {static_cast<double>(index)}, 0, 0, 0, 0, 1,
            flags,         group, entries};
}

constexpr ParameterRow slider(int id, const char* name, double value, Range range, Range shown,
                              double delta, int flags, const char* group) {
    return {RowKind::Float, id,        name,  {value}, range.min, range.max,
            shown.min,      shown.max, delta, flags,   group,     {}};
}

constexpr ParameterRow angle(int id, const char* name, double degrees, Range range, int flags,
                             const char* group) {
    return {RowKind::Angle, id,        name, {degrees}, range.min, range.max,
            range.min,      range.max, 1,    flags,     group,     {}};
}

constexpr ParameterRow toggle(int id, const char* name, bool on, int flags, const char* group) {
    return {RowKind::Toggle, id, name, {on ? 1.0 : 0.0}, 0, 1, 0, 1, 1, flags, group, {}};
}

constexpr ParameterRow color(int id, const char* name, std::array<double, 3> rgb, int flags) {
    return {RowKind::Color, id, name, rgb, 0, 1, 0, 1, 0, flags, "", {}};
}

constexpr ParameterRow point(int id, const char* name, double x, double y, int flags,
                             const char* group) {
    return {RowKind::Point, id, name, {x, y}, 0, 0, 0, 0, 0, flags, group, {}};
}

constexpr ParameterRow groupStart(int id, const char* name, int flags) {
    return {RowKind::GroupStart, id, name, {}, 0, 0, 0, 0, 0, flags, "", {}};
}

constexpr ParameterRow groupEnd(const char* group) {
    return {RowKind::GroupEnd, 0, "", {}, 0, 0, 0, 0, 0, 0, group, {}};
}

constexpr ParameterRow compositionCamera(const char* group) {
    return {RowKind::CompositionCamera, 0, "", {}, 0, 0, 0, 0, 0, 0, group, {}};
}

// Order, identifiers, names and flags are part of saved projects. Several sliders carry the
// collapsed bit although they are no groups: declared like that for ever.
constexpr ParameterRow TABLE[] = {
    custom(PARAM_SHAPE, "Shape", 96),
    menu(PARAM_PRESETS, "Presets", 0, NO_ENTRIES, 0, ""),
    slider(PARAM_SCALE_X, "ScaleX", 1.0, {0.01, 10}, {0.01, 10}, 1, 8, ""),
    slider(PARAM_SCALE_Y, "ScaleY", 1.0, {0.01, 10}, {0.01, 10}, 1, 8, ""),
    toggle(PARAM_STROKE_SEQUENTIALLY, "Stroke Sequentially", false, 33, ""),
    color(PARAM_COLOR, "Color", {1.0, 1.0, 1.0}, 0),
    slider(PARAM_THICKNESS, "Thickness", 10, {0.2, 1000}, {1, 50}, 1, 8, ""),
    slider(PARAM_FEATHER, "Feather", 0, {0, 100}, {0, 100}, 1, 40, ""),
    slider(PARAM_START, "Start", 0, {0, 100}, {0, 100}, 1, 40, ""),
    slider(PARAM_END, "End", 100, {0, 100}, {0, 100}, 1, 40, ""),
    slider(PARAM_OFFSET, "Offset", 0, {-100, 10000}, {-100, 2000}, 1, 8, ""),
    toggle(PARAM_LOOP, "Loop", false, 32, ""),
    groupStart(PARAM_GROUP_TAPER, "Taper", 40),
    toggle(PARAM_ENABLE_TAPER, "Enable Taper", false, 1, "Taper"),
    toggle(PARAM_COMPRESS_TO_FIT, "Compress to fit", true, 33, "Taper"),
    slider(PARAM_START_THICKNESS, "Start Thickness", 0, {0, 100}, {0, 100}, 1, 40, "Taper"),
    slider(PARAM_END_THICKNESS, "End Thickness", 0, {0, 100}, {0, 100}, 1, 40, "Taper"),
    slider(PARAM_TAPER_START, "Taper Start", 50, {0, 100}, {0, 100}, 1, 40, "Taper"),
    slider(PARAM_TAPER_END, "Taper End", 50, {0, 100}, {0, 100}, 1, 8, "Taper"),
    slider(PARAM_START_SHAPE, "Start Shape", 1, {0.1, 10}, {0.1, 3}, 1, 40, "Taper"),
    slider(PARAM_END_SHAPE, "End Shape", 1, {0.1, 10}, {0.1, 3}, 1, 40, "Taper"),
    menu(PARAM_STEP_ADJUST_METHOD, "Step Adjust Method", 1, STEP_ADJUST_ENTRIES, 32, "Taper"),
    groupEnd("Taper"),
    groupStart(PARAM_GROUP_TRANSFORM, "Transform", 40),
    slider(PARAM_BEND, "Bend", 0, {0, 100}, {0, 2}, 1, 40, "Transform"),
    angle(PARAM_BEND_AXIS, "Bend Axis", 0, {-3600, 3600}, 8, "Transform"),
    toggle(PARAM_BEND_AROUND_CENTER, "Bend Around Center", false, 32, "Transform"),
    point(PARAM_POSITION_XY, "XY Position", 0.5, 0.5, 32, "Transform"),
    slider(PARAM_POSITION_Z, "Z Position", 0, {-10000, 10000}, {-500, 500}, 1, 40, "Transform"),
    angle(PARAM_ROTATION_X, "X Rotation", 0, {-3600, 3600}, 40, "Transform"),
    angle(PARAM_ROTATION_Y, "Y Rotation", 0, {-3600, 3600}, 40, "Transform"),
    angle(PARAM_ROTATION_Z, "Z Rotation", 0, {-3600, 3600}, 40, "Transform"),
    menu(PARAM_ORDER, "Order", 0, ORDER_ENTRIES, 32, "Transform"),
    groupEnd("Transform"),
    groupStart(PARAM_GROUP_REPEATER, "Repeater", 40),
    toggle(PARAM_ENABLE_REPEATER, "Enable Repeater", false, 32, "Repeater"),
    toggle(PARAM_SYMMETRIC_DOUBLER, "Symmetric Doubler", true, 36, "Repeater"),
    slider(PARAM_INSTANCES, "Instances", 2, {0, 1000}, {0, 10}, 0.5, 44, "Repeater"),
    slider(PARAM_REPEATER_OPACITY, "Opacity", 100, {1, 100}, {20, 100}, 1, 44, "Repeater"),
    slider(PARAM_REPEATER_SCALE, "Scale", 100, {1, 1000}, {20, 200}, 1, 44, "Repeater"),
    slider(PARAM_REPEATER_FACTOR, "Factor", 1, {0.1, 1000}, {0.75, 1.5}, 1, 44, "Repeater"),
    slider(PARAM_DISPLACE_X, "X Displace", 0, {-10000, 10000}, {-500, 500}, 1, 44, "Repeater"),
    slider(PARAM_DISPLACE_Y, "Y Displace", 0, {-10000, 10000}, {-500, 500}, 1, 44, "Repeater"),
    slider(PARAM_DISPLACE_Z, "Z Displace", 30, {-10000, 10000}, {-500, 500}, 1, 44, "Repeater"),
    angle(PARAM_REPEATER_ROTATION_X, "X Rotation", 0, {-3600, 3600}, 44, "Repeater"),
    angle(PARAM_REPEATER_ROTATION_Y, "Y Rotation", 0, {-3600, 3600}, 44, "Repeater"),
    angle(PARAM_REPEATER_ROTATION_Z, "Z Rotation", 0, {-3600, 3600}, 44, "Repeater"),
    groupEnd("Repeater"),
    groupStart(PARAM_GROUP_ADVANCED, "Advanced", 40),
    slider(PARAM_ADJUST_STEP, "Adjust Step", 100, {1, 10000}, {1, 200}, 1, 40, "Advanced"),
    toggle(PARAM_EXACT_STEP_MATCH, "Exact Step Match", false, 33, "Advanced"),
    slider(PARAM_INTERNAL_OPACITY, "Internal Opacity", 100, {0, 100}, {0, 100}, 1, 40, "Advanced"),
    slider(PARAM_LOW_ALPHA_SAT_BOOST, "Low Alpha Sat Boost", 0, {0, 100}, {0, 100}, 1, 40,
           "Advanced"),
    slider(PARAM_LOW_ALPHA_HUE_ROTATION, "Low Alpha Hue Rotation", 0, {-7200, 7200}, {-360, 360}, 1,
           40, "Advanced"),
    slider(PARAM_HI_ALPHA_BRIGHT_BOOST, "Hi Alpha Bright Boost", 0, {0, 100}, {0, 100}, 1, 40,
           "Advanced"),
    groupEnd("Advanced"),
    groupStart(PARAM_GROUP_CAMERA, "Camera", 40),
    compositionCamera("Camera"),
    menu(PARAM_VIEW, "View", 0, VIEW_ENTRIES, 33, "Camera"),
    slider(PARAM_Z_CLIP_FRONT, "Z Clip Front", 0, {0, 30000}, {0, 500}, 1, 40, "Camera"),
    slider(PARAM_Z_CLIP_BACK, "Z Clip Back", 30000, {0, 30000}, {0, 30000}, 1, 40, "Camera"),
    slider(PARAM_START_FADE, "Start Fade", 30000, {0, 30000}, {0, 30000}, 1, 40, "Camera"),
    toggle(PARAM_AUTO_ORIENT, "Auto Orient", true, 32, "Camera"),
    point(PARAM_CAMERA_XY, "XY Position", 0.5, 0.5, 32, "Camera"),
    slider(PARAM_CAMERA_Z, "Z Position", -355.6, {-30000, 30000}, {-500, 500}, 1, 40, "Camera"),
    slider(PARAM_ZOOM, "Zoom", 355.6, {0, 30000}, {0, 500}, 1, 40, "Camera"),
    angle(PARAM_CAMERA_ROTATION_X, "X Rotation", 0, {-3600, 3600}, 40, "Camera"),
    angle(PARAM_CAMERA_ROTATION_Y, "Y Rotation", 0, {-3600, 3600}, 40, "Camera"),
    angle(PARAM_CAMERA_ROTATION_Z, "Z Rotation", 0, {-3600, 3600}, 40, "Camera"),
    groupEnd("Camera"),
    groupStart(PARAM_GROUP_MOTION_BLUR, "Motion Blur", 40),
    menu(PARAM_MOTION_BLUR, "Motion Blur", 0, MOTION_BLUR_ENTRIES, 33, "Motion Blur"),
    slider(PARAM_SHUTTER_ANGLE, "Shutter Angle", 360, {0, 720}, {0, 360}, 1, 45, "Motion Blur"),
    slider(PARAM_SHUTTER_PHASE, "Shutter Phase", 0, {-360, 360}, {-360, 360}, 1, 45, "Motion Blur"),
    slider(PARAM_LEVELS, "Levels", 8, {1, 64}, {1, 32}, 1, 40, "Motion Blur"),
    groupEnd("Motion Blur"),
    slider(PARAM_OPACITY, "Opacity", 100, {0, 100}, {0, 100}, 1, 8, ""),
    menu(PARAM_TRANSFER_MODE, "Transfer Mode", 0, TRANSFER_MODE_ENTRIES, 0, ""),
};

static_assert(std::size(TABLE) == 78);

} // namespace

std::span<const ParameterRow> parameterTable() {
    return TABLE;
}

const ParameterRow* findParameter(int id) {
    for (const ParameterRow& row : TABLE) {
        if (row.id == id && row.isParameter()) {
            return &row;
        }
    }
    return nullptr;
}

std::vector<const ParameterRow*> findParameters(std::string_view text) {
    int id = 0;
    const char* const end = text.data() + text.size();
    if (const auto parsed = std::from_chars(text.data(), end, id);
        parsed.ec == std::errc{} && parsed.ptr == end) {
        const ParameterRow* const row = findParameter(id);
        return row == nullptr ? std::vector<const ParameterRow*>{} : std::vector{row};
    }
    std::vector<const ParameterRow*> inGroups;
    for (const ParameterRow& row : TABLE) {
        if (!row.isParameter()) {
            continue;
        }
        if (fullName(row) == text) {
            return {&row};
        }
        if (row.name == text) {
            inGroups.push_back(&row);
        }
    }
    return inGroups;
}

std::string fullName(const ParameterRow& row) {
    const std::string group = row.group;
    return group.empty() ? row.name : group + "/" + row.name;
}

std::vector<std::string> menuEntries(const ParameterRow& row) {
    if (row.id != PARAM_PRESETS) {
        return {row.menu.begin(), row.menu.end()};
    }
    std::vector<std::string> names;
    for (const SVGShapeInfo* shape = g_svgShapes; shape->name != nullptr; ++shape) {
        names.emplace_back(shape->name);
    }
    return names;
}

} // namespace orbel
