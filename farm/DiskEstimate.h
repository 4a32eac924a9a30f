#pragma once

#include "farm/Job.h"

#include <cstdint>
#include <optional>

namespace orbel {

/// What a job will take on the disk of its folder: its missing chunks and the film beside them. By
/// what the chunks that are there took, and before that by what such pictures usually take.
struct DiskEstimate {
    std::uint64_t needed = 0;
    std::uint64_t available = 0;

    [[nodiscard]] bool fits() const { return needed <= available; }
};

[[nodiscard]] DiskEstimate estimateDisk(const Job& job, RasterFormat format);

/// The problem of a disk that is too small; nothing when there is room.
[[nodiscard]] std::optional<Problem> checkDisk(const Job& job, RasterFormat format);

} // namespace orbel
