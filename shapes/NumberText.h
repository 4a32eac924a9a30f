#pragma once

namespace orbel {

/// The number that a text begins with, 0.0 when it begins with none; what follows is not looked at.
/// The decimal separator is "." whatever locale the process runs in. Too large gives infinity.
[[nodiscard]] double parseNumber(const char* text);

} // namespace orbel
