// The soft parts of stamps in the 8-bit formats: a pixel is a lane of 32 bits.

#if defined(ORBEL_RING8_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef ORBEL_RING8_INL_H
#undef ORBEL_RING8_INL_H
#else
#define ORBEL_RING8_INL_H
#endif

#include "render/kernels/Falloff-inl.h"
#include "render/kernels/StampSpans-inl.h"

#include <hwy/highway.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

HWY_BEFORE_NAMESPACE();
namespace orbel::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// Pixels of four bytes as lanes of 32 bits.
template<class P>
struct Lanes8 {
    using U32 = hn::ScalableTag<std::uint32_t>;
    using I32 = hn::RebindToSigned<U32>;
    using F32 = hn::RebindToFloat<U32>;

    static constexpr int SHIFT = P::FORMAT::alpha * 8; // a lane's low byte comes first in memory
    static constexpr std::uint32_t ALPHA = std::uint32_t{255} << SHIFT;

    static HWY_INLINE std::uint32_t* pixelsOf(const StampRows& rows, int y) {
        return reinterpret_cast<std::uint32_t*>(rows.row(y));
    }

    /// Which lanes of a vector that begins at `start` are from `left` to `right`.
    static HWY_INLINE hn::Mask<I32> between(I32 di, int start, int left, int right) {
        const auto index = hn::Iota(di, start);
        return hn::And(hn::Gt(index, hn::Set(di, left - 1)), hn::Lt(index, hn::Set(di, right + 1)));
    }
};

/// Paints what the spans do not call solid. Pixels beside the brush may be computed along: they
/// stay as they are, and so do those that are fully opaque.
template<class P, bool pointed>
class Ring8 : Lanes8<P> {
    using typename Lanes8<P>::U32;
    using typename Lanes8<P>::I32;
    using typename Lanes8<P>::F32;
    using Lanes8<P>::SHIFT;
    using Lanes8<P>::ALPHA;
    using Lanes8<P>::pixelsOf;
    using Lanes8<P>::between;

public:
    HWY_INLINE Ring8(const StampRows& rows, const PlacedStamp& stamp)
        : m_rows(rows),
          m_stamp(stamp),
          m_falloff(stamp, stamp.amount / P::MAX_VALUE()),
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
                const float dy = static_cast<float>(y - static_cast<std::int32_t>(wholeY)) - shiftY;
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
        constexpr double unit = P::MAX_VALUE() / 16777216.0;
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
                               start + k, start + k, [](double q) { return std::sqrt(q); });
            }
        }
    }

    const StampRows& m_rows;
    const PlacedStamp& m_stamp;
    Falloff<pointed> m_falloff;
    std::int32_t m_doubt;
    std::int32_t m_wholeX;
};

} // namespace orbel::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
