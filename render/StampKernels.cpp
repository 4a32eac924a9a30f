#include "render/StampKernels.h"

#include <cmath>

namespace orbel {

namespace {

// Whole numbers up to here, and some more, are exact in single precision.
constexpr double LARGEST = 1e6;

} // namespace

bool kernelsCanPaint(const PlacedStamp& stamp, double maximum) {
    const BrushProfile& brush = stamp.brush;
    return stamp.amount >= 0.0 && stamp.amount <= maximum && std::fabs(stamp.x) <= LARGEST &&
           std::fabs(stamp.y) <= LARGEST && brush.outer <= LARGEST && brush.inner >= 0.0 &&
           brush.inner < brush.outer;
}

#if !ORBEL_HAVE_HIGHWAY

template<class P>
const StampKernels* stampKernels(int /*level*/) {
    return nullptr;
}

#define ORBEL_STAMP_KERNELS(P) template const StampKernels* stampKernels<P>(int level);
ORBEL_FOR_EACH_PIXEL_FORMAT(ORBEL_STAMP_KERNELS)

#endif

} // namespace orbel
