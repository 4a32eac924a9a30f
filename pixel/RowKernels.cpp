#include "pixel/RowKernels.h"

#include "pixel/Acceleration.h"
#include "pixel/RowLaw.h"

namespace orbel {

template<typename P>
const RowKernels<P>& rowKernels(int /*level*/) {
    return rowLaw<P>();
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
