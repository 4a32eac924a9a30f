#pragma once

#include <cstdint>

namespace orbel {

/// Bytes that this process may use at most: the machine's memory, or less where a container or a
/// limit of the shell says so.
[[nodiscard]] std::uint64_t machineMemory();

} // namespace orbel
