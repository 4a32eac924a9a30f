#pragma once

#include "render/RowBlocks.h"
#include "render/SampleSlice.h"

#include <vector>

namespace orbel {

/// The mean of all samples of a frame so far, in the output. Where nothing was drawn yet it is one
/// pixel everywhere, the background, and the output is not written.
template<class P>
class RunningMean {
    using T = typename P::Component;
    using Slice = SampleSlice<P>;

public:
    using Mask = RowBlocks::Mask;

    /// `output` is where the mean lies.
    RunningMean(const RasterInfo& output, const RowKernels<P>& rows)
        : m_blocks(output.width),
          m_output(output),
          m_rowKernels(rows),
          m_drawn(static_cast<std::size_t>(output.height)) {}

    /// Takes the background of a sample into that of the mean, and leaves the former one with the
    /// slice. To be called for one sample after the other, ahead of its rows.
    void takeBackground(Slice* slice) {
        slice->meanBefore = m_background;
        if (slice->sample == 0) {
            m_background = slice->background;
        } else {
            fade(*slice, slice->background.data(), m_background.data(), 1);
        }
    }

    /// Takes a row of a complete sample into the mean. The first sample was drawn where the mean
    /// is. Blocks of it that are not `touched` are the sample's background.
    void takeRow(const Slice& slice, int y, Mask touched, const RasterInfo& sample) {
        Mask& drawn = m_drawn[static_cast<std::size_t>(y)];
        if (slice.sample > 0) {
            fill(m_output, y, touched & ~drawn, slice.meanBefore);
            fill(sample, y, drawn & ~touched, slice.background);
            m_blocks.forEachRun(drawn | touched, [&](int x, int count) {
                fade(slice, pixelsAt<P>(sample, y, x), pixelsAt<P>(m_output, y, x), count);
            });
        }
        drawn |= touched;
    }

    /// What the mean is where nothing was drawn, after `takeBackground`.
    [[nodiscard]] const typename Slice::Pixel& background() const { return m_background; }
    /// The blocks of a row of the output that hold the mean.
    [[nodiscard]] Mask drawn(int y) const { return m_drawn[static_cast<std::size_t>(y)]; }

private:
    void fade(const Slice& slice, const T* row, T* mean, int count) const {
        m_rowKernels.blendImages(row, mean, count * componentsPerPixel,
                                 static_cast<float>(1.0 / (slice.sample + 1)));
    }
    void fill(const RasterInfo& raster, int y, Mask blocks,
              const typename Slice::Pixel& pixel) const {
        m_blocks.forEachRun(blocks, [&](int x, int count) {
            m_rowKernels.fill(pixelsAt<P>(raster, y, x), count, pixel.data());
        });
    }

    RowBlocks m_blocks;
    RasterInfo m_output;
    const RowKernels<P>& m_rowKernels;
    std::vector<Mask> m_drawn; // by row
    typename Slice::Pixel m_background{};
};

} // namespace orbel
