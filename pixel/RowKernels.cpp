#include "pixel/RowKernels.h"

#include "pixel/Acceleration.h"
#include "pixel/RowReference.h"
#include "pixel/kernels/VectorKernels.h"

#include <algorithm>

namespace orbel {
namespace {

template<typename P>
using Levels = std::array<RowKernels<P>, ACCELERATION_LEVELS>;

template<typename P>
Levels<P> makeLevels() {
    Levels<P> levels;
    levels.fill(rowReference<P>());
#if ORBEL_HAVE_HIGHWAY
    for (int level = 1; level <= bestAccelerationLevel(); ++level) {
        auto& table = levels[static_cast<std::size_t>(level)];
        enterColourKernels(level, table);
        enterModeKernels(level, table);
    }
#endif
    return levels;
}

} // namespace

template<typename P>
const RowKernels<P>& rowKernels(int level) {
    static const Levels<P> levels = makeLevels<P>();
    return levels[static_cast<std::size_t>(std::clamp(level, 0, bestAccelerationLevel()))];
}

template<typename P>
const RowKernels<P>& rowKernels() {
    return rowKernels<P>(accelerationLevel());
}

#define ORBEL_INSTANTIATE_ROW_KERNELS(P)                                                           \
    template const RowKernels<P>& rowKernels<P>(int level);                                        \
    template const RowKernels<P>& rowKernels<P>();
ORBEL_FOR_EACH_PIXEL_FORMAT(ORBEL_INSTANTIATE_ROW_KERNELS)

} // namespace orbel
