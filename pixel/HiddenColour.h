#pragma once

#include "pixel/PixelTraits.h"

#include <algorithm>
#include <cstddef>

namespace orbel {

/// Makes black what a straight picture hides under alpha 0, so that somebody who drops the alpha
/// sees no field of the stroke's colour. A pixel that is as it was in `before` stays: nothing was
/// drawn there. Runs of `pixels` pixels, aligned for the component; they may be the same.
template<class P>
void clearHiddenColour(const typename P::Component* before, typename P::Component* after,
                       int pixels) {
    using T = typename P::Component;
    for (std::ptrdiff_t i = 0; i < std::ptrdiff_t{pixels} * componentsPerPixel;
         i += componentsPerPixel) {
        T* const pixel = after + i;
        if (pixel[P::FORMAT::alpha] == T{0} &&
            !std::equal(pixel, pixel + componentsPerPixel, before + i)) {
            std::fill(pixel, pixel + componentsPerPixel, T{0});
        }
    }
}

} // namespace orbel
