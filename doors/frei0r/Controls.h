#pragma once

#include "params/ParameterTable.h"

#include <array>
#include <optional>
#include <span>
#include <string>

namespace orbel::frei0r {

/// What a control of the plug-in is there for.
enum class ControlRole {
    Scene,     ///< a scene's file or text
    TimeUnit,  ///< what the host counts time in
    FrameRate, ///< frames per second
    Shape,     ///< a shape file
    Parameter, ///< a row of the parameter table that holds a number, toggle, colour or point
};

/// The value of a control in the interface's own terms: numbers in 0..1, or a text.
struct ControlValue {
    std::array<double, 3> numbers{};
    std::string text;
};

/// One control as hosts see it.
struct Control {
    ControlRole role;
    int type;                ///< one of the interface's F0R_PARAM_ numbers
    const ParameterRow* row; ///< null for what is no row of the table
    std::string name;        ///< unique; projects keep values under it
    std::string explanation;
    ControlValue initial;
};

/// All controls: scene, time unit and frame rate, then the table in its order. A control is known
/// by its place and by its name: neither ever changes.
[[nodiscard]] std::span<const Control> controls();

/// Takes over a value that a host points at, in the layout that belongs to the control's type. A
/// number that is none becomes the initial one, a missing text the empty one.
[[nodiscard]] ControlValue takeValue(const Control& control, const void* from);

/// Hands a value out. Texts stay with `value`.
void giveValue(const Control& control, const ControlValue& value, void* to);

/// The parameter's value that a control stands for; nothing when the control stands where it stood
/// at first, but for the rounding of hosts that keep seven digits.
[[nodiscard]] std::optional<std::array<double, 3>> chosenValue(const Control& control,
                                                               const ControlValue& value);

} // namespace orbel::frei0r
