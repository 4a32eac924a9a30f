#pragma once

#include "doors/memory/ParameterStore.h"
#include "params/ParameterTable.h"

/// The interface's numbers lie in 0..1 and stand for what a slider offers: its least and its
/// greatest value, the entries of a menu in order, off and on. Points are the same in both.
namespace orbel::frei0r {

/// The interface's numbers for a value of a parameter.
[[nodiscard]] ParameterValue toScale(const ParameterRow& row, const ParameterValue& value);

/// The value that the interface's numbers stand for. Numbers outside 0..1 count as its ends, but
/// for points, which may lie outside the frame; what is not finite there is the default.
[[nodiscard]] ParameterValue fromScale(const ParameterRow& row, const ParameterValue& numbers);

} // namespace orbel::frei0r
