// Which pixels of each row a stamp touches and covers; compiled once for every level.

#if defined(ORBEL_STAMP_SPANS_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef ORBEL_STAMP_SPANS_INL_H
#undef ORBEL_STAMP_SPANS_INL_H
#else
#define ORBEL_STAMP_SPANS_INL_H
#endif

#include "render/StampKernels.h"

#include <hwy/highway.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

HWY_BEFORE_NAMESPACE();
namespace orbel::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

/// For some rows of a raster: all pixels that a stamp touches lie from `left` to `right`, and those
/// from `solidLeft` to `solidRight` are fully covered. Both may be empty; the solid ones lie among
/// the touched ones.
struct StampSpans {
    static constexpr int capacity = StampKernels::mostRows;

    int first; ///< row
    int count; ///< rows
    HWY_ALIGN std::int32_t left[capacity];
    HWY_ALIGN std::int32_t right[capacity];
    HWY_ALIGN std::int32_t solidLeft[capacity];
    HWY_ALIGN std::int32_t solidRight[capacity];
    HWY_ALIGN float dy2[capacity]; ///< squared distance of the row from the centre, rounded
};

/// What the stamp can change lies within `reach` of its centre. Rounding is outweighed by making
/// that a little wider and what is solid a little narrower than they are.
inline void findSpans(const StampRows& target, const PlacedStamp& stamp, double reach,
                      StampSpans* spans) {
    const int firstRow = std::max<int>(stamp.box.top, target.first);
    const int rows = std::min<int>(stamp.box.bottom, target.last) - firstRow + 1;
    spans->first = firstRow;
    spans->count = rows;
    const hn::ScalableTag<float> df;
    const hn::RebindToSigned<decltype(df)> di;
    const double wholeX = std::floor(stamp.x);
    const double wholeY = std::floor(stamp.y);
    const auto x = hn::Set(df, static_cast<float>(stamp.x - wholeX));
    const auto y = hn::Set(df, static_cast<float>(stamp.y - wholeY));
    const double slack = 1e-3 + 1e-6 * stamp.brush.outer;
    const double inner = std::max(stamp.brush.inner - slack, 0.0);
    const auto margin = hn::Set(df, static_cast<float>(slack));
    const auto outer2 = hn::Set(df, static_cast<float>((reach + slack) * (reach + slack)));
    const auto inner2 = hn::Set(df, static_cast<float>(inner * inner));
    const auto boxLeft = hn::Set(di, stamp.box.left);
    const auto boxRight = hn::Set(di, stamp.box.right);
    const auto zero = hn::Zero(df);
    // Adding this to a small whole number leaves the number in the low bits.
    const auto magic = hn::Set(df, 12582912.0F);
    const auto column =
        hn::Sub(hn::Set(di, static_cast<std::int32_t>(wholeX)), hn::BitCast(di, magic));
    const auto toColumn = [&](auto whole) HWY_ATTR {
        return hn::Add(hn::BitCast(di, hn::Add(whole, magic)), column);
    };
    const int step = static_cast<int>(hn::Lanes(df));
    for (int k = 0; k < rows; k += step) {
        const auto row = hn::Iota(di, firstRow + k - static_cast<std::int32_t>(wholeY));
        const auto dy = hn::Sub(hn::ConvertTo(df, row), y);
        const auto dy2 = hn::Mul(dy, dy);
        const auto touched = hn::Add(hn::Sqrt(hn::Max(hn::Sub(outer2, dy2), zero)), margin);
        const auto solid = hn::Sub(hn::Sqrt(hn::Max(hn::Sub(inner2, dy2), zero)), margin);
        const auto first = [&](auto half) HWY_ATTR {
            return hn::Max(toColumn(hn::Ceil(hn::Sub(x, half))), boxLeft);
        };
        const auto last = [&](auto half) HWY_ATTR {
            return hn::Min(toColumn(hn::Floor(hn::Add(x, half))), boxRight);
        };
        hn::Store(first(touched), di, spans->left + k);
        hn::Store(last(touched), di, spans->right + k);
        hn::Store(first(solid), di, spans->solidLeft + k);
        hn::Store(last(solid), di, spans->solidRight + k);
        hn::Store(dy2, df, spans->dy2 + k);
    }
}

} // namespace orbel::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
