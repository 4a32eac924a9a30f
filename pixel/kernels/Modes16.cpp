#include "pixel/kernels/VectorKernels.h"
#include "pixel/kernels/VectorTargets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/kernels/Modes16.cpp"
#include <hwy/foreach_target.h> // compiles this unit once more for every target

#if HWY_TARGET != HWY_SCALAR
#include "pixel/kernels/Finish-inl.h"
#endif

#if HWY_ONCE
namespace orbel {

template<typename P>
void enterModeKernels(int level, RowKernels<P>& table) {
    ORBEL_CALL_TARGET(level, enterModes<P>(table));
}

template void enterModeKernels<PIXEL_ARGB16>(int level, RowKernels<PIXEL_ARGB16>& table);
template void enterModeKernels<PIXEL_RGBA16>(int level, RowKernels<PIXEL_RGBA16>& table);

} // namespace orbel
#endif
