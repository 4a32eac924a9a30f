#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>

namespace orbel {

/// A row of a raster cut into at most 64 blocks of pixels, so that one word can say something about
/// every one of them.
class RowBlocks {
public:
    /// One bit for each block, the leftmost lowest.
    using Mask = std::uint64_t;

    explicit RowBlocks(int width) : m_width(width) {
        while ((width - 1) >> m_shift >= 64) {
            ++m_shift;
        }
    }

    /// The blocks that pixels `left` to `right` lie in.
    [[nodiscard]] Mask covering(int left, int right) const {
        const int first = left >> m_shift;
        const int count = (right >> m_shift) - first + 1;
        return (~Mask{0} >> (64 - count)) << first;
    }

    /// Calls `visit(first pixel, pixels)` for every run of neighbouring blocks of a mask, from left
    /// to right.
    template<class Visit>
    void forEachRun(Mask mask, const Visit& visit) const {
        while (mask != 0) {
            const int first = std::countr_zero(mask);
            const int count = std::countr_one(mask >> first);
            const int left = first << m_shift;
            visit(left, std::min((first + count) << m_shift, m_width) - left);
            mask = first + count >= 64 ? 0 : mask >> (first + count) << (first + count);
        }
    }

    /// Every block of the row.
    [[nodiscard]] Mask all() const { return covering(0, m_width - 1); }

private:
    int m_width;
    int m_shift = 4;
};

} // namespace orbel
