#pragma once

#include <filesystem>
#include <string>

namespace orbel::studio {

/// Changes when a file or the entries of a folder do; empty when there is none.
[[nodiscard]] std::string stampOf(const std::filesystem::path& file);

} // namespace orbel::studio
