#include "doors/frei0r/ControlScale.h"

#include <algorithm>
#include <cmath>

namespace orbel::frei0r {

namespace {

double lastEntry(const ParameterRow& row) {
    return menuSize(row) - 1.0;
}

/// Hosts keep colours in eight bits and hand them out as floats, which are not quite the same.
double colourComponent(double number) {
    constexpr double steps = 255.0;
    constexpr double rounding = 1e-4;
    const double step = std::round(number * steps);
    return std::fabs(number * steps - step) < rounding ? step / steps : number;
}

double inUnit(double number) {
    return number > 0.0 ? std::min(number, 1.0) : 0.0;
}

} // namespace

ParameterValue toScale(const ParameterRow& row, const ParameterValue& value) {
    switch (row.kind) {
    case RowKind::Presets:
    case RowKind::Menu:
        return {value[0] / lastEntry(row)};
    case RowKind::Float:
    case RowKind::Angle:
        return {(value[0] - row.shown().min) / (row.shown().max - row.shown().min)};
    default:
        return value;
    }
}

ParameterValue fromScale(const ParameterRow& row, const ParameterValue& numbers) {
    ParameterValue value = row.defaults;
    const double number = inUnit(numbers[0]);
    switch (row.kind) {
    case RowKind::Presets:
    case RowKind::Menu:
        value[0] = std::round(number * lastEntry(row));
        break;
    case RowKind::Toggle:
        value[0] = number >= 0.5 ? 1.0 : 0.0;
        break;
    case RowKind::Color:
        for (std::size_t i = 0; i < value.size(); ++i) {
            value[i] = colourComponent(inUnit(numbers[i]));
        }
        break;
    case RowKind::Point:
        for (std::size_t i = 0; i < 2; ++i) {
            value[i] = std::isfinite(numbers[i]) ? numbers[i] : row.defaults[i];
        }
        break;
    default:
        value[0] = row.shown().min + number * (row.shown().max - row.shown().min);
    }
    return value;
}

} // namespace orbel::frei0r
