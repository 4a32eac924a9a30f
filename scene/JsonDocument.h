#pragma once

#include "scene/Diagnostics.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <string_view>

namespace orbel {

/// Reads a JSON text. Syntax errors are reported with line and column, keys that appear twice with
/// their pointer; nothing when the text is not JSON, is nested more than 64 levels deep or holds a
/// number too large for a double. `file` is for messages.
[[nodiscard]] std::optional<nlohmann::json> parseJson(std::string_view text,
                                                      const std::string& file, Problems* problems);

} // namespace orbel
