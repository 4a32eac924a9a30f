#include "render/StampBatch.h"

namespace orbel {

StampBatch::StampBatch(int height, int bandRows)
    : m_inBand(static_cast<std::size_t>((height + bandRows - 1) / bandRows)),
      m_bandOfRow(static_cast<std::size_t>(height)) {
    for (int y = 0; y < height; ++y) {
        m_bandOfRow[static_cast<std::size_t>(y)] = static_cast<std::uint16_t>(y / bandRows);
    }
}

void StampBatch::add(const PlacedStamp& stamp) {
    const auto number = static_cast<Index>(m_stamps.size());
    const std::size_t first = m_bandOfRow[static_cast<std::size_t>(stamp.box.top)];
    const std::size_t last = m_bandOfRow[static_cast<std::size_t>(stamp.box.bottom)];
    m_stamps.push_back(stamp);
    for (std::size_t band = first; band <= last; ++band) {
        m_inBand[band].push_back(number);
    }
    m_reaches += last - first + 1;
    m_pixels += static_cast<std::size_t>(stamp.box.right - stamp.box.left + 1) *
                static_cast<std::size_t>(stamp.box.bottom - stamp.box.top + 1);
}

} // namespace orbel
