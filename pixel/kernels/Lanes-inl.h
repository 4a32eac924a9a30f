// The vectors that all kernels compute with: lanes of 32 bits, as many as a level has.

#if defined(ORBEL_LANES_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef ORBEL_LANES_INL_H
#undef ORBEL_LANES_INL_H
#else
#define ORBEL_LANES_INL_H
#endif

#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace orbel {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

using Floats = hn::ScalableTag<float>;
using Ints = hn::RebindToSigned<Floats>;
using Words = hn::RebindToUnsigned<Floats>;
using FloatV = hn::Vec<Floats>;
using IntV = hn::Vec<Ints>;
using WordV = hn::Vec<Words>;

/// Pixels that are computed at a time.
constexpr int PIXELS_AT_ONCE = static_cast<int>(HWY_LANES(float));

/// Truncates values that `int` can hold. Highway's own conversion also sees to those that it
/// cannot, which takes longer than the conversion itself.
HWY_INLINE IntV truncated(FloatV v) {
#if HWY_TARGET == HWY_AVX3
    return IntV{_mm512_cvttps_epi32(v.raw)};
#elif HWY_TARGET == HWY_AVX2
    return IntV{_mm256_cvttps_epi32(v.raw)};
#elif HWY_TARGET == HWY_SSE4
    return IntV{_mm_cvttps_epi32(v.raw)};
#else
    return hn::ConvertTo(Ints(), v);
#endif
}

} // namespace HWY_NAMESPACE
} // namespace orbel
HWY_AFTER_NAMESPACE();

#endif
