#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orbel {

/// Parameter identifiers. Saved projects and scenes refer to parameters by these numbers alone, so
/// they never change; the gaps are retired numbers that must stay unused.
enum ParamId : int {
    PARAM_SHAPE = 1,
    PARAM_COLOR = 3,
    PARAM_THICKNESS = 4,
    PARAM_FEATHER = 5,
    PARAM_GROUP_TRANSFORM = 6,
    PARAM_POSITION_XY = 7,
    PARAM_POSITION_Z = 8,
    PARAM_ROTATION_X = 9,
    PARAM_ROTATION_Y = 10,
    PARAM_ROTATION_Z = 11,
    PARAM_ORDER = 12,
    PARAM_GROUP_REPEATER = 14,
    PARAM_ENABLE_REPEATER = 15,
    PARAM_SYMMETRIC_DOUBLER = 16,
    PARAM_INSTANCES = 17,
    PARAM_REPEATER_SCALE = 18,
    PARAM_DISPLACE_X = 19,
    PARAM_DISPLACE_Y = 20,
    PARAM_DISPLACE_Z = 21,
    PARAM_REPEATER_ROTATION_X = 22,
    PARAM_REPEATER_ROTATION_Y = 23,
    PARAM_REPEATER_ROTATION_Z = 24,
    PARAM_GROUP_ADVANCED = 26,
    PARAM_ADJUST_STEP = 27,
    PARAM_INTERNAL_OPACITY = 28,
    PARAM_LOW_ALPHA_SAT_BOOST = 30,
    PARAM_LOW_ALPHA_HUE_ROTATION = 31,
    PARAM_HI_ALPHA_BRIGHT_BOOST = 32,
    PARAM_OPACITY = 34,
    PARAM_TRANSFER_MODE = 35,
    PARAM_STROKE_SEQUENTIALLY = 36,
    PARAM_START = 37,
    PARAM_END = 38,
    PARAM_EXACT_STEP_MATCH = 39,
    PARAM_GROUP_MOTION_BLUR = 40,
    PARAM_MOTION_BLUR = 41,
    PARAM_SHUTTER_ANGLE = 42,
    PARAM_SHUTTER_PHASE = 43,
    PARAM_LEVELS = 44,
    PARAM_GROUP_CAMERA = 48,
    PARAM_Z_CLIP_FRONT = 50,
    PARAM_Z_CLIP_BACK = 51,
    PARAM_AUTO_ORIENT = 52,
    PARAM_CAMERA_XY = 53,
    PARAM_CAMERA_Z = 54,
    PARAM_ZOOM = 55,
    PARAM_CAMERA_ROTATION_X = 56,
    PARAM_CAMERA_ROTATION_Y = 57,
    PARAM_CAMERA_ROTATION_Z = 58,
    PARAM_VIEW = 60,
    PARAM_BEND = 61,
    PARAM_BEND_AROUND_CENTER = 62,
    PARAM_REPEATER_FACTOR = 63,
    PARAM_REPEATER_OPACITY = 64,
    PARAM_GROUP_TAPER = 65,
    PARAM_ENABLE_TAPER = 66,
    PARAM_COMPRESS_TO_FIT = 67,
    PARAM_START_THICKNESS = 68,
    PARAM_END_THICKNESS = 69,
    PARAM_TAPER_START = 70,
    PARAM_TAPER_END = 71,
    PARAM_START_SHAPE = 72,
    PARAM_END_SHAPE = 73,
    PARAM_OFFSET = 75,
    PARAM_BEND_AXIS = 76,
    PARAM_START_FADE = 77,
    PARAM_LOOP = 78,
    PARAM_STEP_ADJUST_METHOD = 79,
    PARAM_SCALE_X = 81,
    PARAM_SCALE_Y = 82,
    PARAM_PRESETS = 83,
};

/// Parameter flag bits as the FxPlug hosts number them.
enum ParamFlag : int {
    PARAM_NOT_ANIMATABLE = 1,
    PARAM_DISABLED = 4,
    PARAM_COLLAPSED = 8,
    PARAM_NOT_IN_DASHBOARD = 32,
    PARAM_CUSTOM_UI = 64,
};

/// What a row of the declaration list declares.
enum class RowKind {
    Custom,            ///< the shape file
    Menu,              ///< popup; the value is the entry's index
    Float,             ///< slider
    Toggle,            ///< checkbox; 0 or 1
    Color,             ///< red, green, blue in 0..1
    Point,             ///< x, y normalised to 0..1, y downwards
    Angle,             ///< degrees
    GroupStart,        ///< opens a group
    GroupEnd,          ///< closes the group
    CompositionCamera, ///< the place where a host with scene cameras adds a choice; declares
                       ///< nothing
};

/// One row of the declaration list. `min`/`max` bound the value, `sliderMin`/`sliderMax` only what
/// a slider offers.
struct ParameterRow {
    RowKind kind;
    int id; ///< 0 for rows that declare no identifier
    const char* name;
    std::array<double, 3> defaults; ///< one, two or three components, by kind
    double min;
    double max;
    double sliderMin;
    double sliderMax;
    double delta; ///< slider increment
    int flags;
    const char* group; ///< display name of the enclosing group, "" at top level
    std::span<const char* const>
        menu; ///< entries; empty for "Presets", whose entries are the shapes

    /// Whether the row holds a value that can be read.
    [[nodiscard]] constexpr bool isParameter() const {
        return kind != RowKind::GroupStart && kind != RowKind::GroupEnd &&
               kind != RowKind::CompositionCamera;
    }
    /// Number of components of a value: 3 for a colour, 2 for a point, else 1.
    [[nodiscard]] constexpr int components() const {
        return kind == RowKind::Color ? 3 : kind == RowKind::Point ? 2 : 1;
    }
    /// Whether values between two keys are interpolated; toggles and menus hold the earlier key.
    [[nodiscard]] constexpr bool interpolates() const {
        return kind != RowKind::Toggle && kind != RowKind::Menu;
    }
};

/// The declaration list: 78 rows in the order in which a host shows them. The only place where an
/// identifier, name, default, range or flag stands.
[[nodiscard]] std::span<const ParameterRow> parameterTable();

/// The row that declares `id`, or null.
[[nodiscard]] const ParameterRow* findParameter(int id);

/// Rows that a text names: an identifier ("4"), a full name ("Camera/Zoom", or "Thickness" at top
/// level) or a bare name from within a group. More than one row when a bare name is ambiguous; none
/// when nothing fits.
[[nodiscard]] std::vector<const ParameterRow*> findParameters(std::string_view text);

/// "Group/Name" inside a group, "Name" at top level.
[[nodiscard]] std::string fullName(const ParameterRow& row);

/// The entries of a menu in order; for "Presets" the names of the built-in shapes.
[[nodiscard]] std::vector<std::string> menuEntries(const ParameterRow& row);

} // namespace orbel
