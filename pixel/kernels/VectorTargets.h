#pragma once

// The targets that vector code is made for, one per level of acceleration. To be included before
// any other header of Highway.

#include <hwy/detect_compiler_arch.h>

// Division on 32-bit ARM is only an estimate.
#if HWY_ARCH_ARM_V7
#define ORBEL_INEXACT_TARGETS HWY_NEON
#else
#define ORBEL_INEXACT_TARGETS 0
#endif

// What runs where no target can is the scalar reference, not Highway's own fallback.
#define HWY_DISABLED_TARGETS                                                                       \
    (HWY_SSSE3 | HWY_AVX3_DL | HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128 |                   \
     ORBEL_INEXACT_TARGETS)
#include <hwy/detect_targets.h>

#if HWY_TARGETS & HWY_SSE4
#define ORBEL_CALL_128(call) N_SSE4::call
#elif HWY_TARGETS & HWY_NEON
#define ORBEL_CALL_128(call) N_NEON::call
#else
#define ORBEL_CALL_128(call) static_cast<void>(0)
#endif

#if HWY_TARGETS & HWY_AVX2
#define ORBEL_CALL_256(call) N_AVX2::call
#else
#define ORBEL_CALL_256(call) ORBEL_CALL_128(call)
#endif

#if HWY_TARGETS & HWY_AVX3
#define ORBEL_CALL_512(call) N_AVX3::call
#else
#define ORBEL_CALL_512(call) ORBEL_CALL_256(call)
#endif

/// Calls a function of the target that serves a level; none does for level 0.
#define ORBEL_CALL_TARGET(level, call)                                                             \
    switch (level) {                                                                               \
    case 1:                                                                                        \
        ORBEL_CALL_128(call);                                                                      \
        break;                                                                                     \
    case 2:                                                                                        \
        ORBEL_CALL_256(call);                                                                      \
        break;                                                                                     \
    case 3:                                                                                        \
        ORBEL_CALL_512(call);                                                                      \
        break;                                                                                     \
    default:                                                                                       \
        break;                                                                                     \
    }
