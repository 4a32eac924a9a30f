#include "render/StampBatch.h"

#include <numeric>

namespace orbel {

StampBatch::StampBatch(int height, int bandRows)
    : m_bandRows(bandRows),
      m_bands((height + bandRows - 1) / bandRows),
      m_firstOfBand(static_cast<std::size_t>(m_bands) + 2) {}

void StampBatch::add(const PlacedStamp& stamp) {
    m_stamps.push_back(stamp);
    m_reaches += static_cast<std::size_t>(lastBand(stamp) - firstBand(stamp) + 1);
    m_pixels += static_cast<std::size_t>(stamp.box.right - stamp.box.left + 1) *
                static_cast<std::size_t>(stamp.box.bottom - stamp.box.top + 1);
}

// Counts, then lays each number where its band has got to; that shifts the beginnings by one band.
void StampBatch::sortIntoBands() {
    std::fill(m_firstOfBand.begin(), m_firstOfBand.end(), Index{0});
    for (const PlacedStamp& stamp : m_stamps) {
        for (int band = firstBand(stamp); band <= lastBand(stamp); ++band) {
            ++m_firstOfBand[static_cast<std::size_t>(band) + 2];
        }
    }
    std::partial_sum(m_firstOfBand.begin(), m_firstOfBand.end(), m_firstOfBand.begin());
    m_sorted.resize(m_reaches);
    for (std::size_t i = 0; i < m_stamps.size(); ++i) {
        for (int band = firstBand(m_stamps[i]); band <= lastBand(m_stamps[i]); ++band) {
            m_sorted[m_firstOfBand[static_cast<std::size_t>(band) + 1]++] = static_cast<Index>(i);
        }
    }
}

std::span<const StampBatch::Index> StampBatch::inBand(int band) const {
    const auto b = static_cast<std::size_t>(band);
    return std::span(m_sorted).subspan(m_firstOfBand[b], m_firstOfBand[b + 1] - m_firstOfBand[b]);
}

} // namespace orbel
