#include "render/StampKernels.h"

namespace orbel {

#if !ORBEL_HAVE_HIGHWAY

template<class P>
const StampKernels* stampKernels(int /*level*/) {
    return nullptr;
}

#define ORBEL_STAMP_KERNELS(P) template const StampKernels* stampKernels<P>(int level);
ORBEL_FOR_EACH_PIXEL_FORMAT(ORBEL_STAMP_KERNELS)

#endif

} // namespace orbel
