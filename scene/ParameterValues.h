#pragma once

#include "doors/memory/ParameterStore.h"
#include "params/ParameterTable.h"
#include "scene/Diagnostics.h"

#include <nlohmann/json_fwd.hpp>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orbel {

/// The parameter that a key or an option names. Reports and returns null for an unknown or
/// ambiguous name, and for "Shape", which is no value.
[[nodiscard]] const ParameterRow* findNamedParameter(std::string_view name, const Site& site);

/// A value as the scene file writes it: number, true/false, [x, y], [r, g, b], index or entry of a
/// menu. Reports and returns nothing when the type is wrong or the value is outside its range.
[[nodiscard]] std::optional<ParameterValue>
readValue(const ParameterRow& row, const nlohmann::json& value, const Site& site);

/// A value or `{"keys": [[frame, value, easing], ...]}`; a constant becomes a single key. Reports
/// everything that is wrong and then returns what is left, possibly nothing.
[[nodiscard]] std::vector<Keyframe> readTrack(const ParameterRow& row, const nlohmann::json& value,
                                              const Site& site);

/// The easing of this name ("linear", "hold", "ease", "ease-in", "ease-out").
[[nodiscard]] std::optional<Easing> easingOf(std::string_view name);

[[nodiscard]] std::string_view nameOf(Easing easing);

/// What a parameter takes, as in "a number from 0 to 100".
[[nodiscard]] std::string valueWords(const ParameterRow& row);

} // namespace orbel
