#pragma once

#include "tests/pixel/PixelTestSupport.h"
#include "tests/support/AccelerationSettings.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <type_traits>

namespace orbel::test {

/// The same bytes. Any NaN will do for another: compilers may swap the operands of a sum, and with
/// them which NaN comes out.
template<typename T>
bool sameComponents(const T* a, const T* b, std::size_t count) {
    if (std::memcmp(a, b, count * sizeof(T)) == 0) {
        return true;
    }
    return std::equal(a, a + count, b, [](T x, T y) {
        if constexpr (std::is_floating_point_v<T>) {
            return (std::isnan(x) && std::isnan(y)) || std::memcmp(&x, &y, sizeof(T)) == 0;
        } else {
            return x == y;
        }
    });
}

/// A row of pixels amid guard components, anywhere in memory.
template<typename T>
class GuardedRow {
public:
    GuardedRow(const std::vector<Components<T>>& pixels, std::size_t first, int count, int offset)
        : m_begin(static_cast<std::size_t>(offset) + margin),
          m_count(static_cast<std::size_t>(count) * 4),
          m_components(m_begin + m_count + margin, guard()) {
        for (std::size_t i = 0; i < m_count / 4; ++i) {
            const auto& pixel = pixels[(first + i) % pixels.size()];
            std::copy(pixel.begin(), pixel.end(), data() + 4 * i);
        }
    }
    T* data() { return m_components.data() + m_begin; }
    const T* pixel(std::size_t i) const { return m_components.data() + m_begin + 4 * i; }
    bool guardsIntact() const {
        const auto isGuard = [](T c) { return c == guard(); };
        const auto end = m_components.begin();
        const auto begin = static_cast<std::ptrdiff_t>(m_begin);
        return std::all_of(end, end + begin, isGuard) &&
               std::all_of(end + begin + static_cast<std::ptrdiff_t>(m_count), m_components.end(),
                           isGuard);
    }
    bool sameAs(const GuardedRow& other) const {
        return sameComponents(pixel(0), other.pixel(0), m_count);
    }

private:
    static constexpr std::size_t margin = 64;
    static constexpr T guard() { return static_cast<T>(77); }

    std::size_t m_begin;
    std::size_t m_count;
    std::vector<T> m_components;
};

/// Any bytes at all; of floats, any bit patterns.
template<typename P>
std::vector<Components<typename P::Component>> anyPixels(std::size_t count, unsigned seed) {
    std::mt19937 engine(seed);
    std::vector<Components<typename P::Component>> pixels(count);
    auto* const bytes = reinterpret_cast<unsigned char*>(pixels.data());
    std::generate(bytes, bytes + count * sizeof(pixels[0]),
                  [&] { return static_cast<unsigned char>(engine()); });
    return pixels;
}

template<typename P>
std::vector<Components<typename P::Component>> testPixels(unsigned seed) {
    auto pixels = randomPixels<P>(3000, seed);
    for (const auto& more : {anyPixels<P>(600, seed), wildPixels<P>()}) {
        pixels.insert(pixels.end(), more.begin(), more.end());
    }
    std::mt19937 engine(seed);
    // Where modes part dark from light: half of the range, its neighbours and the ends, opaque.
    using T = typename P::Component;
    const auto whole = static_cast<T>(P::MAX_VALUE());
    const auto half = static_cast<T>(halfRange<P>());
    const T next = P::is32Bit() ? static_cast<T>(0.001) : T{1};
    const std::array<T, 5> turns{T{0}, static_cast<T>(half - next), half,
                                 static_cast<T>(half + next), whole};
    for (int i = 0; i < 300; ++i) {
        auto& pixel = pixels.emplace_back();
        for (T& component : pixel) {
            component = turns[engine() % turns.size()];
        }
        pixel[P::FORMAT::alpha] = whole;
    }
    // Now and then runs of pixels of one alpha, which kernels may treat in a way of their own.
    for (std::size_t start = 0; start + 100 < pixels.size(); start += 200) {
        const auto alpha = pixels[start + engine() % 100][P::FORMAT::alpha];
        for (std::size_t i = 0; i < 70; ++i) {
            pixels[start + i][P::FORMAT::alpha] = alpha;
        }
    }
    return pixels;
}

using LevelGuard = AccelerationSettings;

} // namespace orbel::test
