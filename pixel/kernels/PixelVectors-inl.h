// Pixels of every format on vectors: for each lane one.

#if defined(ORBEL_PIXEL_VECTORS_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef ORBEL_PIXEL_VECTORS_INL_H
#undef ORBEL_PIXEL_VECTORS_INL_H
#else
#define ORBEL_PIXEL_VECTORS_INL_H
#endif

#include "pixel/PixelTraits.h"
#include "pixel/kernels/Vector8-inl.h"
#include "pixel/kernels/VectorSingle-inl.h"

#include <type_traits>

HWY_BEFORE_NAMESPACE();
namespace orbel {
namespace HWY_NAMESPACE {

/// The vectors of a pixel format.
template<typename P>
using VectorOf =
    std::conditional_t<sizeof(typename P::Component) == 1, Vector8,
                       std::conditional_t<sizeof(typename P::Component) == 2, Vector16, Vector32>>;

/// As many pixels as a vector has lanes.
template<class A>
struct Pixels {
    using V = typename A::V;
    V r;
    V g;
    V b;
    V a;
};

template<typename P>
using PixelsOf = Pixels<VectorOf<P>>;

template<typename P>
HWY_INLINE PixelsOf<P> loadPixels(const typename P::Component* row) {
    using Order = typename P::FORMAT;
    typename VectorOf<P>::V v[4];
    VectorOf<P>::load(row, v);
    return {v[Order::red], v[Order::green], v[Order::blue], v[Order::alpha]};
}

template<typename P>
HWY_INLINE void storePixels(typename P::Component* row, const PixelsOf<P>& pixels) {
    using Order = typename P::FORMAT;
    typename VectorOf<P>::V v[4];
    v[Order::red] = pixels.r;
    v[Order::green] = pixels.g;
    v[Order::blue] = pixels.b;
    v[Order::alpha] = pixels.a;
    VectorOf<P>::store(row, v);
}

} // namespace HWY_NAMESPACE
} // namespace orbel
HWY_AFTER_NAMESPACE();

#endif
