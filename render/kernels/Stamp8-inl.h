// Stamps in the 8-bit formats: a pixel is a lane of 32 bits.

#if defined(ORBEL_STAMP8_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef ORBEL_STAMP8_INL_H
#undef ORBEL_STAMP8_INL_H
#else
#define ORBEL_STAMP8_INL_H
#endif

#include "render/kernels/StampSpans-inl.h"

#include <hwy/highway.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

HWY_BEFORE_NAMESPACE();
namespace orbel::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// A stamp on pixels of four bytes. Alphas are computed in single precision with a bound on the
/// error; where that bound leaves open which whole number an alpha comes to, the pixel is computed
/// again as `HQDrawSphere` does.
template<class P>
class Stamp8 {
public:
    /// Makes opaque what the stamp covers.
    static void fillSolid(const StampRows& rows, const StampSpans& spans) {
        const U32 du;
        const I32 di;
        const int lanes = static_cast<int>(hn::Lanes(du));
        const auto full = hn::Set(du, ALPHA);
        const auto lane = hn::Iota(di, 0);
        for (int k = 0; k < spans.count; ++k) {
            const int right = spans.solidRight[k];
            auto* const pixels = reinterpret_cast<std::uint32_t*>(rows.row(spans.first + k));
            for (int i = spans.solidLeft[k]; i <= right; i += lanes) {
                const int start = std::min(i, rows.width - lanes);
                const auto index = hn::Add(lane, hn::Set(di, start));
                const auto within = hn::And(hn::Gt(index, hn::Set(di, i - 1)),
                                            hn::Lt(index, hn::Set(di, right + 1)));
                const auto added = hn::IfThenElseZero(hn::RebindMask(du, within), full);
                std::uint32_t* const at = pixels + start;
                hn::StoreU(hn::Or(hn::LoadU(du, at), added), du, at);
            }
        }
    }

    /// Paints the whole stamp, or only what `fillSolid` has left out.
    void paint(const StampRows& rows, const PlacedStamp& stamp, const StampSpans& spans,
               bool solidIsFilled) {
        if (!solidIsFilled) {
            coverSolid(rows, stamp, spans);
        }
        paintRing(rows, stamp, spans, solidIsFilled);
    }

    /// Pixels that a raster must have in a row.
    static int fewestPixels() { return static_cast<int>(hn::Lanes(U32())); }

private:
    using U32 = hn::ScalableTag<std::uint32_t>;
    using I32 = hn::RebindToSigned<U32>;
    using F32 = hn::RebindToFloat<U32>;

    static constexpr int SHIFT = P::FORMAT::alpha * 8; // a lane's low byte comes first in memory
    static constexpr std::uint32_t ALPHA = std::uint32_t{255} << SHIFT;

    static double squareRoot(double q) { return std::sqrt(q); }

    // In units of the last place of a single-precision number: the distance from the centre is off
    // by 6 r + 16 and the difference to the outer radius by 3 r more, which the slope of the ring,
    // at most 1.5 k, carries into the cover. The rest is the rounding of the factors and of the
    // sum. Fused multiplications round less often; either way is within the bound.
    static double errorBound(const BrushProfile& brush) {
        constexpr double unit = 255.0 / 16777216.0;
        return unit * (brush.ringScale * (13 * brush.outer + 26) + 20);
    }

    static HWY_INLINE hn::Vec<U32> alphaOf(hn::Vec<U32> pixel) {
        const auto shifted = hn::ShiftRight<SHIFT>(pixel);
        return SHIFT == 24 ? shifted : hn::And(shifted, hn::Set(U32(), 255));
    }
    /// The low byte of every lane put where the alpha is.
    static HWY_INLINE hn::Vec<U32> placed(hn::Vec<U32> alpha) {
        const auto shifted = hn::ShiftLeft<SHIFT>(alpha);
        return SHIFT == 24 ? shifted : hn::And(shifted, hn::Set(U32(), ALPHA));
    }

    void fillTable(double amount) {
        for (std::size_t a = 0; a < 255; ++a) {
            m_alphas[a] = coveredAlpha<P>(static_cast<std::uint8_t>(a), 1.0, amount);
        }
        m_alphas[255] = 255;
        m_amount = amount;
    }

    /// Looks up what full cover comes to where the stamp covers fully.
    void coverSolid(const StampRows& rows, const PlacedStamp& stamp, const StampSpans& spans) {
        const U32 du;
        const int lanes = static_cast<int>(hn::Lanes(du));
        for (int k = 0; k < spans.count; ++k) {
            int i = spans.solidLeft[k];
            const int right = spans.solidRight[k];
            if (i <= right && m_amount != stamp.amount) {
                fillTable(stamp.amount);
            }
            std::uint8_t* const row = rows.row(spans.first + k);
            for (; i + lanes - 1 <= right; i += lanes) {
                std::uint32_t* const at = reinterpret_cast<std::uint32_t*>(row) + i;
                const auto pixel = hn::LoadU(du, at);
                const auto alpha = alphaOf(pixel);
                const auto found = hn::GatherIndex(du, m_alphas.data(), hn::BitCast(I32(), alpha));
                hn::StoreU(hn::Or(hn::And(pixel, hn::Set(du, ~ALPHA)), hn::ShiftLeft<SHIFT>(found)),
                           du, at);
            }
            for (; i <= right; ++i) {
                std::uint8_t& alpha = row[i * 4 + P::FORMAT::alpha];
                alpha = static_cast<std::uint8_t>(m_alphas[alpha]);
            }
        }
    }

    /// Paints what the spans do not call solid. Pixels beside the brush may be computed along: they
    /// stay as they are, and so do those that are fully opaque.
    static void paintRing(const StampRows& rows, const PlacedStamp& stamp, const StampSpans& spans,
                          bool solidIsFilled) {
        const U32 du;
        const I32 di;
        const F32 df;
        const int lanes = static_cast<int>(hn::Lanes(du));
        const BrushProfile& brush = stamp.brush;
        const auto amount = static_cast<float>(stamp.amount);
        const auto lane = hn::Iota(di, 0);
        const auto offset = hn::Iota(df, 0);
        const auto scale = hn::Set(df, static_cast<float>(brush.ringScale));
        const auto rim = hn::Set(df, static_cast<float>(brush.outer * brush.ringScale));
        const auto zero = hn::Zero(df);
        const auto one = hn::Set(df, 1.0F);
        const auto two = hn::Set(df, 2.0F);
        const auto three = hn::Set(df, 3.0F);
        const auto most = hn::Set(df, amount);
        const auto perAlpha = hn::Set(df, amount * static_cast<float>(P::RECIP_VALUE()));
        const auto alphaBits = hn::Set(du, ALPHA);
        // Adding this rounds to a whole number, which is then found in the low bits.
        const auto magic = hn::Set(df, 8388608.0F);
        const auto doubtful = hn::Set(df, 0.5F - static_cast<float>(errorBound(brush)));

        // Paints one vector of row `k` that covers pixel `i`; only pixels from `i` to `last`.
        const auto paintVector = [&](int k, int i, int last) HWY_ATTR
            __attribute__((always_inline)) {
            const int start = std::min(i, rows.width - lanes);
            std::uint8_t* const row = rows.row(spans.first + k);
            std::uint32_t* const at = reinterpret_cast<std::uint32_t*>(row) + start;
            const auto pixel = hn::LoadU(du, at);
            const auto open = hn::AndNot(pixel, alphaBits);
            if (hn::AllTrue(du, hn::Eq(open, hn::Zero(du)))) {
                return;
            }
            const auto dx = hn::Add(offset, hn::Set(df, static_cast<float>(start - stamp.x)));
            const auto q = hn::MulAdd(dx, dx, hn::Set(df, spans.dy2[k]));
            const auto depth = hn::NegMulAdd(hn::Sqrt(q), scale, rim);
            const auto s = hn::Min(hn::Max(depth, zero), one);
            const auto cover = hn::Mul(hn::NegMulAdd(two, s, three), hn::Mul(s, s));
            const auto a = hn::ConvertTo(df, hn::BitCast(di, alphaOf(pixel)));
            const auto sum = hn::MulAdd(hn::NegMulAdd(a, perAlpha, most), cover, a);
            const auto lifted = hn::Add(sum, magic);
            const auto painted =
                hn::Or(hn::AndNot(alphaBits, pixel), placed(hn::BitCast(du, lifted)));
            const auto off = hn::Abs(hn::Sub(sum, hn::Sub(lifted, magic)));
            const auto unsure = hn::Gt(off, doubtful);
            const bool all = start == i && start + lanes - 1 <= last;
            if (HWY_LIKELY(all && hn::AllFalse(df, unsure))) {
                hn::StoreU(painted, du, at);
                return;
            }
            const auto index = hn::Add(lane, hn::Set(di, start));
            const auto wanted =
                hn::And(hn::Gt(index, hn::Set(di, i - 1)), hn::Lt(index, hn::Set(di, last + 1)));
            const auto again = hn::And(wanted, hn::RebindMask(di, unsure));
            const auto take = hn::RebindMask(du, hn::AndNot(again, wanted));
            hn::StoreU(hn::IfThenElse(take, painted, pixel), du, at);
            paintAgain(row, spans.first + k, stamp, start, again);
        };

        forEachVector(spans, solidIsFilled, lanes, paintVector);
    }

    /// Calls `visit(row, pixel, last)` for the vectors on both sides of what is solid. Where that
    /// is filled a vector may reach into it and beyond.
    template<class Visit>
    static HWY_INLINE void forEachVector(const StampSpans& spans, bool solidIsFilled, int lanes,
                                         const Visit& visit) {
        constexpr int unlimited = std::numeric_limits<int>::max() - 1;
        for (int k = 0; k < spans.count; ++k) {
            const bool solid = spans.solidLeft[k] <= spans.solidRight[k];
            const int last = solid ? spans.solidLeft[k] - 1 : spans.right[k];
            int i = spans.left[k];
            for (; i <= last; i += lanes) {
                visit(k, i, solid && !solidIsFilled ? last : unlimited);
            }
            if (solid) {
                const int next = spans.solidRight[k] + 1;
                for (i = solidIsFilled ? std::max(i, next) : next; i <= spans.right[k];
                     i += lanes) {
                    visit(k, i, unlimited);
                }
            }
        }
    }

    static HWY_NOINLINE void paintAgain(std::uint8_t* row, int y, const PlacedStamp& stamp,
                                        int start, hn::Mask<I32> which) {
        std::uint8_t bits[8] = {};
        hn::StoreMaskBits(I32(), which, bits);
        for (int k = 0; k < static_cast<int>(hn::Lanes(I32())); ++k) {
            if ((bits[k / 8] >> (k % 8) & 1) != 0) {
                stampPixels<P>(row, 4, stamp, y, start + k, start + k, squareRoot);
            }
        }
    }

    double m_amount = -1.0;                    // of the stamps that the table stands for
    std::array<std::uint32_t, 256> m_alphas{}; // what full cover makes of each alpha
};

} // namespace orbel::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
