// Projects stamps with vectors of doubles, in the order of operations of `project`.

#include "pixel/kernels/VectorTargets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "render/kernels/SpotVectors.cpp"
#include <hwy/foreach_target.h> // compiles what follows once for every level

#include "render/StampSpots.h"

#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace orbel::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

#if HWY_TARGET != HWY_SCALAR

using Doubles = hn::ScalableTag<double>;
using DoubleV = hn::Vec<Doubles>;

/// A column of a matrix, for points of the plane z = 0 with w = 1.
class PlaneColumn {
public:
    HWY_INLINE PlaneColumn(const Vx_Matrix4& matrix, int column)
        : m_byX(hn::Set(Doubles(), matrix.m[0][column])),
          m_byY(hn::Set(Doubles(), matrix.m[1][column])),
          m_byZ(hn::Set(Doubles(), 0.0 * matrix.m[2][column])),
          m_byW(hn::Set(Doubles(), 1.0 * matrix.m[3][column])) {}

    HWY_INLINE DoubleV of(DoubleV x, DoubleV y) const {
        const DoubleV plane = hn::Add(hn::Mul(x, m_byX), hn::Mul(y, m_byY));
        return hn::Add(hn::Add(plane, m_byZ), m_byW);
    }

private:
    DoubleV m_byX;
    DoubleV m_byY;
    DoubleV m_byZ;
    DoubleV m_byW;
};

HWY_INLINE DoubleV onChord(const double* begin, const double* span, DoubleV along, DoubleV length,
                           DoubleV scale) {
    const Doubles d;
    const DoubleV added = hn::Div(hn::Mul(hn::Load(d, span), along), length);
    return hn::Div(hn::Add(hn::Load(d, begin), added), scale);
}

void projectAll(const ProjectionSetup& setup, StampSpots* spots) {
    const Doubles d;
    const PlaneColumn columnX(setup.viewFromPath, 0);
    const PlaneColumn columnY(setup.viewFromPath, 1);
    const PlaneColumn columnZ(setup.viewFromPath, 2);
    const DoubleV scaleX = hn::Set(d, setup.scaleX);
    const DoubleV scaleY = hn::Set(d, setup.scaleY);
    const DoubleV zoom = hn::Set(d, setup.zoom);
    const DoubleV aspect = hn::Set(d, setup.horizontalAspect);
    const DoubleV middleX = hn::Set(d, setup.width / 2);
    const DoubleV middleY = hn::Set(d, setup.height / 2);
    for (std::size_t i = 0; i < spots->count; i += hn::Lanes(d)) {
        const DoubleV along = hn::Load(d, spots->along + i);
        const DoubleV length = hn::Load(d, spots->length + i);
        const DoubleV x = onChord(spots->beginX + i, spots->spanX + i, along, length, scaleX);
        const DoubleV y = onChord(spots->beginY + i, spots->spanY + i, along, length, scaleY);
        const DoubleV z = columnZ.of(x, y);
        const DoubleV acrossX = hn::Div(hn::Mul(columnX.of(x, y), scaleX), z);
        const DoubleV acrossY = hn::Div(hn::Mul(columnY.of(x, y), scaleY), z);
        const DoubleV size = hn::Div(hn::Load(d, spots->radius + i), z);
        const auto nowhere = hn::Eq(z, hn::Zero(d));
        const auto store = [&](DoubleV value, double* to) HWY_ATTR {
            hn::Store(hn::IfThenZeroElse(nowhere, value), d, to + i);
        };
        store(hn::Add(hn::Mul(hn::Mul(acrossX, zoom), aspect), middleX), spots->x);
        store(hn::Add(hn::Mul(acrossY, zoom), middleY), spots->y);
        store(z, spots->depth);
        store(hn::Mul(hn::Mul(size, scaleX), zoom), spots->radius);
    }
}

inline void enter(SpotProjector* projector) {
    *projector = &projectAll;
}

#endif

} // namespace orbel::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace orbel {

SpotProjector spotProjector(int level) {
    SpotProjector projector = nullptr;
    ORBEL_CALL_TARGET(level, enter(&projector))
    return projector;
}

} // namespace orbel

#endif
