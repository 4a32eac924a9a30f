#pragma once

#include "render/RowBlocks.h"
#include "render/SampleSlice.h"
#include "render/StampKernels.h"

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
    RunningMean(const RasterInfo& output, const RowKernels<P>& rows, const StampKernels& stamps)
        : m_blocks(output.width),
          m_output(output),
          m_rowKernels(rows),
          m_stampKernels(stamps),
          m_drawn(static_cast<std::size_t>(output.height)) {}

    /// Takes the background of a sample into that of the mean, and leaves the former one with the
    /// slice. To be called for one sample after the other, ahead of its rows.
    void takeBackground(Slice* slice) {
        slice->meanBefore = m_background;
        if (slice->sample == 0) {
            m_background = slice->background;
        } else {
            m_rowKernels.blendImages(slice->background.data(), m_background.data(),
                                     componentsPerPixel, amountOf(*slice));
        }
        slice->meanAfter = m_background;
    }

    /// Takes a row of a complete sample into the mean. The first sample was drawn where the mean
    /// is. Blocks of it that are not `touched` are the sample's background. Colours of others come
    /// modulated where `isModulated` says so, else that is done here.
    void takeRow(const Slice& slice, int y, Mask touched, const RasterInfo& sample) {
        Mask& drawn = m_drawn[static_cast<std::size_t>(y)];
        if (slice.sample > 0) {
            fill(m_output, y, touched & ~drawn, slice.meanBefore);
            fill(sample, y, drawn & ~touched, isModulated(slice) ? slice.background : slice.colour);
            m_blocks.forEachRun(drawn | touched, [&](int x, int count) {
                take(slice, pixelsAt<P>(sample, y, x), pixelsAt<P>(m_output, y, x), count);
            });
        }
        drawn |= touched;
    }

    /// Whether the colours of a complete sample have to be modulated before it is taken.
    [[nodiscard]] static bool isModulated(const Slice& slice) {
        return Slice::ALPHAS == 0 || slice.sample == 0;
    }

    /// What the mean is where nothing was drawn, after `takeBackground`.
    [[nodiscard]] const typename Slice::Pixel& background() const { return m_background; }
    /// The blocks of a row of the output that hold the mean.
    [[nodiscard]] Mask drawn(int y) const { return m_drawn[static_cast<std::size_t>(y)]; }

private:
    static float amountOf(const Slice& slice) {
        return static_cast<float>(1.0 / (slice.sample + 1));
    }
    void take(const Slice& slice, const T* row, T* mean, int count) const {
        if constexpr (Slice::ALPHAS > 0) {
            const MeanStep step{
                amountOf(slice), slice.modulation.any() ? slice.modulated.data() : nullptr,
                inMemory(slice.colour), inMemory(slice.meanBefore), inMemory(slice.meanAfter)};
            m_stampKernels.takeIntoMean(row, mean, count, step);
        } else {
            m_rowKernels.blendImages(row, mean, count * componentsPerPixel, amountOf(slice));
        }
    }
    static std::uint32_t inMemory(const typename Slice::Pixel& pixel) {
        std::uint32_t word = 0;
        std::memcpy(&word, pixel.data(), sizeof(word));
        return word;
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
    const StampKernels& m_stampKernels;
    std::vector<Mask> m_drawn; // by row
    typename Slice::Pixel m_background{};
};

} // namespace orbel
