#pragma once

#include <cstdint>

namespace orbel {

/// BT.709 in limited range, for components of 8 bits: luma in units of 2^-16, chroma of 2^-14.
struct Bt709 {
    static constexpr int lumaBits = 16;
    static constexpr std::int32_t lumaRed = 11966;
    static constexpr std::int32_t lumaGreen = 40254;
    static constexpr std::int32_t lumaBlue = 4064;
    /// What is added before the bits are cut off, rounding included.
    static constexpr std::int32_t lumaBase = (16 << lumaBits) + (1 << (lumaBits - 1));

    static constexpr std::int32_t cbRed = -1649;
    static constexpr std::int32_t cbGreen = -5547;
    static constexpr std::int32_t cbBlue = 7196;
    static constexpr std::int32_t crRed = 7196;
    static constexpr std::int32_t crGreen = -6536;
    static constexpr std::int32_t crBlue = -660;
    /// Chroma is made of pixels whose weights add up to 256.
    static constexpr int chromaBits = 14 + 8;
    static constexpr std::int32_t chromaBase = (128 << chromaBits) + (1 << (chromaBits - 1));

    static_assert(cbRed + cbGreen + cbBlue == 0 && crRed + crGreen + crBlue == 0,
                  "grey has no colour");
};

/// The two in the middle by the two beside them, each way.
template<typename T>
constexpr T chromaWeighed(T middle, T beside) {
    return 9 * middle - beside;
}

/// Of a decoded sum, which is 255 times 2^21 for white.
inline constexpr int decodedBits = 21;

} // namespace orbel
