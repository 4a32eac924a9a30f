#pragma once

#include "host/PluginHost.h"
#include "pixel/PixelTraits.h"
#include "pixel/RowKernels.h"
#include "render/AnimatedParameters.h"
#include "render/BandWork.h"
#include "render/RowBlocks.h"
#include "render/StampBatch.h"
#include "render/StampKernels.h"

#include <array>
#include <cstddef>
#include <vector>

namespace orbel {

/// What becomes of the finished layer.
struct LayerFinish {
    int code;       ///< it is combined with the picture by `TransferComposite`; 0: it stays alone
    double opacity; ///< of the layer, as a fraction
};

/// Draws the stroke layer of a frame and combines it with the picture, in bands of rows that stay
/// in the cache while everything is done to them that there is to do. Gives the very bytes of the
/// passes over whole rasters: fill, stamps, modulation, running mean of the samples,
/// un-premultiply, composite, premultiply.
///
/// Samples are drawn one after another: `beginSample`, stamps, `endSample`. Stamps are gathered and
/// painted when many have come together, by other threads while the next are placed, and at the
/// latest by `finish` or `leave`, one of which is to be called once. Of rows that no stamp touches
/// only one pixel is ever computed.
template<class P>
class LayerPainter final : public StampSink {
public:
    struct Rasters {
        RasterInfo input;  ///< made straight and given back in place
        RasterInfo output; ///< of the size of the input; they share no memory
        RasterInfo sample; ///< of the same size; needed for a second sample
    };

    /// `alpha` is how the host carries alpha in the input and wants it in the output.
    LayerPainter(const Rasters& rasters, const AlphaHandling& alpha, const RowKernels<P>& rows,
                 const StampKernels& stamps);

    [[nodiscard]] int width() const { return m_rasters.output.width; }
    [[nodiscard]] int height() const { return m_rasters.output.height; }

    void beginSample(const AnimatedParameters& p);
    void stamp(const Stamp& s) override;
    /// Modulates the sample by its alpha and takes it into the mean of all samples.
    void endSample();
    /// Completes both rasters.
    void finish(const LayerFinish& how);
    /// Leaves both rasters as an unfinished frame does: the input un-premultiplied, in the output
    /// the mean of the samples that were ended. Without any, `fallback` fills the output, and on it
    /// stands what was drawn of the first sample when `showUnfinished` is set.
    void leave(const AnimatedParameters& fallback, bool showUnfinished);

private:
    using T = typename P::Component;
    using Pixel = std::array<T, componentsPerPixel>;
    using Mask = RowBlocks::Mask;

    /// How many alphas a format of single bytes has; that of others is too many for a table.
    static constexpr std::size_t ALPHAS = sizeof(T) == 1 ? 256 : 0;

    /// The part of a sample that a batch of stamps belongs to.
    struct Slice {
        int sample;       ///< number, from 0
        bool begins;      ///< the sample begins in this batch
        bool ends;        ///< and ends in it
        bool isOrdinary;  ///< the kernels can paint all of its stamps
        std::size_t last; ///< the number of the stamp behind its last one
        Pixel colour;     ///< of the sample, at alpha 0
        HslAmounts modulation;
        std::array<Pixel, ALPHAS> modulated; ///< the colour at every alpha, if there is modulation
        Pixel ground;                        ///< what untouched pixels come to in the sample
        Pixel meanBefore;                    ///< and in the mean of the samples before
    };

    /// What is painted together.
    struct Page {
        StampBatch batch;
        std::vector<Slice> slices;
    };

    [[nodiscard]] const RasterInfo& target(const Slice& slice) const {
        return slice.sample == 0 ? m_rasters.output : m_rasters.sample;
    }
    [[nodiscard]] T* pixels(const RasterInfo& raster, int y, int x) const;
    void beginPainting(const LayerFinish* how);
    void paintBand(const Page& page, int band, const LayerFinish* how);
    void paintSlice(const Slice& slice, const StampRows& rows, const StampBatch& batch,
                    std::span<const StampBatch::Index> stamps);
    void paintOneByOne(const StampRows& rows, const StampBatch& batch,
                       std::span<const StampBatch::Index> stamps);
    void touch(const Slice& slice, const StampRows& rows, const PlacedStamp& stamp);
    void settleRow(const Slice& slice, int y);
    void modulateColour(Slice* slice);
    void modulate(const Slice& slice, T* row, int count);
    void blend(const Slice& slice, const T* row, T* mean, int count);
    void finishRow(int y, const LayerFinish& how);
    void finishPixels(T* input, T* layer, int count, const LayerFinish& how);
    void straighten(T* input, int count);

    Rasters m_rasters;
    AlphaHandling m_alpha;
    const RowKernels<P>& m_rowKernels;
    const StampKernels& m_stampKernels;
    RowBlocks m_blocks;
    int m_bandRows;
    std::array<Page, 2> m_pages; // one is filled while the other is painted
    Page* m_page = m_pages.data();
    std::vector<Mask> m_touched; // by row: blocks that the sample was drawn in
    std::vector<Mask> m_settled; // and those where the mean is more than one pixel everywhere
    Pixel m_mean{};              // what untouched pixels come to in the mean of all samples
    int m_samples = 0;           // ended
    BandWork m_work;             // last, for it is at work on all of these
};

} // namespace orbel
