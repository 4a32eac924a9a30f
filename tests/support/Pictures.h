#pragma once

#include "doors/memory/MemoryImage.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

namespace orbel::test {

/// The six rendered formats, for loops and parameters of tests.
inline constexpr std::array<RasterFormat, 6> RENDERED_FORMATS{RF_ARGB8,  RF_RGBA8,   RF_ARGB16,
                                                              RF_RGBA16, RF_ARGB32F, RF_RGBA32F};
[[nodiscard]] std::string formatName(RasterFormat format);

/// An image between guard bytes; its row padding is guarded too.
class GuardedImage {
public:
    GuardedImage(int width, int height, RasterFormat format, RowLayout layout);
    [[nodiscard]] const RasterInfo& info() const { return m_info; }
    /// Whether nothing but pixels was written.
    [[nodiscard]] bool guardsIntact() const;

protected:
    RasterInfo m_info;

private:
    std::vector<std::uint8_t> m_memory;
};

/// Red, green, blue, alpha; 1.0 is a component's maximum.
using Rgba = std::array<double, 4>;

[[nodiscard]] Rgba pixelAt(const RasterInfo& picture, int x, int y);
[[nodiscard]] inline double alphaAt(const RasterInfo& picture, int x, int y) {
    return pixelAt(picture, x, y)[3];
}
void setPixel(const RasterInfo& picture, int x, int y, const Rgba& value);
void paint(const RasterInfo& picture, const std::function<Rgba(int x, int y)>& pixel);
[[nodiscard]] double alphaSum(const RasterInfo& picture);

/// The same bytes in every row, padding left out; both pictures have the same size and format.
[[nodiscard]] testing::AssertionResult sameBytes(const RasterInfo& actual,
                                                 const RasterInfo& expected);

/// Equal within a tolerance per component; 0 demands the same values. Says where pictures differ.
[[nodiscard]] testing::AssertionResult samePicture(const RasterInfo& actual,
                                                   const RasterInfo& expected, double tolerance);

} // namespace orbel::test
