#pragma once

#include <span>
#include <string_view>
#include <utility>

namespace orbel::studio {

/// What every answer says to the browser: run and show nothing from elsewhere, be shown by nobody
/// else, keep nothing.
[[nodiscard]] std::span<const std::pair<std::string_view, std::string_view>> protectingHeaders();

} // namespace orbel::studio
