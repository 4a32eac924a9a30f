#pragma once

#include <cstdint>
#include <string>

namespace orbel {

/// Room kept on a disk beside a file that needs some more when it is completed: the index of a film
/// is written last, and without it nothing of a film on a full disk could be played. A file of
/// zeros under a name of its own; it goes with the object.
class DiskReserve {
public:
    /// Keeps room beside `path`; none yet.
    explicit DiskReserve(const std::string& path) : m_path(path + ".reserve") {}
    DiskReserve(const DiskReserve&) = delete;
    DiskReserve& operator=(const DiskReserve&) = delete;
    ~DiskReserve() { release(); }

    /// Makes the room at least as large as this; false, with `errno` set, when the disk is full.
    [[nodiscard]] bool growTo(std::int64_t bytes);
    /// Gives the room back.
    void release();

private:
    std::string m_path;
    std::int64_t m_bytes = 0;
    int m_file = -1;
};

} // namespace orbel
