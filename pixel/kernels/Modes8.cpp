#include "pixel/kernels/VectorKernels.h"
#include "pixel/kernels/VectorTargets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "pixel/kernels/Modes8.cpp"
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

template void enterModeKernels<PIXEL_ARGB8>(int level, RowKernels<PIXEL_ARGB8>& table);
template void enterModeKernels<PIXEL_RGBA8>(int level, RowKernels<PIXEL_RGBA8>& table);

} // namespace orbel
#endif
