// Every kind of stamp for every level of vectors.

// The levels that can be chosen; the processors in between take the next lower one.
#define HWY_DISABLED_TARGETS (HWY_SSSE3 | HWY_AVX3_DL | HWY_SVE | HWY_SVE2)

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "render/kernels/StampVectors.cpp"
#include <hwy/foreach_target.h> // compiles what follows once for every level

#include "pixel/Acceleration.h"
#include "render/kernels/Stamp8-inl.h"
#include "render/kernels/StampDeep-inl.h"

#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace orbel {
namespace HWY_NAMESPACE {

template<class Pixels>
void fillSolid(const StampRows& rows, const PlacedStamp& stamp) {
    const int last = std::min<int>(stamp.box.bottom, rows.last);
    for (int y = std::max<int>(stamp.box.top, rows.first); y <= last; y += StampSpans::capacity) {
        StampSpans spans;
        findSpans(stamp, y, std::min(last - y + 1, StampSpans::capacity), &spans);
        for (int k = 0; k < spans.count; ++k) {
            Pixels::fill(rows.row(y + k), spans.solidLeft[k], spans.solidRight[k]);
        }
    }
}

template<class Pixels>
constexpr StampKernels KERNELS{fillSolid<Pixels>, Pixels::paint};

const StampKernels* kernels(PIXEL_ARGB8) {
    return &KERNELS<Stamp8<PIXEL_ARGB8>>;
}
const StampKernels* kernels(PIXEL_RGBA8) {
    return &KERNELS<Stamp8<PIXEL_RGBA8>>;
}
const StampKernels* kernels(PIXEL_ARGB16) {
    return &KERNELS<StampDeep<PIXEL_ARGB16>>;
}
const StampKernels* kernels(PIXEL_RGBA16) {
    return &KERNELS<StampDeep<PIXEL_RGBA16>>;
}
const StampKernels* kernels(PIXEL_ARGB32) {
    return &KERNELS<StampDeep<PIXEL_ARGB32>>;
}
const StampKernels* kernels(PIXEL_RGBA32) {
    return &KERNELS<StampDeep<PIXEL_RGBA32>>;
}

} // namespace HWY_NAMESPACE
} // namespace orbel
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace orbel {

template<class P>
const StampKernels* stampKernels(int level) {
    const StampKernels* kernels = nullptr;
#if HWY_TARGETS & HWY_NEON
    kernels = level >= ACCELERATION_128 ? N_NEON::kernels(P{}) : kernels;
#endif
#if HWY_TARGETS & HWY_SSE4
    kernels = level >= ACCELERATION_128 ? N_SSE4::kernels(P{}) : kernels;
#endif
#if HWY_TARGETS & HWY_AVX2
    kernels = level >= ACCELERATION_256 ? N_AVX2::kernels(P{}) : kernels;
#endif
#if HWY_TARGETS & HWY_AVX3
    kernels = level >= ACCELERATION_512 ? N_AVX3::kernels(P{}) : kernels;
#endif
    return kernels;
}

#define ORBEL_STAMP_KERNELS(P) template const StampKernels* stampKernels<P>(int level);
ORBEL_FOR_EACH_PIXEL_FORMAT(ORBEL_STAMP_KERNELS)

} // namespace orbel

#endif
