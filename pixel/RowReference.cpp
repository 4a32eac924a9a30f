#include "pixel/RowReference.h"

#include "pixel/BlendReferenceImpl.h"
#include "pixel/TransferCodes.h"

#include <cstddef>

namespace orbel {
namespace {

/// Enters a mode under all its codes.
template<typename P, CompositeRow<P> composite>
constexpr void enterComposite(RowKernels<P>& table, TransferMode mode) {
    forEachCodeOf(mode, [&table](std::size_t code) {
        table.composite[code] = composite;
        table.finish[code] = &finishRow<P, composite>;
    });
}

template<typename P, template<typename, typename, typename, typename, typename> class Functor>
constexpr void enterBlend(RowKernels<P>& table, TransferMode mode) {
    using Blended =
        Functor<P, typename P::Component, typename P::Wide, typename P::Float, typename P::FORMAT>;
    enterComposite<P, &blendRowBy<P, Blended>>(table, mode);
}

template<typename P>
constexpr void enterModes(RowKernels<P>& table) {
    using enum TransferMode;
    enterComposite<P, &blendBehindRow<P>>(table, Behind);
    enterBlend<P, BLEND_IN_FRONT>(table, InFront);
    enterBlend<P, BLEND_PLUS>(table, Plus);
    enterBlend<P, BLEND_MUTLIPLY>(table, Multiply);
    enterBlend<P, BLEND_SCREEN>(table, Screen);
    enterBlend<P, BLEND_OVERLAY>(table, Overlay);
    enterBlend<P, BLEND_SOFTLIGHT>(table, SoftLight);
    enterBlend<P, BLEND_HARDLIGHT>(table, HardLight);
    enterBlend<P, BLEND_DARKEN>(table, Darken);
    enterBlend<P, BLEND_LIGHTEN>(table, Lighten);
    enterBlend<P, BLEND_DIFFERENCE>(table, Difference);
    enterBlend<P, BLEND_COLORDODGE>(table, ColourDodge);
    enterBlend<P, BLEND_COLORBURN>(table, ColourBurn);
    enterBlend<P, BLEND_EXCLUSION>(table, Exclusion);
    enterBlend<P, BLEND_HUE>(table, Hue);
    enterBlend<P, BLEND_SAT>(table, Saturation);
    enterBlend<P, BLEND_COLOR>(table, Colour);
    enterBlend<P, BLEND_LUMA>(table, Luma);
    enterBlend<P, BLEND_SCREEN_SPECIAL>(table, ScreenSpecial);
}

template<typename P>
constexpr RowKernels<P> makeReference() {
    using Reference = ColourReference<P>;
    RowKernels<P> table{};
    table.fill = &Reference::fill;
    table.unPremult = &Reference::unPremult;
    table.premult = &Reference::premult;
    table.multiplyAlpha = &Reference::multiplyAlpha;
    table.hslModulate = &Reference::hslModulate;
    table.blendImages = &blendImagesRow<typename P::Component>;
    table.finish.fill(&finishRow<P, &compositeNothing<P>>);
    table.finishTransparent = &finishTransparentRow<P>;
    enterModes(table);
    return table;
}

} // namespace

template<typename P>
const RowKernels<P>& rowReference() {
    static constexpr RowKernels<P> table = makeReference<P>();
    return table;
}

#define ORBEL_INSTANTIATE_ROW_REFERENCE(P) template const RowKernels<P>& rowReference<P>();
ORBEL_FOR_EACH_PIXEL_FORMAT(ORBEL_INSTANTIATE_ROW_REFERENCE)

} // namespace orbel
