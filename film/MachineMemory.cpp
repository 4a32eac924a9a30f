#include "film/MachineMemory.h"

#include <algorithm>
#include <fstream>
#include <limits>

#include <sys/resource.h>
#include <unistd.h>

namespace orbel {

namespace {

constexpr std::uint64_t unlimited = std::numeric_limits<std::uint64_t>::max();

std::uint64_t physicalMemory() {
    const long pages = sysconf(_SC_PHYS_PAGES);
    const long pageSize = sysconf(_SC_PAGESIZE);
    if (pages <= 0 || pageSize <= 0) {
        return unlimited;
    }
    return static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(pageSize);
}

std::uint64_t shellLimit() {
    rlimit limit = {};
    if (getrlimit(RLIMIT_AS, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY) {
        return unlimited;
    }
    return limit.rlim_cur;
}

/// A container's limit; its files hold "max" or a huge number when there is none.
std::uint64_t containerLimit(const char* file) {
    std::uint64_t limit = 0;
    std::ifstream stream(file);
    return stream >> limit ? limit : unlimited;
}

} // namespace

std::uint64_t machineMemory() {
    return std::min({physicalMemory(), shellLimit(), containerLimit("/sys/fs/cgroup/memory.max"),
                     containerLimit("/sys/fs/cgroup/memory/memory.limit_in_bytes")});
}

} // namespace orbel
