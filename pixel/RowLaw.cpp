#include "pixel/RowLaw.h"

#include "pixel/BlendLawImpl.h"

#include <cstddef>

namespace orbel {
namespace {

/// Enters a mode under its code.
template<typename P, CompositeRow<P> composite>
constexpr void enterComposite(RowKernels<P>& table, std::size_t code) {
    table.composite[code] = composite;
    table.finish[code] = &finishRow<P, composite>;
}

template<typename P, template<typename, typename, typename, typename, typename> class Functor>
constexpr void enterBlend(RowKernels<P>& table, std::size_t code) {
    enterComposite<P, &blendRow<P, Functor>>(table, code);
}

template<typename P>
constexpr void enterModes(RowKernels<P>& table) {
    enterComposite<P, &blendBehindRow<P>>(table, 1);
    enterBlend<P, BLEND_IN_FRONT>(table, 2);
    enterBlend<P, BLEND_HUE>(table, 3);
    enterBlend<P, BLEND_PLUS>(table, 4);
    enterBlend<P, BLEND_MUTLIPLY>(table, 5);
    enterBlend<P, BLEND_SCREEN>(table, 6);
    enterBlend<P, BLEND_OVERLAY>(table, 7);
    enterBlend<P, BLEND_SOFTLIGHT>(table, 8);
    enterBlend<P, BLEND_HARDLIGHT>(table, 9);
    enterBlend<P, BLEND_DARKEN>(table, 10);
    enterBlend<P, BLEND_LIGHTEN>(table, 11);
    enterBlend<P, BLEND_DIFFERENCE>(table, 12);
    enterBlend<P, BLEND_HUE>(table, 13);
    enterBlend<P, BLEND_SAT>(table, 14);
    enterBlend<P, BLEND_COLOR>(table, 15);
    enterBlend<P, BLEND_LUMA>(table, 16);
    for (std::size_t code = 17; code <= 22; ++code) {
        enterBlend<P, BLEND_EXCLUSION>(table, code);
    }
    enterBlend<P, BLEND_COLORDODGE>(table, 23);
    enterBlend<P, BLEND_COLORBURN>(table, 24);
    enterBlend<P, BLEND_EXCLUSION>(table, 25);
    enterBlend<P, BLEND_SCREEN_SPECIAL>(table, 35);
}

template<typename P>
constexpr RowKernels<P> makeLaw() {
    using Law = ColourLaw<P>;
    RowKernels<P> table{};
    table.fill = &Law::fill;
    table.unPremult = &Law::unPremult;
    table.premult = &Law::premult;
    table.multiplyAlpha = &Law::multiplyAlpha;
    table.hslModulate = &Law::hslModulate;
    table.blendImages = &blendImagesRow<typename P::Component>;
    table.finish.fill(&finishRow<P, &compositeNothing<P>>);
    table.finishUntouched = &finishUntouchedRow<P>;
    enterModes(table);
    return table;
}

} // namespace

template<typename P>
const RowKernels<P>& rowLaw() {
    static constexpr RowKernels<P> table = makeLaw<P>();
    return table;
}

#define ORBEL_INSTANTIATE_ROW_LAW(P) template const RowKernels<P>& rowLaw<P>();
ORBEL_FOR_EACH_PIXEL_FORMAT(ORBEL_INSTANTIATE_ROW_LAW)

} // namespace orbel
