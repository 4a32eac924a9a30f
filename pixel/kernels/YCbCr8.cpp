#include "pixel/kernels/VectorKernels.h"
#include "pixel/kernels/VectorTargets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/kernels/YCbCr8.cpp"
#include <hwy/foreach_target.h> // compiles this unit once more for every target

#if HWY_TARGET != HWY_SCALAR
#include "pixel/kernels/YCbCr8-inl.h"
#endif

#if HWY_ONCE
namespace orbel {

template<typename P>
void enterYCbCrKernels(int level, YCbCrRows<P>& table) {
    ORBEL_CALL_TARGET(level, enterYCbCr<P>(table));
}

template void enterYCbCrKernels<PIXEL_ARGB8>(int level, YCbCrRows<PIXEL_ARGB8>& table);
template void enterYCbCrKernels<PIXEL_RGBA8>(int level, YCbCrRows<PIXEL_RGBA8>& table);

} // namespace orbel
#endif
