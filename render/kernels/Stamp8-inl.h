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

/// How much of its opening a stamp leaves to a pixel, 1 - cover x strength, computed in single
/// precision from whole columns and the squared distances of rows. Distances are counted in widths
/// of the ring. `pointed` is for brushes without a core, whose ring is all there is of them.
template<bool pointed>
class Falloff {
    using F32 = hn::ScalableTag<float>;
    using V = hn::Vec<F32>;

public:
    /// `strength` is what full cover takes of an opening, from 0 to 1.
    HWY_INLINE Falloff(const PlacedStamp& stamp, double strength)
        : m_scale(set(stamp.brush.ringScale)),
          m_shift(set((stamp.x - std::floor(stamp.x)) * stamp.brush.ringScale)),
          m_core(set(stamp.brush.inner * stamp.brush.ringScale)),
          m_two(set(2 * strength)),
          m_three(set(3 * strength)),
          m_least(set(1 - strength)),
          m_scale2(static_cast<float>(stamp.brush.ringScale * stamp.brush.ringScale)) {}

    /// What `of` needs of a row: its squared distance from the centre.
    HWY_INLINE V row(float dy2) const { return hn::Set(F32(), dy2 * m_scale2); }
    /// And of columns, which count from the whole number below the centre.
    HWY_INLINE V across(V column) const { return hn::MulSub(column, m_scale, m_shift); }

    HWY_INLINE V of(V dx, V row) const {
        const V q = hn::MulAdd(dx, dx, row);
        const V one = hn::Set(F32(), 1.0F);
        if constexpr (pointed) {
            const V u = hn::Min(q, one);
            return hn::MulAdd(u, hn::NegMulAdd(hn::Sqrt(u), m_two, m_three), m_least);
        } else {
            const V t = hn::Min(hn::Max(hn::Sub(hn::Sqrt(q), m_core), hn::Zero(F32())), one);
            return hn::MulAdd(hn::Mul(t, t), hn::NegMulAdd(t, m_two, m_three), m_least);
        }
    }

    /// How far `of` can be off, in units of 2^-24: what rounding the result of one operation can
    /// change at most. With distances from the centre d, in widths of the ring, and `k` such widths
    /// to a pixel: a coordinate is off by 3 (d + k), a squared distance q by 8 q + 7 d k.
    /// For t = sqrt(q) the slope of t t (3 - 2 t) is 3 (1 - t) along q, which carries less than
    /// 4 + 6 k into the result. A core makes a distance be off by 6 outer k + 4 k + 1, with a slope
    /// of at most 1.5. To this the polynomial adds less than 14. Fused multiplications round less
    /// often; either way is within the bound.
    static double error(const BrushProfile& brush) {
        const double k = brush.ringScale;
        return pointed ? 18 + 6 * k : 16 + k * (9 * brush.outer + 6);
    }

private:
    static HWY_INLINE V set(double value) { return hn::Set(F32(), static_cast<float>(value)); }

    V m_scale;
    V m_shift;
    V m_core;
    V m_two;
    V m_three;
    V m_least;
    float m_scale2;
};

/// A stamp on pixels of four bytes. Alphas are computed in single precision with a bound on the
/// error; where that bound leaves open which whole number an alpha comes to, the pixel is computed
/// again as `HQDrawSphere` does.
template<class P>
class Stamp8 {
public:
    /// Makes opaque what the stamp covers. Of every row the run that was filled last is remembered,
    /// and only what a stamp adds to it is written: stamps of a stroke cover much of the same.
    void fillSolid(const StampRows& rows, const StampSpans& spans) {
        for (int k = 0; k < spans.count; ++k) {
            const int y = spans.first + k;
            Run run{spans.solidLeft[k], spans.solidRight[k]};
            Run& filled = m_filled[static_cast<std::size_t>(y - rows.first)];
            if (run.left > run.right || (run.left >= filled.left && run.right <= filled.right)) {
                continue;
            }
            const bool narrow = run.right - run.left < 2 * fewestPixels();
            const bool apart = narrow || run.left > filled.right + 1 || run.right + 1 < filled.left;
            const Run known = apart ? Run{run.right + 1, run.right} : filled;
            run.left = std::min(run.left, known.left);
            run.right = std::max(run.right, known.right);
            extendSolid(rows, y, known, run);
            filled = run;
        }
    }

    /// Paints the whole stamp, or only what `fillSolid` has left out.
    void paint(const StampRows& rows, const PlacedStamp& stamp, const StampSpans& spans,
               bool solidIsFilled) {
        if (!solidIsFilled) {
            coverSolid(rows, stamp, spans);
        }
        if (stamp.brush.inner > 0.0) {
            Ring<false>(rows, stamp).paint(spans, solidIsFilled);
        } else {
            Ring<true>(rows, stamp).paint(spans, solidIsFilled);
        }
    }

    /// Whether a stamp is so small that to find its spans would take longer than to paint it as it
    /// is. Where a core does not cover fully, sums may be whole numbers too often for that.
    static bool goesWithoutSpans(const PlacedStamp& stamp) {
        const int width = stamp.box.right - stamp.box.left + 1;
        return width <= MOST_COLUMNS && (stamp.amount == 255.0 || !(stamp.brush.inner > 0.0));
    }

    /// Paints such a stamp.
    static void paintSmall(const StampRows& rows, const PlacedStamp& stamp) {
        if (stamp.brush.inner > 0.0) {
            Ring<false>(rows, stamp).paintBox();
        } else {
            Ring<true>(rows, stamp).paintBox();
        }
    }

    /// How far from the centre pixels can change: not where full cover of a transparent pixel would
    /// come to less than a half. Near the rim the cover is at most 3 s s, at a depth of s widths of
    /// the ring.
    static double reach(const PlacedStamp& stamp) {
        const double depth = std::min(std::sqrt(0.499 / 3 / stamp.amount), 1.0);
        return stamp.brush.outer - depth * (stamp.brush.outer - stamp.brush.inner);
    }

    /// Pixels that a raster must have in a row.
    static int fewestPixels() { return static_cast<int>(hn::Lanes(U32())); }

private:
    using U32 = hn::ScalableTag<std::uint32_t>;
    using I32 = hn::RebindToSigned<U32>;
    using F32 = hn::RebindToFloat<U32>;

    static constexpr int MOST_COLUMNS = 32; // of a stamp that is painted without its spans
    static constexpr int SHIFT = P::FORMAT::alpha * 8; // a lane's low byte comes first in memory
    static constexpr std::uint32_t ALPHA = std::uint32_t{255} << SHIFT;

    static double squareRoot(double q) { return std::sqrt(q); }

    static HWY_INLINE std::uint32_t* pixelsOf(const StampRows& rows, int y) {
        return reinterpret_cast<std::uint32_t*>(rows.row(y));
    }

    /// Which lanes of a vector that begins at `start` are from `left` to `right`.
    static HWY_INLINE hn::Mask<I32> between(I32 di, int start, int left, int right) {
        const auto index = hn::Iota(di, start);
        return hn::And(hn::Gt(index, hn::Set(di, left - 1)), hn::Lt(index, hn::Set(di, right + 1)));
    }

    struct Run {
        int left;
        int right;
    };

    static std::array<Run, StampKernels::mostRows> nothingFilled() {
        std::array<Run, StampKernels::mostRows> filled;
        filled.fill({0, -2});
        return filled;
    }

    /// Makes opaque what `run` has beyond `known`, of which it is an extension.
    static void extendSolid(const StampRows& rows, int y, const Run& known, const Run& run) {
        const U32 du;
        const int lanes = static_cast<int>(hn::Lanes(du));
        const auto full = hn::Set(du, ALPHA);
        const auto fill = [du](std::uint32_t* at, hn::Vec<U32> added)
                              HWY_ATTR { hn::StoreU(hn::Or(hn::LoadU(du, at), added), du, at); };
        std::uint32_t* const row = pixelsOf(rows, y);
        const int last = run.right + 1 - lanes; // where a vector within the run may begin
        if (last < run.left) {
            const int start = std::min(run.left, rows.width - lanes);
            const auto within = hn::RebindMask(du, between(I32(), start, run.left, run.right));
            fill(row + start, hn::IfThenElseZero(within, full));
            return;
        }
        for (int i = run.left; i < known.left; i += lanes) {
            fill(row + std::min(i, last), full);
        }
        for (int i = last; i + lanes - 1 > known.right; i -= lanes) {
            fill(row + std::max(i, run.left), full);
        }
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
                const auto shifted = hn::ShiftRight<SHIFT>(pixel);
                const auto alpha = SHIFT == 24 ? shifted : hn::And(shifted, hn::Set(du, 255));
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
    template<bool pointed>
    class Ring {
    public:
        HWY_INLINE Ring(const StampRows& rows, const PlacedStamp& stamp)
            : m_rows(rows),
              m_stamp(stamp),
              m_falloff(stamp, stamp.amount / 255.0),
              m_doubt(doubtOf(stamp.brush)),
              m_wholeX(static_cast<std::int32_t>(std::floor(stamp.x))) {}

        HWY_INLINE void paint(const StampSpans& spans, bool solidIsFilled) const {
            for (int k = 0; k < spans.count; ++k) {
                const Row row{pixelsOf(m_rows, spans.first + k), spans.first + k,
                              m_falloff.row(spans.dy2[k])};
                const int left = spans.left[k];
                const int right = spans.right[k];
                const int solidLeft = spans.solidLeft[k];
                const int solidRight = spans.solidRight[k];
                if (solidLeft > solidRight) {
                    paintRun(row, left, right, m_rows.width);
                } else if (solidIsFilled) {
                    const int next = paintRun(row, left, solidLeft - 1, m_rows.width);
                    paintRun(row, std::max(next, solidRight + 1), right, m_rows.width);
                } else {
                    paintRun(row, left, solidLeft - 1, solidLeft);
                    paintRun(row, solidRight + 1, right, m_rows.width);
                }
            }
        }

        /// Everything that the stamp can touch, in strips as wide as a vector.
        HWY_INLINE void paintBox() const {
            const int lanes = static_cast<int>(hn::Lanes(U32()));
            const Vx_Rect& box = m_stamp.box;
            const int first = std::max<int>(box.top, m_rows.first);
            const int last = std::min<int>(box.bottom, m_rows.last);
            const double wholeY = std::floor(m_stamp.y);
            const auto shiftY = static_cast<float>(m_stamp.y - wholeY);
            for (int i = box.left; i <= box.right; i += lanes) {
                const bool isWhole = i + lanes <= m_rows.width;
                const auto dx = m_falloff.across(columnsFrom(i));
                for (int y = first; y <= last; ++y) {
                    const float dy =
                        static_cast<float>(y - static_cast<std::int32_t>(wholeY)) - shiftY;
                    const Row row{pixelsOf(m_rows, y), y, m_falloff.row(dy * dy)};
                    if (isWhole) {
                        paintVector(row, i, dx);
                    } else {
                        paintRest(row, i, m_rows.width - 1);
                    }
                }
            }
        }

    private:
        struct Row {
            std::uint32_t* pixels = nullptr;
            int y = 0;
            hn::Vec<F32> distance;
        };

        // A sum lies within 256 and 512, so that the bits of a single-precision number are, from
        // the lowest, 15 of a fraction and the 8 of an alpha.
        static constexpr int FRACTION = 15;
        static constexpr int ONE = 1 << FRACTION;

        /// How many units of a sum's last bit it may be off: `Falloff` times an opening of at most
        /// 255, and 3 units of 255 x 2^-24 more for product, sum and strength.
        static std::int32_t doubtOf(const BrushProfile& brush) {
            constexpr double unit = 255.0 / 16777216.0;
            const double bound = unit * (Falloff<pointed>::error(brush) + 3);
            return static_cast<std::int32_t>(std::min(bound, 0.5) * ONE) + 1;
        }

        /// Paints whole vectors from `left` on until `right` has been reached, and what is left of
        /// them before `end` pixel by pixel. Gives the pixel behind the last that was painted.
        HWY_INLINE int paintRun(const Row& row, int left, int right, int end) const {
            const int lanes = static_cast<int>(hn::Lanes(U32()));
            int i = left;
            auto column = columnsFrom(left);
            const auto step = hn::Set(F32(), static_cast<float>(lanes));
            const int last = std::min(right, end - lanes);
            for (; i <= last; i += lanes) {
                paintVector(row, i, m_falloff.across(column));
                column = hn::Add(column, step);
            }
            if (i <= right) {
                paintRest(row, i, std::min(i + lanes, end) - 1);
                return end;
            }
            return i;
        }

        /// A vector that begins at a pixel, in the terms of `Falloff`.
        HWY_INLINE hn::Vec<F32> columnsFrom(int i) const {
            return hn::Iota(F32(), static_cast<float>(i - m_wholeX));
        }

        HWY_INLINE void paintVector(const Row& row, int i, hn::Vec<F32> dx) const {
            const U32 du;
            std::uint32_t* const at = row.pixels + i;
            const auto pixel = hn::LoadU(du, at);
            const auto open = hn::AndNot(pixel, hn::Set(du, ALPHA));
            if (hn::AllTrue(du, hn::Eq(open, hn::Zero(du)))) {
                return;
            }
            const auto sum = sumOf(open, dx, row);
            const auto painted = withAlpha(pixel, sum);
            const auto unsure = isUnsure(sum);
            if (HWY_LIKELY(hn::AllFalse(I32(), unsure))) {
                hn::StoreU(painted, du, at);
                return;
            }
            hn::StoreU(hn::IfThenElse(hn::RebindMask(du, unsure), pixel, painted), du, at);
            paintAgain(row, i, unsure);
        }

        /// Paints pixels `left` to `right`, fewer than a vector has.
        HWY_INLINE void paintRest(const Row& row, int left, int right) const {
            const U32 du;
            const I32 di;
            const int start = std::min(left, m_rows.width - static_cast<int>(hn::Lanes(du)));
            std::uint32_t* const at = row.pixels + start;
            const auto pixel = hn::LoadU(du, at);
            const auto open = hn::AndNot(pixel, hn::Set(du, ALPHA));
            const auto sum = sumOf(open, m_falloff.across(columnsFrom(start)), row);
            const auto wanted = between(di, start, left, right);
            const auto again = hn::And(wanted, isUnsure(sum));
            const auto take = hn::RebindMask(du, hn::AndNot(again, wanted));
            hn::StoreU(hn::IfThenElse(take, withAlpha(pixel, sum), pixel), du, at);
            if (!hn::AllFalse(di, again)) {
                paintAgain(row, start, again);
            }
        }

        /// The bits of the painted alphas plus a half, lifted by as much as they may be off.
        HWY_INLINE hn::Vec<U32> sumOf(hn::Vec<U32> open, hn::Vec<F32> dx, const Row& row) const {
            const F32 df;
            const auto opening = hn::ConvertTo(df, hn::BitCast(I32(), hn::ShiftRight<SHIFT>(open)));
            const auto most =
                hn::Set(df, 511.5F + static_cast<float>(m_doubt) / static_cast<float>(ONE));
            const auto left = m_falloff.of(dx, row.distance);
            return hn::BitCast(U32(), hn::NegMulAdd(opening, left, most));
        }

        /// Where the sum without lift may lie on either side of a whole number.
        HWY_INLINE hn::Mask<I32> isUnsure(hn::Vec<U32> sum) const {
            const I32 di;
            const auto fraction = hn::And(hn::BitCast(di, sum), hn::Set(di, ONE - 1));
            return hn::Lt(fraction, hn::Set(di, 2 * m_doubt));
        }

        static HWY_INLINE hn::Vec<U32> withAlpha(hn::Vec<U32> pixel, hn::Vec<U32> sum) {
            constexpr int up = std::max(SHIFT - FRACTION, 0);
            constexpr int down = std::max(FRACTION - SHIFT, 0);
            const auto alpha = hn::ShiftRight<down>(hn::ShiftLeft<up>(sum));
            return hn::IfVecThenElse(hn::Set(U32(), ALPHA), alpha, pixel);
        }

        HWY_NOINLINE void paintAgain(const Row& row, int start, hn::Mask<I32> which) const {
            std::uint8_t bits[8] = {};
            hn::StoreMaskBits(I32(), which, bits);
            for (int k = 0; k < static_cast<int>(hn::Lanes(I32())); ++k) {
                if ((bits[k / 8] >> (k % 8) & 1) != 0) {
                    stampPixels<P>(reinterpret_cast<std::uint8_t*>(row.pixels), 4, m_stamp, row.y,
                                   start + k, start + k, squareRoot);
                }
            }
        }

        const StampRows& m_rows;
        const PlacedStamp& m_stamp;
        Falloff<pointed> m_falloff;
        std::int32_t m_doubt;
        std::int32_t m_wholeX;
    };

    std::array<Run, StampKernels::mostRows> m_filled = nothingFilled();
    double m_amount = -1.0;                    // of the stamps that the table stands for
    std::array<std::uint32_t, 256> m_alphas{}; // what full cover makes of each alpha
};

} // namespace orbel::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
