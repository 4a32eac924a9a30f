#pragma once

#include "render/StampProfile.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace orbel {

/// Stamps waiting to be painted, in the order in which they were placed, and which of them reach
/// into which band of rows. Bounded memory and work: whoever fills it paints it when it is full,
/// and a host that wants no more does not wait for long.
class StampBatch {
public:
    using Index = std::uint32_t;

    /// For a raster of `height` rows in bands of `bandRows`.
    StampBatch(int height, int bandRows);

    /// `stamp` has been trimmed to the raster.
    void add(const PlacedStamp& stamp);
    [[nodiscard]] bool isFull() const {
        return m_stamps.size() >= MOST_STAMPS || m_reaches >= MOST_REACHES ||
               m_pixels >= MOST_PIXELS;
    }
    void clear() {
        m_stamps.clear();
        for (std::vector<Index>& band : m_inBand) {
            band.clear();
        }
        m_reaches = 0;
        m_pixels = 0;
    }

    [[nodiscard]] std::size_t size() const { return m_stamps.size(); }
    [[nodiscard]] const PlacedStamp& operator[](std::size_t i) const { return m_stamps[i]; }
    [[nodiscard]] const PlacedStamp* data() const { return m_stamps.data(); }
    [[nodiscard]] int bands() const { return static_cast<int>(m_inBand.size()); }

    /// The numbers of the stamps that reach into a band, in order.
    [[nodiscard]] std::span<const Index> inBand(int band) const {
        return m_inBand[static_cast<std::size_t>(band)];
    }

private:
    static constexpr std::size_t MOST_STAMPS = std::size_t{1} << 14;
    static constexpr std::size_t MOST_REACHES = std::size_t{1} << 18;
    static constexpr std::size_t MOST_PIXELS = std::size_t{1} << 26;

    std::size_t m_reaches = 0; // bands reached by all the stamps
    std::size_t m_pixels = 0;  // of the boxes of all of them
    std::vector<PlacedStamp> m_stamps;
    std::vector<std::vector<Index>> m_inBand; // stamp numbers
    std::vector<std::uint16_t> m_bandOfRow;
};

} // namespace orbel
