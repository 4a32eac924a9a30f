#include "doors/frei0r/Controls.h"

#include "doors/frei0r/ControlScale.h"
#include "doors/frei0r/Frei0rInterface.h"
#include "scene/Diagnostics.h"

#include <cmath>
#include <vector>

namespace orbel::frei0r {

namespace {

constexpr double hostRounding = 1e-6;

Control textControl(ControlRole role, const char* name, const char* explanation) {
    return {role, F0R_PARAM_STRING, nullptr, name, explanation, {}};
}

int typeOf(const ParameterRow& row) {
    switch (row.kind) {
    case RowKind::Custom:
        return F0R_PARAM_STRING;
    case RowKind::Toggle:
        return F0R_PARAM_BOOL;
    case RowKind::Color:
        return F0R_PARAM_COLOR;
    case RowKind::Point:
        return F0R_PARAM_POSITION;
    default:
        return F0R_PARAM_DOUBLE;
    }
}

std::string explanationOf(const ParameterRow& row) {
    std::string range =
        "0 to 1 stands for " + numberText(row.shown().min) + " to " + numberText(row.shown().max);
    switch (row.kind) {
    case RowKind::Custom:
        return "An SVG file to draw";
    case RowKind::Presets:
    case RowKind::Menu: {
        const std::vector<std::string> entries = menuEntries(row);
        return "0 to 1 stands for " + std::to_string(entries.size()) + " entries from \"" +
               entries.front() + "\" to \"" + entries.back() + "\"";
    }
    case RowKind::Toggle:
        return "On or off";
    case RowKind::Color:
        return "Red, green and blue";
    case RowKind::Point:
        return "From the left and from the top, in frames";
    case RowKind::Angle:
        return range + " degrees";
    default:
        return range;
    }
}

Control rowControl(const ParameterRow& row) {
    const bool isShape = row.kind == RowKind::Custom;
    return {isShape ? ControlRole::Shape : ControlRole::Parameter,
            typeOf(row),
            &row,
            fullName(row),
            explanationOf(row),
            {toScale(row, row.defaults), ""}};
}

std::vector<Control> makeControls() {
    std::vector<Control> all{
        textControl(ControlRole::Scene, "Scene",
                    "A scene file, or the text of one: sets and animates everything at once"),
        {ControlRole::TimeUnit,
         F0R_PARAM_DOUBLE,
         nullptr,
         "Time Unit",
         "What the host counts time in: 0 to guess, 0.5 for seconds, 1 for milliseconds",
         {}},
        textControl(ControlRole::FrameRate, "Frame Rate",
                    "Frames per second, as 25 or 30000/1001; the scene's own when empty, else 30")};
    for (const ParameterRow& row : parameterTable()) {
        if (row.isParameter()) {
            all.push_back(rowControl(row));
        }
    }
    return all;
}

} // namespace

std::span<const Control> controls() {
    static const std::vector<Control> all = makeControls();
    return all;
}

ControlValue takeValue(const Control& control, const void* from) {
    ControlValue value;
    switch (control.type) {
    case F0R_PARAM_STRING: {
        const char* const text = *static_cast<const f0r_param_string*>(from);
        value.text = text == nullptr ? "" : text;
        break;
    }
    case F0R_PARAM_COLOR: {
        const auto& color = *static_cast<const f0r_param_color_t*>(from);
        value.numbers = {static_cast<double>(color.r), static_cast<double>(color.g),
                         static_cast<double>(color.b)};
        break;
    }
    case F0R_PARAM_POSITION: {
        const auto& position = *static_cast<const f0r_param_position_t*>(from);
        value.numbers = {position.x, position.y};
        break;
    }
    default:
        value.numbers = {*static_cast<const double*>(from)};
    }
    for (std::size_t i = 0; i < value.numbers.size(); ++i) {
        if (std::isnan(value.numbers[i])) {
            value.numbers[i] = control.initial.numbers[i];
        }
    }
    return value;
}

void giveValue(const Control& control, const ControlValue& value, void* to) {
    const std::array<double, 3>& numbers = value.numbers;
    switch (control.type) {
    case F0R_PARAM_STRING:
        // The interface has no const, yet the text is not the host's to change.
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast)
        *static_cast<f0r_param_string*>(to) = const_cast<char*>(value.text.c_str());
        break;
    case F0R_PARAM_COLOR:
        *static_cast<f0r_param_color_t*>(to) = {static_cast<float>(numbers[0]),
                                                static_cast<float>(numbers[1]),
                                                static_cast<float>(numbers[2])};
        break;
    case F0R_PARAM_POSITION:
        *static_cast<f0r_param_position_t*>(to) = {numbers[0], numbers[1]};
        break;
    default:
        *static_cast<double*>(to) = numbers[0];
    }
}

std::optional<std::array<double, 3>> chosenValue(const Control& control,
                                                 const ControlValue& value) {
    const ParameterRow& row = *control.row;
    bool moved = false;
    for (std::size_t i = 0; i < value.numbers.size(); ++i) {
        moved =
            moved || !(std::fabs(value.numbers[i] - control.initial.numbers[i]) <= hostRounding);
    }
    const ParameterValue chosen = fromScale(row, value.numbers);
    // Toggles and menus have a whole stretch of the scale for each of their values.
    if (!moved || (!row.interpolates() && chosen == row.defaults)) {
        return std::nullopt;
    }
    return chosen;
}

} // namespace orbel::frei0r
