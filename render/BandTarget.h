#pragma once

#include "render/BandWork.h"
#include "render/FrameTarget.h"
#include "render/RowFinisher.h"
#include "render/RunningMean.h"
#include "render/SamplePainter.h"
#include "render/SampleRaster.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <optional>
#include <span>
#include <vector>

namespace orbel {

/// Rows whose bytes, with those of the picture behind them, stay in a core's own cache.
[[nodiscard]] inline int bandHeight(int rowBytes) {
    constexpr int bandBytes = 384 * 1024;
    return std::clamp(bandBytes / std::max(std::abs(rowBytes), 1), 1, StampKernels::mostRows);
}

/// Draws a frame in bands of rows that stay in the cache while everything is done to them that
/// there is to do. Stamps are gathered and painted when many have come together, by other threads
/// while the next are placed. Of rows that no stamp touches only one pixel is ever computed.
template<class P>
class BandTarget final : public FrameTarget {
    using Slice = SampleSlice<P>;
    using Mask = RowBlocks::Mask;

public:
    /// Whether a frame can be drawn so: pixels of the format side by side in rasters that share no
    /// memory, none too large for a stamp's box.
    [[nodiscard]] static bool suits(const RasterInfo& input, const RasterInfo& output) {
        constexpr int pixelBytes =
            componentsPerPixel * static_cast<int>(sizeof(typename P::Component));
        constexpr int largest = std::numeric_limits<std::int16_t>::max();
        return haveSameShape(input, output) && output.bytesPerPixel == pixelBytes &&
               output.width >= 1 && output.height >= 1 && output.width <= largest &&
               output.height <= largest && !shareMemory(input, output);
    }

    /// Borrows the output, to make rasters like it.
    BandTarget(PluginHost_API* host, const AlphaHandling& alpha, const RasterInfo& inputInfo,
               PluginRaster_API* output, const RasterInfo& outputInfo, const StampKernels& stamps)
        : m_output(output),
          m_in(inputInfo),
          m_out(outputInfo),
          m_rowKernels(rowKernels<P>()),
          m_sample(host),
          m_bandRows(bandHeight(m_out.rowBytes)),
          m_painter(m_out, m_rowKernels, stamps),
          m_mean(m_out, m_rowKernels, stamps),
          m_finisher(alpha, m_rowKernels),
          m_buffers{Buffer{StampBatch(m_out.height, m_bandRows), {}},
                    Buffer{StampBatch(m_out.height, m_bandRows), {}}},
          m_work(m_buffers[0].batch.bands()) {}

    [[nodiscard]] int width() const override { return m_out.width; }
    [[nodiscard]] int height() const override { return m_out.height; }

    void fill(const SampleLook& look) override { m_filled = Slice::pixelOf(look); }
    int prepareSamples() override { return m_sample.allocate(m_output); }
    void beginSample(const SampleLook& look) override {
        m_buffer->slices.emplace_back(m_ended, look, m_rowKernels);
    }
    void stamp(const Stamp& s) override { gather(s); }
    void stampAll(std::span<const Stamp> stamps) override {
        for (const Stamp& s : stamps) {
            gather(s);
        }
    }
    void endSample() override;
    int finish(const LayerFinish& how) override;
    void leave() override;

private:
    /// What is painted together.
    struct Buffer {
        StampBatch batch;
        std::vector<Slice> slices;
    };

    [[nodiscard]] const RasterInfo& rasterOf(const Slice& slice) const {
        return slice.sample == 0 ? m_out : m_sample.info();
    }
    void gather(const Stamp& s);
    void goOnWithNextPage();
    void beginPainting(const LayerFinish* how);
    void paintBand(const Buffer& buffer, int band, const LayerFinish* how);
    void finishRow(int y, const LayerFinish& how);
    void settleOutput();
    /// Calls `visit(input, layer, pixels)` for every run of a mask in a row.
    template<class Visit>
    void forEachRun(int y, Mask mask, const Visit& visit) const {
        m_painter.blocks().forEachRun(mask, [&](int x, int count) {
            visit(pixelsAt<P>(m_in, y, x), pixelsAt<P>(m_out, y, x), count);
        });
    }

    PluginRaster_API* m_output;
    RasterInfo m_in;
    RasterInfo m_out;
    const RowKernels<P>& m_rowKernels;
    SampleRaster m_sample;
    int m_bandRows;
    SamplePainter<P> m_painter;
    RunningMean<P> m_mean;
    RowFinisher<P> m_finisher;
    std::array<Buffer, 2> m_buffers; // one is filled while the other is painted
    Buffer* m_buffer = m_buffers.data();
    std::optional<typename Slice::Pixel> m_filled;
    int m_ended = 0; // samples
    bool m_left = false;
    BandWork m_work; // last, for it is at work on all of these
};

template<class P>
void BandTarget<P>::gather(const Stamp& s) {
    if (!(s.radius > 0.0)) {
        return;
    }
    PlacedStamp placed(s, P::MAX_VALUE());
    if (!placed.trim(m_out.width, m_out.height)) {
        return;
    }
    if (!kernelsCanPaint(placed, P::MAX_VALUE())) {
        m_buffer->slices.back().isOrdinary = false;
    }
    m_buffer->batch.add(placed);
    if (m_buffer->batch.isFull()) {
        goOnWithNextPage();
    }
}

template<class P>
void BandTarget<P>::goOnWithNextPage() {
    Slice rest = m_buffer->slices.back();
    beginPainting(nullptr);
    rest.begins = false;
    m_buffer->slices.push_back(rest);
}

template<class P>
void BandTarget<P>::endSample() {
    Slice& slice = m_buffer->slices.back();
    slice.ends = true;
    slice.last = m_buffer->batch.size();
    m_mean.takeBackground(&slice);
    ++m_ended;
}

template<class P>
int BandTarget<P>::finish(const LayerFinish& how) {
    if (!m_left) {
        beginPainting(&how);
        m_work.wait();
        return 0;
    }
    for (int y = 0; y < m_out.height; ++y) {
        forEachRun(y, m_painter.blocks().all(), [&](auto* input, auto* layer, int count) {
            m_finisher.combine(input, layer, count, how);
            m_finisher.deliver(input, layer, count);
        });
    }
    return 0;
}

template<class P>
void BandTarget<P>::leave() {
    m_left = true;
    std::vector<Slice>& slices = m_buffer->slices;
    const bool unfinished = !slices.empty() && !slices.back().ends;
    if (unfinished && m_sample.raster() != nullptr) {
        slices.pop_back();
    }
    beginPainting(nullptr);
    m_work.wait();
    settleOutput();
    for (int y = 0; y < m_in.height; ++y) {
        m_finisher.straighten(pixelsAt<P>(m_in, y, 0), m_in.width);
    }
}

// Writes what stands for itself so far: the background of the mean or, without a complete sample,
// what the output was filled with. Of samples that would have been averaged an incomplete first one
// is covered.
template<class P>
void BandTarget<P>::settleOutput() {
    if (!m_filled) {
        return;
    }
    const bool covers = m_ended == 0 && m_sample.raster() != nullptr;
    const auto& background = m_ended == 0 ? *m_filled : m_mean.background();
    for (int y = 0; y < m_out.height; ++y) {
        const Mask drawn = m_ended == 0 ? m_painter.touched(y) : m_mean.drawn(y);
        const Mask open = m_painter.blocks().all() & ~(covers ? Mask{0} : drawn);
        forEachRun(y, open, [&](auto*, auto* layer, int count) {
            m_rowKernels.fill(layer, count, background.data());
        });
    }
}

// Turns to the other buffer, which is free when the painting that was begun before is done.
template<class P>
void BandTarget<P>::beginPainting(const LayerFinish* how) {
    Buffer& buffer = *m_buffer;
    if (!buffer.slices.empty() && !buffer.slices.back().ends) {
        buffer.slices.back().last = buffer.batch.size();
    }
    m_work.wait();
    m_buffer = &buffer == m_buffers.data() ? &m_buffers[1] : m_buffers.data();
    m_buffer->batch.clear();
    m_buffer->slices.clear();
    m_work.begin([this, &buffer, how](int band) { paintBand(buffer, band, how); });
}

template<class P>
void BandTarget<P>::paintBand(const Buffer& buffer, int band, const LayerFinish* how) {
    const int first = band * m_bandRows;
    const int last = std::min(first + m_bandRows, m_out.height) - 1;
    std::span<const StampBatch::Index> stamps = buffer.batch.inBand(band);
    for (const Slice& slice : buffer.slices) {
        const auto end = std::lower_bound(stamps.begin(), stamps.end(), slice.last);
        const auto count = static_cast<std::size_t>(end - stamps.begin());
        m_painter.paint(slice, rasterOf(slice), first, last, buffer.batch, stamps.first(count),
                        RunningMean<P>::isModulated(slice));
        for (int y = first; slice.ends && y <= last; ++y) {
            m_mean.takeRow(slice, y, m_painter.touched(y), rasterOf(slice));
        }
        stamps = stamps.subspan(count);
    }
    for (int y = first; how != nullptr && y <= last; ++y) {
        finishRow(y, *how);
    }
}

template<class P>
void BandTarget<P>::finishRow(int y, const LayerFinish& how) {
    const Mask drawn = m_mean.drawn(y);
    const Mask open = m_painter.blocks().all() & ~drawn;
    if (m_finisher.canFinishTransparent(how)) {
        forEachRun(y, drawn, [&](auto* input, auto* layer, int count) {
            m_finisher.finish(input, layer, count, how);
        });
        forEachRun(y, open, [&](auto* input, auto* layer, int count) {
            m_finisher.finishTransparent(input, layer, count);
        });
        return;
    }
    forEachRun(y, open, [&](auto*, auto* layer, int count) {
        m_rowKernels.fill(layer, count, m_mean.background().data());
    });
    m_finisher.finish(pixelsAt<P>(m_in, y, 0), pixelsAt<P>(m_out, y, 0), m_out.width, how);
}

} // namespace orbel
