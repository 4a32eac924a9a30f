// How a brush fades towards its rim, in single precision.

#if defined(ORBEL_FALLOFF_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef ORBEL_FALLOFF_INL_H
#undef ORBEL_FALLOFF_INL_H
#else
#define ORBEL_FALLOFF_INL_H
#endif

#include "render/StampProfile.h"

#include <hwy/highway.h>

#include <cmath>

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

} // namespace orbel::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
