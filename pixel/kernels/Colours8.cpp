#include "pixel/kernels/VectorKernels.h"
#include "pixel/kernels/VectorTargets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/kernels/Colours8.cpp"
#include <hwy/foreach_target.h> // compiles this unit once more for every target

#if HWY_TARGET != HWY_SCALAR
#include "pixel/kernels/Finish-inl.h"
#endif

#if HWY_ONCE
namespace orbel {

template<typename P>
void enterColourKernels(int level, RowKernels<P>& table) {
    ORBEL_CALL_TARGET(level, enterColours<P>(table));
}

template void enterColourKernels<PIXEL_ARGB8>(int level, RowKernels<PIXEL_ARGB8>& table);
template void enterColourKernels<PIXEL_RGBA8>(int level, RowKernels<PIXEL_RGBA8>& table);

} // namespace orbel
#endif
