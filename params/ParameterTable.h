#pragma once

#include <array>
#include <cstddef>
#include <optional>
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
    PARAM_DISABLED = 4,  ///< until an `EnablingRule` enables it
    PARAM_COLLAPSED = 8, ///< a group that starts closed; on others of no effect
    PARAM_NOT_IN_DASHBOARD = 32,
    PARAM_CUSTOM_UI = 64, ///< the host shows a control of the effect's own
};

/// What a row of the declaration list declares, and so how its value is read and written.
enum class RowKind {
    Custom,            ///< the shape file; a path, and the only value that is no number
    Presets,           ///< popup of the built-in shapes; the value is an index into their table
    Menu,              ///< popup; the value is the entry's index
    Float,             ///< slider
    Toggle,            ///< checkbox; 0 or 1
    Color,             ///< red, green, blue in 0..1
    Point,             ///< x, y normalised to 0..1, y downwards; values outside are legal
    Angle,             ///< degrees
    GroupStart,        ///< opens a group
    GroupEnd,          ///< closes the group
    CompositionCamera, ///< the place where a host with scene cameras adds a choice; declares
                       ///< nothing
};

/// What a number counts, for whoever shows it; values are never converted by it.
enum class Unit {
    None,    ///< a factor, an exponent or a plain count
    Percent, ///< 100 is the whole
    Degrees,
    Pixels, ///< of the picture at full resolution; depths too
};

/// Both ends belong to it.
struct Range {
    double min = 0.0;
    double max = 0.0;
};

/// One row of the declaration list. Everything a row does not say is at its default.
struct ParameterRow {
    RowKind kind;
    int id = 0;                       ///< 0 for rows that declare no identifier
    const char* name = "";            ///< as the user sees it; not unique
    int flags = 0;                    ///< of `ParamFlag`
    std::array<double, 3> defaults{}; ///< one, two or three components, by kind
    std::optional<Range> range{};     ///< bounds every component; none where the kind says it all
    std::optional<Range> slider{};    ///< what a slider offers, where that is less than the range
    double delta = 1.0;               ///< slider increment
    Unit unit = Unit::None;
    std::span<const char* const> menu{}; ///< entries of a `RowKind::Menu`
    const char* group = "";              ///< name of the group around the row, "" at top level

    /// Whether the row holds a value that can be read.
    [[nodiscard]] constexpr bool isParameter() const {
        return kind != RowKind::GroupStart && kind != RowKind::GroupEnd &&
               kind != RowKind::CompositionCamera;
    }
    /// Whether the value chooses one of `menuEntries`.
    [[nodiscard]] constexpr bool isMenu() const {
        return kind == RowKind::Menu || kind == RowKind::Presets;
    }
    /// Number of components of a value: 3 for a colour, 2 for a point, else 1.
    [[nodiscard]] constexpr int components() const {
        return kind == RowKind::Color ? 3 : kind == RowKind::Point ? 2 : 1;
    }
    /// Whether values between two keys are interpolated; toggles and menus hold the earlier key.
    [[nodiscard]] constexpr bool interpolates() const {
        return kind != RowKind::Toggle && !isMenu();
    }
    /// The range of a row that has one, else nothing but 0.
    [[nodiscard]] constexpr Range bounds() const { return range.value_or(Range{}); }
    /// What a slider shows of `bounds()`.
    [[nodiscard]] constexpr Range shown() const { return slider.value_or(bounds()); }
};

/// The declaration list: 78 rows in the order in which a host shows them. The only place where an
/// identifier, name, default, range or flag stands. Lives as long as the program.
[[nodiscard]] std::span<const ParameterRow> parameterTable();

/// The row that declares `id`, or null. Takes constant time.
[[nodiscard]] const ParameterRow* findParameter(int id);

/// Rows that a text names: an identifier ("4"), a full name ("Camera/Zoom", or "Thickness" at top
/// level) or a bare name from within a group. More than one row when a bare name is ambiguous; none
/// when nothing fits.
[[nodiscard]] std::vector<const ParameterRow*> findParameters(std::string_view text);

/// "Group/Name" inside a group, "Name" at top level.
[[nodiscard]] std::string fullName(const ParameterRow& row);

/// The entries of a menu in order; for "Presets" the names of the built-in shapes, whether their
/// files are installed or not.
[[nodiscard]] std::vector<std::string> menuEntries(const ParameterRow& row);
/// Their number; 0 for a row that is no menu.
[[nodiscard]] int menuSize(const ParameterRow& row);

/// Whether `value` is a legal component of the row's value: finite and inside the range; the index
/// of an entry; 0 or 1 of a toggle.
[[nodiscard]] bool accepts(const ParameterRow& row, double value);

/// What a host's answer stands for that may be anything: held at the ends of the range, a menu's
/// index without an entry the default, a toggle on only when exactly 1. What no number can be made
/// of (NaN, an infinite point) is the default of `component`.
[[nodiscard]] double limited(const ParameterRow& row, double value, std::size_t component = 0);

/// "%", "degrees", "px", or "" for none.
[[nodiscard]] const char* unitText(Unit unit);

} // namespace orbel
