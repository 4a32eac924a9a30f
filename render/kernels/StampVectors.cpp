// Every kind of stamp for every level of vectors.

#include "pixel/kernels/VectorTargets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "render/kernels/StampVectors.cpp"
#include <hwy/foreach_target.h> // compiles what follows once for every level

#include "render/StampKernels.h"

#if HWY_TARGET != HWY_SCALAR

#include "render/kernels/Stamp8-inl.h"
#include "render/kernels/StampDeep-inl.h"

#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace orbel::HWY_NAMESPACE {

/// Paints stamps with the solid parts of the next few ahead of each: most of the soft ring of a
/// stamp within a stroke is opaque then, and passed over.
template<class P, class Pixels>
void paintStamps(const StampRows& rows, const PlacedStamp* stamps,
                 std::span<const std::uint32_t> order, bool solidFirst) {
    constexpr std::size_t ahead = 8;
    if (rows.width < Pixels::fewestPixels()) {
        for (const std::uint32_t i : order) {
            stampRows<P>(rows, stamps[i]);
        }
        return;
    }
    const auto isSolid = [&](const PlacedStamp& stamp) {
        return solidFirst && stamp.amount == static_cast<double>(P::MAX_VALUE());
    };
    StampSpans spans[ahead];
    Pixels pixels;
    std::size_t known = 0;
    for (std::size_t n = 0; n < order.size(); ++n) {
        for (; known < order.size() && known < n + ahead; ++known) {
            const PlacedStamp& next = stamps[order[known]];
            if (Pixels::goesWithoutSpans(next)) {
                continue;
            }
            findSpans(rows, next, Pixels::reach(next), &spans[known % ahead]);
            if (isSolid(next)) {
                pixels.fillSolid(rows, spans[known % ahead]);
            }
        }
        const PlacedStamp& stamp = stamps[order[n]];
        if (Pixels::goesWithoutSpans(stamp)) {
            Pixels::paintSmall(rows, stamp);
        } else {
            pixels.paint(rows, stamp, spans[n % ahead], isSolid(stamp));
        }
    }
}

template<class P>
constexpr StampKernels KERNELS8{paintStamps<P, Stamp8<P>>, recolour8<P>, takeIntoMean8<P>};

template<class P>
constexpr StampKernels KERNELS_DEEP{paintStamps<P, StampDeep<P>>, nullptr, nullptr};

template<class P>
void enter(P, const StampKernels** kernels) {
    if constexpr (sizeof(typename P::Component) == 1) {
        *kernels = &KERNELS8<P>;
    } else {
        *kernels = &KERNELS_DEEP<P>;
    }
}

} // namespace orbel::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif

#if HWY_ONCE

namespace orbel {

template<class P>
const StampKernels* stampKernels(int level) {
    const StampKernels* kernels = nullptr;
    ORBEL_CALL_TARGET(level, enter(P{}, &kernels))
    return kernels;
}

#define ORBEL_STAMP_KERNELS(P) template const StampKernels* stampKernels<P>(int level);
ORBEL_FOR_EACH_PIXEL_FORMAT(ORBEL_STAMP_KERNELS)

} // namespace orbel

#endif
