#pragma once

#include <string>

namespace orbel {

/// The libraries that pictures and films are coded with and scaled by, with their versions: what a
/// film's bytes depend on beside this program. One line.
[[nodiscard]] std::string codecLibraries();

} // namespace orbel
