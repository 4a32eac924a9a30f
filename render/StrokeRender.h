#pragma once

#include "host/PluginHost.h"
#include "pixel/PixelTraits.h"

namespace orbel {

/// Renders one frame in one pixel format: un-premultiplies the input, draws the stroke layer,
/// combines both by "Transfer Mode" and "Opacity" and premultiplies again, as far as the host
/// carries alpha in that way (`getAlphaHandling`). The input is changed in place, with the losses
/// of the format's arithmetic. 0 on success, otherwise the first error or
/// abort code of the frame; 1 when a raster is missing or anything was thrown.
template<class P, class T, class W, class F, class Format>
int StrokeRender(P pixel, T maximum, W wide, F single, Format format, PluginHost_API* host);

/// `StrokeRender` for a trait: the other arguments follow from it.
template<class P>
int strokeRender(PluginHost_API* host) {
    using Types = PixelTypes<P>;
    return StrokeRender(P{}, static_cast<typename Types::Component>(P::MAX_VALUE()),
                        typename Types::Wide{}, typename Types::Float{}, typename P::FORMAT{},
                        host);
}

// Each format is instantiated in a unit of its own, so that a change of the driver rebuilds six
// small units and nothing else.
#define ORBEL_STROKE_RENDER(linkage, P)                                                            \
    linkage template int StrokeRender<ORBEL_LAYER_ARGS(P)>(                                        \
        P, PixelTypes<P>::Component, PixelTypes<P>::Wide, PixelTypes<P>::Float, P::FORMAT,         \
        PluginHost_API*);
#define ORBEL_EXTERN_STROKE_RENDER(P) ORBEL_STROKE_RENDER(extern, P)
ORBEL_FOR_EACH_PIXEL_FORMAT(ORBEL_EXTERN_STROKE_RENDER)
#undef ORBEL_EXTERN_STROKE_RENDER

} // namespace orbel
