// Stamps in the 16-bit and float formats: the arithmetic of `HQDrawSphere` in the same order,
// several pixels at a time.

#if defined(ORBEL_STAMP_DEEP_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef ORBEL_STAMP_DEEP_INL_H
#undef ORBEL_STAMP_DEEP_INL_H
#else
#define ORBEL_STAMP_DEEP_INL_H
#endif

#include "render/kernels/StampSpans-inl.h"

#include <hwy/highway.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

HWY_BEFORE_NAMESPACE();
namespace orbel::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// A stamp on pixels of components of 16 or 32 bits.
template<class P>
class StampDeep {
public:
    /// Makes opaque what the stamp covers.
    static void fillSolid(const StampRows& rows, const StampSpans& spans) {
        for (int k = 0; k < spans.count; ++k) {
            T* const alphas = alphasOf(rows.row(spans.first + k));
            for (std::ptrdiff_t i = spans.solidLeft[k]; i <= spans.solidRight[k]; ++i) {
                alphas[i * componentsPerPixel] = FULL;
            }
        }
    }

    /// Paints the whole stamp, or only what `fillSolid` has left out.
    static void paint(const StampRows& rows, const PlacedStamp& stamp, const StampSpans& spans,
                      bool solidIsFilled) {
        for (int k = 0; k < spans.count; ++k) {
            const int y = spans.first + k;
            const bool split = solidIsFilled && spans.solidLeft[k] <= spans.solidRight[k];
            paintRow(rows, stamp, y, spans.left[k],
                     split ? spans.solidLeft[k] - 1 : spans.right[k]);
            if (split) {
                paintRow(rows, stamp, y, spans.solidRight[k] + 1, spans.right[k]);
            }
        }
    }

    /// No stamp is painted without its spans.
    static bool goesWithoutSpans(const PlacedStamp& /*stamp*/) { return false; }
    static void paintSmall(const StampRows& /*rows*/, const PlacedStamp& /*stamp*/) {}

    /// How far from the centre pixels can change.
    static double reach(const PlacedStamp& stamp) { return stamp.brush.outer; }

    /// Pixels that a raster must have in a row.
    static int fewestPixels() { return static_cast<int>(hn::Lanes(F64())); }

private:
    using T = typename P::Component;
    using F64 = hn::ScalableTag<double>;

    static constexpr T FULL = static_cast<T>(P::MAX_VALUE());

    static T* alphasOf(std::uint8_t* row) { return reinterpret_cast<T*>(row) + P::FORMAT::alpha; }

    static HWY_INLINE void paintRow(const StampRows& rows, const PlacedStamp& stamp, int y,
                                    int left, int right) {
        const int lanes = static_cast<int>(hn::Lanes(F64()));
        const double dy = y - stamp.y;
        for (int i = left; i <= right; i += lanes) {
            paintVector(alphasOf(rows.row(y)), stamp, dy * dy, i, right,
                        std::min(i, rows.width - lanes));
        }
    }

    /// Paints pixels `left` to `right`, as far as one vector goes, which begins at `start`.
    static HWY_INLINE void paintVector(T* alphas, const PlacedStamp& stamp, double dy2, int left,
                                       int right, int start) {
        const F64 d;
        constexpr std::size_t most = hn::MaxLanes(F64());
        T* const pixels = alphas + std::ptrdiff_t{start} * componentsPerPixel;
        HWY_ALIGN double values[most];
        for (std::size_t k = 0; k < hn::Lanes(d); ++k) {
            values[k] = static_cast<double>(pixels[k * componentsPerPixel]);
        }
        const auto a = hn::Load(d, values);
        const auto lane = hn::Iota(d, start);
        const auto within =
            hn::And(hn::Ge(lane, hn::Set(d, left)), hn::Le(lane, hn::Set(d, right)));
        const auto dx = hn::Sub(lane, hn::Set(d, stamp.x));
        const auto q = hn::Add(hn::Mul(dx, dx), hn::Set(d, dy2));
        const auto outer = hn::Set(d, stamp.brush.outer);
        const auto open = hn::AndNot(hn::Gt(q, hn::Mul(outer, outer)),
                                     hn::And(within, hn::Ne(a, hn::Set(d, FULL))));
        if (hn::AllFalse(d, open)) {
            return;
        }
        const auto one = hn::Set(d, 1.0);
        const auto room = hn::Sub(one, hn::Mul(a, hn::Set(d, P::RECIP_VALUE())));
        const auto added =
            hn::Mul(hn::Mul(room, coverOf(stamp.brush, q)), hn::Set(d, stamp.amount));
        hn::Store(hn::Add(hn::Add(a, added), hn::Set(d, P::halfRoundPixel())), d, values);
        std::uint8_t bits[8] = {};
        hn::StoreMaskBits(d, open, bits);
        for (std::size_t k = 0; k < hn::Lanes(d); ++k) {
            if ((bits[0] >> k & 1) != 0) {
                pixels[k * componentsPerPixel] = truncateTo<T>(values[k]);
            }
        }
    }

    static HWY_INLINE hn::Vec<F64> coverOf(const BrushProfile& brush, hn::Vec<F64> q) {
        const F64 d;
        const auto inner = hn::Set(d, brush.inner);
        const auto depth = hn::Sub(hn::Set(d, brush.outer), hn::Sqrt(q));
        const auto s = hn::Mul(depth, hn::Set(d, brush.ringScale));
        const auto step =
            hn::Mul(hn::Mul(hn::Sub(hn::Set(d, 3.0), hn::Mul(hn::Set(d, 2.0), s)), s), s);
        return hn::IfThenElse(hn::Gt(q, hn::Mul(inner, inner)), step, hn::Set(d, 1.0));
    }
};

} // namespace orbel::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
