#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orbel {

/// The name that a mistyped text comes nearest to: fewest letters left out, added or
/// changed, case counting little. The first of equals; `names` is not empty.
[[nodiscard]] const std::string& nearestName(std::string_view text,
                                             const std::vector<std::string>& names);

} // namespace orbel
