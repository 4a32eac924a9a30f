#include "media/DiskReserve.h"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <unistd.h>

namespace orbel {

bool DiskReserve::growTo(std::int64_t bytes) {
    static constexpr std::array<char, 65536> zeros{};
    if (bytes <= m_bytes) {
        return true;
    }
    if (m_file < 0) {
        m_file = open(m_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        if (m_file < 0) {
            return false;
        }
    }
    while (m_bytes < bytes) {
        const auto count = std::min<std::int64_t>(bytes - m_bytes, std::ssize(zeros));
        const ssize_t written = write(m_file, zeros.data(), static_cast<std::size_t>(count));
        if (written <= 0) {
            return false;
        }
        m_bytes += written;
    }
    return true;
}

void DiskReserve::release() {
    if (m_file >= 0) {
        close(m_file);
        unlink(m_path.c_str());
        m_file = -1;
        m_bytes = 0;
    }
}

} // namespace orbel
