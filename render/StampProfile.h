#pragma once

#include "host/Geometry.h"
#include "host/Numeric.h"
#include "render/StrokeWalk.h"
#include "render/TrimRect.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace orbel {

/// The profile of a brush: full cover up to `inner`, a smooth step down to nothing at `outer`.
struct BrushProfile {
    double outer;
    double inner;
    double ringScale; ///< 1 / (outer - inner)

    BrushProfile(double radius, double feather) : outer(radius + 0.5) {
        const double edge = std::clamp(1.0 + (outer - 1.5) * 4.0, 1.0, 3.0);
        inner = std::max(outer - outer * feather - edge, 0.0);
        ringScale = 1.0 / (outer - inner);
    }
};

/// The pixels that a brush can touch, right and bottom inclusive. The edges saturate, so that a
/// brush far larger than the picture covers it instead of wrapping round.
[[nodiscard]] inline Vx_Rect brushBox(double x, double y, double outer) {
    return {saturateTo<std::int16_t>(y - 0.5 - outer), saturateTo<std::int16_t>(x - 0.5 - outer),
            saturateTo<std::int16_t>(0.5 + y + outer), saturateTo<std::int16_t>(0.5 + x + outer)};
}

/// A stamp on a raster, with everything that is the same for all its pixels.
struct PlacedStamp {
    double x;
    double y;
    BrushProfile brush;
    double amount; ///< what full cover adds to an alpha of 0, in the range of a component
    Vx_Rect box;   ///< within the raster; right and bottom inclusive

    /// `maximum` is that of a component.
    PlacedStamp(const Stamp& s, double maximum)
        : x(s.x),
          y(s.y),
          brush(s.radius, s.feather),
          // Small brushes get fainter instead of smaller than a pixel.
          amount(maximum * (s.radius < 2.0 ? s.intensity * (s.radius * 0.5) : s.intensity) / 255.0),
          box(brushBox(x, y, brush.outer)) {}

    /// False when no pixel of the raster can be touched.
    bool trim(int width, int height) {
        const bool isInside =
            box.left >= 0 && box.top >= 0 && box.right < width && box.bottom < height;
        if (isInside && box.left < box.right && box.top < box.bottom) {
            return true;
        }
        return Vx_TrimRect(&box, width, height) != 0;
    }
};

/// How far the brush covers a point whose squared distance from the centre is `q`, at most
/// `outer` squared.
template<class SquareRoot>
[[nodiscard]] double brushCover(const BrushProfile& brush, double q, const SquareRoot& squareRoot) {
    if (!(q > brush.inner * brush.inner)) {
        return 1.0;
    }
    const double s = (brush.outer - squareRoot(q)) * brush.ringScale;
    return (3 - 2 * s) * s * s;
}

/// Adds cover to an alpha in the manner of a screen.
template<class P>
[[nodiscard]] typename P::Component coveredAlpha(typename P::Component alpha, double cover,
                                                 double amount) {
    const auto a = static_cast<double>(alpha);
    return truncateTo<typename P::Component>(a + (1 - a * P::RECIP_VALUE()) * cover * amount +
                                             static_cast<double>(P::halfRoundPixel()));
}

/// Stamps the pixels `left` to `right` of row `y`, pixel by pixel: what every faster way of
/// stamping comes to. `row` is the row's first byte.
template<class P, class SquareRoot>
void stampPixels(unsigned char* row, int pixelBytes, const PlacedStamp& stamp, int y, int left,
                 int right, const SquareRoot& squareRoot) {
    using T = typename P::Component;
    const auto full = static_cast<T>(P::MAX_VALUE());
    const double outer2 = stamp.brush.outer * stamp.brush.outer;
    const double dy = y - stamp.y;
    for (int i = left; i <= right; ++i) {
        unsigned char* const pixel = row + static_cast<std::ptrdiff_t>(i) * pixelBytes;
        T& alpha = reinterpret_cast<T*>(pixel)[P::FORMAT::alpha];
        const double dx = i - stamp.x;
        const double q = dx * dx + dy * dy;
        if (alpha != full && !(q > outer2)) {
            alpha = coveredAlpha<P>(alpha, brushCover(stamp.brush, q, squareRoot), stamp.amount);
        }
    }
}

} // namespace orbel
