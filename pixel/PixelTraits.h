#pragma once

#include "host/Numeric.h"

#include <array>
#include <cstdint>
#include <limits>

namespace orbel {

// The six pixel formats. Rendering code is written once as templates over a trait and takes the
// range of a component and its arithmetic from it; nothing else knows 255 or 1.0.
//
// The three depths differ on purpose: 8 bits compute in `int` and divide by 256, 16 bits compute in
// single precision over 0 to 65535 and keep fractions until they are stored, floats neither clamp
// nor round. Components are stored straight or premultiplied as the pass at hand says.

/// Component indices within a pixel whose alpha stands first.
struct AlphaFirstOrder {
    static constexpr int alpha = 0;
    static constexpr int red = 1;
    static constexpr int green = 2;
    static constexpr int blue = 3;
    static constexpr std::array<int, 3> colours{red, green, blue};
};

/// Component indices within a pixel whose alpha stands last.
struct AlphaLastOrder {
    static constexpr int red = 0;
    static constexpr int green = 1;
    static constexpr int blue = 2;
    static constexpr int alpha = 3;
    static constexpr std::array<int, 3> colours{red, green, blue};
};

/// Components per pixel, in every format.
inline constexpr int componentsPerPixel = 4;

// What each of the three arithmetics below has, in its own precision:
//
// - `Component` is what lies in memory, `Wide` and `Float` what sums and single values are computed
//   in; `MIN_VALUE` and `MAX_VALUE` the ends of the nominal range, `RECIP_VALUE` one over the
//   latter.
// - `toFloat` and `fromFloat` lead to fractions of the range and back; `truncated` is a value as
//   the accumulator keeps it.
// - `multiply` and `divide` take components as fractions of the range: maximum times a is a.
// - `clamp` holds a value inside the range, `clamp_underflow` and `clamp_overflow` at one end of
// it.
// - `halfRoundPixel` is what is added before truncation where a pass rounds.

/// Arithmetic of 8-bit components, in `int`. Total: a product too large for `int` wraps round.
struct PixelArithmetic8 {
    using Component = unsigned char;
    using Wide = int;
    using Float = int;

    static constexpr int MIN_VALUE() { return 0; }
    static constexpr int MAX_VALUE() { return 255; }
    /// Twelve significant digits of 1 / 255: a fixed literal on purpose.
    static constexpr double RECIP_VALUE() { return 0.003921568627; }
    static constexpr bool is32Bit() { return false; }
    static constexpr float toFloat(unsigned char c) { return static_cast<float>(c / 255.0); }
    /// Truncates; neither rounds nor clamps.
    static constexpr int fromFloat(float f) { return truncateTo<int>(255.0 * f); }
    /// What was computed in single precision, as the accumulator keeps it: a whole number.
    static constexpr int truncated(float v) { return truncateTo<int>(v); }
    /// Divides by 256 with rounding, not by 255, so that 255 x 255 is 254: meant.
    static constexpr int multiply(int a, int b) {
        return static_cast<int>(static_cast<unsigned>(a) * static_cast<unsigned>(b) + 128U) >> 8;
    }
    /// Not clamped: a quotient above 1 leaves the component's range. 0 where `b` is 0.
    static constexpr int divide(int a, int b) {
        const int scaled = static_cast<int>(static_cast<unsigned>(a) * 255U);
        if (b == 0 || (b == -1 && scaled == std::numeric_limits<int>::min())) {
            return 0;
        }
        return scaled / b;
    }
    static constexpr float halfRoundPixel() { return 0.5F; }
    static constexpr int clamp(int v) { return clamp_overflow(clamp_underflow(v)); }
    static constexpr int clamp_underflow(int v) { return v < 0 ? 0 : v; }
    static constexpr int clamp_overflow(int v) { return v < 256 ? v : 255; }
};

/// Arithmetic of 16-bit components, in single precision over the full range 0 to 65535.
struct PixelArithmetic16 {
    using Component = unsigned short;
    using Wide = double;
    using Float = float;

    static constexpr int MIN_VALUE() { return 0; }
    static constexpr int MAX_VALUE() { return 65535; }
    /// Nine significant digits of 1 / 65535: a fixed literal on purpose.
    static constexpr double RECIP_VALUE() { return 1.52590219e-05; }
    static constexpr bool is32Bit() { return false; }
    static constexpr float toFloat(unsigned short c) { return static_cast<float>(c) / 65535.0F; }
    /// Neither rounds nor clamps.
    static constexpr float fromFloat(float f) { return 65535.0F * f; }
    /// As in 8 bits, although the accumulator could keep the fraction.
    static constexpr float truncated(float v) { return static_cast<float>(truncateTo<int>(v)); }
    static constexpr float multiply(float a, float b) { return a * b / 65535.0F; }
    /// Not clamped. 0 where `b` is 0.
    static constexpr float divide(float a, float b) { return b == 0.0F ? 0.0F : a / b * 65535.0F; }
    static constexpr float halfRoundPixel() { return 0.5F; }
    static constexpr float clamp(float v) { return clamp_overflow(clamp_underflow(v)); }
    static constexpr float clamp_underflow(float v) { return 0.0F > v ? 0.0F : v; }
    static constexpr float clamp_overflow(float v) { return v > 65535.0F ? 65535.0F : v; }
};

/// Arithmetic of float components. Nothing is clamped: pixels may leave the range 0 to 1 and stay
/// outside, and nothing is added for rounding.
struct PixelArithmetic32 {
    using Component = float;
    using Wide = double;
    using Float = float;

    static constexpr float MIN_VALUE() { return 0.0F; }
    static constexpr float MAX_VALUE() { return 1.0F; }
    static constexpr double RECIP_VALUE() { return 1.0; }
    static constexpr bool is32Bit() { return true; }
    static constexpr float toFloat(float c) { return c; }
    static constexpr float fromFloat(float f) { return f; }
    static constexpr float truncated(float v) { return v; }
    static constexpr float multiply(float a, float b) { return a * b; }
    /// 0 where `b` is 0.
    static constexpr float divide(float a, float b) { return b == 0.0F ? 0.0F : a / b; }
    static constexpr float halfRoundPixel() { return 0.0F; }
    static constexpr float clamp(float v) { return v; }
    static constexpr float clamp_underflow(float v) { return v; }
    static constexpr float clamp_overflow(float v) { return v; }
};

// The traits: empty types, passed by value; only the type matters.

struct PIXEL_ARGB8 : PixelArithmetic8 {
    struct FORMAT : AlphaFirstOrder {};
};
struct PIXEL_RGBA8 : PixelArithmetic8 {
    struct FORMAT : AlphaLastOrder {};
};
struct PIXEL_ARGB16 : PixelArithmetic16 {
    struct FORMAT : AlphaFirstOrder {};
};
struct PIXEL_RGBA16 : PixelArithmetic16 {
    struct FORMAT : AlphaLastOrder {};
};
struct PIXEL_ARGB32 : PixelArithmetic32 {
    struct FORMAT : AlphaFirstOrder {};
};
struct PIXEL_RGBA32 : PixelArithmetic32 {
    struct FORMAT : AlphaLastOrder {};
};

/// Half of the range, as modes divide dark from light: 127, 32767 and 0.5.
template<typename P>
[[nodiscard]] constexpr typename P::Float halfRange() {
    return P::truncated(0.5F * static_cast<float>(P::MAX_VALUE()));
}

/// The other four arguments of the render layer's templates, which all follow from the trait.
template<typename P>
struct PixelTypes {
    using Component = typename P::Component; ///< of the pixel in memory
    using Wide = typename P::Wide;           ///< wide accumulator
    using Float = typename P::Float;         ///< float accumulator: per-pixel arithmetic
    using Format = typename P::FORMAT;       ///< channel order
};

/// The five template arguments of a render-layer function for the trait `P`, outside templates.
#define ORBEL_LAYER_ARGS(P)                                                                        \
    P, PixelTypes<P>::Component, PixelTypes<P>::Wide, PixelTypes<P>::Float, P::FORMAT

/// Applies a macro to each of the six traits: explicit instantiations are written through this.
#define ORBEL_FOR_EACH_PIXEL_FORMAT(apply)                                                         \
    apply(PIXEL_ARGB8) apply(PIXEL_RGBA8) apply(PIXEL_ARGB16) apply(PIXEL_RGBA16)                  \
        apply(PIXEL_ARGB32) apply(PIXEL_RGBA32)

} // namespace orbel
