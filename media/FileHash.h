#pragma once

#include <string>
#include <vector>

namespace orbel {

/// SHA-256 over the bytes of files one after the other, as 64 hexadecimal digits. Throws MediaError
/// for one that cannot be read.
[[nodiscard]] std::string hashOfFiles(const std::vector<std::string>& paths);

} // namespace orbel
