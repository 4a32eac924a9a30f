#pragma once

#include "render/StrokeWalk.h"

#include <array>

namespace orbel {

/// What one sample of the layer looks like, as the passes over rasters take it.
struct SampleLook {
    std::array<double, 4> colour; ///< red, green, blue in 0 to 1; alpha 0: coverage builds up
    double highAlphaBrightness;   ///< the three amounts of `HSLModulate`, in its order
    double lowAlphaHueTurns;
    double lowAlphaSaturation;
};

/// What becomes of the finished layer.
struct LayerFinish {
    int code;       ///< it is combined with the picture by `TransferComposite`; 0: it stays alone
    double opacity; ///< of the layer, as a fraction
};

/// What a frame is drawn into: the layer of the stroke over the picture it is combined with.
/// Targets differ in how they go about it and in nothing else: the same calls leave the same bytes
/// in the host's rasters. The order of calls: `fill`; `prepareSamples` if there are to be several
/// samples; for each of them `beginSample`, stamps, `endSample`; last `finish`. At any time before
/// that `leave` ends the drawing; only a picture that nothing was drawn on may be finished after
/// it.
class FrameTarget : public StampSink {
public:
    FrameTarget() = default;
    FrameTarget(const FrameTarget&) = delete;
    FrameTarget& operator=(const FrameTarget&) = delete;
    virtual ~FrameTarget() = default;

    /// Of what stamps are placed on, in pixels.
    [[nodiscard]] virtual int width() const = 0;
    [[nodiscard]] virtual int height() const = 0;

    /// Fills the output with the colour of a look.
    virtual void fill(const SampleLook& look) = 0;
    /// Samples are to be averaged in the output. 0, or 1 when the host has no raster for them.
    virtual int prepareSamples() = 0;
    /// Begins to draw a sample: filled anew when samples are averaged, on what `fill` has filled
    /// with the same colour when there is only one.
    virtual void beginSample(const SampleLook& look) = 0;
    /// Modulates the sample by its alpha and takes it into the mean of all.
    virtual void endSample() = 0;
    /// Combines the layer with the picture and gives both back as the host carries alpha. 0, or the
    /// status of a host that blends itself.
    virtual int finish(const LayerFinish& how) = 0;
    /// Leaves an unfinished frame: the input straight, in the output what a single sample has so
    /// far, or the mean of the samples that were ended.
    virtual void leave() = 0;
};

} // namespace orbel
