#pragma once

#include "studio/Json.h"

namespace orbel::studio {

/// The parameter table as the page makes its inspector from it, with the shapes as outlines and
/// what else a scene can choose from. The table of built-in shapes is prepared by whoever calls.
[[nodiscard]] json parameterJson();

} // namespace orbel::studio
