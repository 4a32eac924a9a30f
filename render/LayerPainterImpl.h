#pragma once

#include "render/LayerPainter.h"

#include "pixel/HiddenColour.h"
#include "render/Units.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace orbel {

/// Rows whose bytes, with those of the picture behind them, stay in a core's own cache.
[[nodiscard]] inline int bandHeight(int rowBytes) {
    constexpr int bandBytes = 384 * 1024;
    return std::clamp(bandBytes / std::max(std::abs(rowBytes), 1), 1, StampKernels::mostRows);
}

/// The stroke's colour at alpha 0, as `FillColor` fills it in.
template<class P>
[[nodiscard]] std::array<typename P::Component, componentsPerPixel>
fillPixel(const AnimatedParameters& p) {
    using T = typename P::Component;
    std::array<T, componentsPerPixel> pixel{};
    pixel[P::FORMAT::red] = truncateTo<T>(P::MAX_VALUE() * p.colorRed);
    pixel[P::FORMAT::green] = truncateTo<T>(P::MAX_VALUE() * p.colorGreen);
    pixel[P::FORMAT::blue] = truncateTo<T>(P::MAX_VALUE() * p.colorBlue);
    return pixel;
}

/// What `HSLModulate` is given by the driver.
[[nodiscard]] inline HslAmounts hslAmounts(const AnimatedParameters& p) {
    return {p.hiAlphaBrightBoost * FRACTION_PER_PERCENT,
            p.lowAlphaHueRotation * TURNS_PER_DEGREE * 360.0,
            p.lowAlphaSatBoost * FRACTION_PER_PERCENT};
}

template<class P>
LayerPainter<P>::LayerPainter(const Rasters& rasters, const AlphaHandling& alpha,
                              const RowKernels<P>& rows, const StampKernels& stamps)
    : m_rasters(rasters),
      m_alpha(alpha),
      m_rowKernels(rows),
      m_stampKernels(stamps),
      m_blocks(rasters.output.width),
      m_bandRows(bandHeight(rasters.output.rowBytes)),
      m_pages{Page{StampBatch(rasters.output.height, m_bandRows), {}},
              Page{StampBatch(rasters.output.height, m_bandRows), {}}},
      m_touched(static_cast<std::size_t>(rasters.output.height)),
      m_settled(m_touched.size()),
      m_work(m_pages[0].batch.bands()) {}

template<class P>
typename P::Component* LayerPainter<P>::pixels(const RasterInfo& raster, int y, int x) const {
    return static_cast<T*>(static_cast<void*>(raster.row(y))) +
           std::ptrdiff_t{x} * componentsPerPixel;
}

template<class P>
void LayerPainter<P>::beginSample(const AnimatedParameters& p) {
    const Pixel colour = fillPixel<P>(p);
    m_page->slices.push_back(
        {m_samples, true, false, true, 0, colour, hslAmounts(p), {}, colour, m_mean});
    if (Slice& slice = m_page->slices.back(); slice.modulation.any()) {
        modulateColour(&slice);
    }
}

template<class P>
void LayerPainter<P>::modulateColour(Slice* slice) {
    m_rowKernels.hslModulate(slice->ground.data(), 1, slice->modulation);
    if constexpr (ALPHAS > 0) {
        for (std::size_t alpha = 0; alpha < ALPHAS; ++alpha) {
            slice->modulated[alpha] = slice->colour;
            slice->modulated[alpha][P::FORMAT::alpha] = static_cast<T>(alpha);
        }
        m_rowKernels.hslModulate(slice->modulated[0].data(), static_cast<int>(ALPHAS),
                                 slice->modulation);
    }
}

template<class P>
void LayerPainter<P>::stamp(const Stamp& s) {
    if (!(s.radius > 0.0)) {
        return;
    }
    PlacedStamp placed(s, P::MAX_VALUE());
    if (!placed.trim(m_rasters.output.width, m_rasters.output.height)) {
        return;
    }
    if (!kernelsCanPaint(placed, P::MAX_VALUE())) {
        m_page->slices.back().isOrdinary = false;
    }
    m_page->batch.add(placed);
    if (m_page->batch.isFull()) {
        Slice rest = m_page->slices.back();
        beginPainting(nullptr);
        rest.begins = false;
        m_page->slices.push_back(rest);
    }
}

template<class P>
void LayerPainter<P>::endSample() {
    Slice& slice = m_page->slices.back();
    slice.ends = true;
    slice.last = m_page->batch.size();
    blend(slice, slice.ground.data(), m_mean.data(), 1);
    ++m_samples;
}

template<class P>
void LayerPainter<P>::finish(const LayerFinish& how) {
    beginPainting(&how);
    m_work.wait();
}

template<class P>
void LayerPainter<P>::leave(const AnimatedParameters& fallback, bool showUnfinished) {
    std::vector<Slice>& slices = m_page->slices;
    const bool unfinished = !slices.empty() && !slices.back().ends;
    if (unfinished && !(m_samples == 0 && showUnfinished)) {
        slices.pop_back();
    }
    beginPainting(nullptr);
    m_work.wait();
    const std::vector<Mask>& drawn = m_samples == 0 ? m_touched : m_settled;
    const Pixel ground = m_samples == 0 ? fillPixel<P>(fallback) : m_mean;
    for (int y = 0; y < m_rasters.output.height; ++y) {
        const bool keep = m_samples > 0 || showUnfinished;
        const Mask open =
            keep ? m_blocks.all() & ~drawn[static_cast<std::size_t>(y)] : m_blocks.all();
        m_blocks.forEachRun(open, [&](int x, int count) {
            m_rowKernels.fill(pixels(m_rasters.output, y, x), count, ground.data());
        });
        straighten(pixels(m_rasters.input, y, 0), m_rasters.input.width);
    }
}

// Turns to the other page, which is free when the painting that was begun before is done.
template<class P>
void LayerPainter<P>::beginPainting(const LayerFinish* how) {
    Page& page = *m_page;
    if (!page.slices.empty() && !page.slices.back().ends) {
        page.slices.back().last = page.batch.size();
    }
    m_work.wait();
    m_page = &page == m_pages.data() ? &m_pages[1] : m_pages.data();
    m_page->batch.clear();
    m_page->slices.clear();
    m_work.begin([&page] { page.batch.sortIntoBands(); },
                 [this, &page, how](int band) { paintBand(page, band, how); });
}

template<class P>
void LayerPainter<P>::paintBand(const Page& page, int band, const LayerFinish* how) {
    const int first = band * m_bandRows;
    const int last = std::min(first + m_bandRows, m_rasters.output.height) - 1;
    std::span<const StampBatch::Index> stamps = page.batch.inBand(band);
    for (const Slice& slice : page.slices) {
        const auto end = std::lower_bound(stamps.begin(), stamps.end(), slice.last);
        const auto count = static_cast<std::size_t>(end - stamps.begin());
        const RasterInfo& raster = target(slice);
        const StampRows rows{raster.data, raster.rowBytes, raster.width, first, last};
        paintSlice(slice, rows, page.batch, stamps.first(count));
        stamps = stamps.subspan(count);
    }
    if (how != nullptr) {
        for (int y = first; y <= last; ++y) {
            finishRow(y, *how);
        }
    }
}

template<class P>
void LayerPainter<P>::paintSlice(const Slice& slice, const StampRows& rows, const StampBatch& batch,
                                 std::span<const StampBatch::Index> stamps) {
    if (slice.begins) {
        std::fill(m_touched.begin() + rows.first, m_touched.begin() + rows.last + 1, Mask{0});
    }
    for (const StampBatch::Index i : stamps) {
        touch(slice, rows, batch[i]);
    }
    if (slice.isOrdinary) {
        m_stampKernels.paint(rows, batch.data(), stamps, true);
    } else {
        paintOneByOne(rows, batch, stamps);
    }
    if (slice.ends) {
        for (int y = rows.first; y <= rows.last; ++y) {
            settleRow(slice, y);
        }
    }
}

template<class P>
void LayerPainter<P>::paintOneByOne(const StampRows& rows, const StampBatch& batch,
                                    std::span<const StampBatch::Index> stamps) {
    for (const StampBatch::Index& i : stamps) {
        if (kernelsCanPaint(batch[i], P::MAX_VALUE())) {
            m_stampKernels.paint(rows, batch.data(), {&i, 1}, false);
        } else {
            stampRows<P>(rows, batch[i]);
        }
    }
}

// Fills the blocks around a stamp with the colour, unless that was done for another one.
template<class P>
void LayerPainter<P>::touch(const Slice& slice, const StampRows& rows, const PlacedStamp& stamp) {
    const Mask around = m_blocks.covering(stamp.box.left, stamp.box.right);
    const int first = std::max<int>(rows.first, stamp.box.top);
    const int last = std::min<int>(rows.last, stamp.box.bottom);
    Mask inAll = around;
    for (int y = first; y <= last; ++y) {
        inAll &= m_touched[static_cast<std::size_t>(y)];
    }
    if (inAll == around) {
        return;
    }
    for (int y = first; y <= last; ++y) {
        Mask& touched = m_touched[static_cast<std::size_t>(y)];
        if ((around & ~touched) != 0) {
            m_blocks.forEachRun(around & ~touched, [&](int x, int count) {
                m_rowKernels.fill(pixels(target(slice), y, x), count, slice.colour.data());
            });
            touched |= around;
        }
    }
}

// Takes a row of a sample that is complete into the mean. Blocks in which nothing was drawn so far
// are the same pixel everywhere, in the sample as well as in the mean. The first sample is drawn
// where the mean is.
template<class P>
void LayerPainter<P>::settleRow(const Slice& slice, int y) {
    const Mask touched = m_touched[static_cast<std::size_t>(y)];
    Mask& settled = m_settled[static_cast<std::size_t>(y)];
    const RasterInfo& sample = target(slice);
    const RasterInfo& mean = m_rasters.output;
    m_blocks.forEachRun(touched,
                        [&](int x, int count) { modulate(slice, pixels(sample, y, x), count); });
    if (slice.sample > 0) {
        m_blocks.forEachRun(touched & ~settled, [&](int x, int count) {
            m_rowKernels.fill(pixels(mean, y, x), count, slice.meanBefore.data());
        });
        m_blocks.forEachRun(settled & ~touched, [&](int x, int count) {
            m_rowKernels.fill(pixels(sample, y, x), count, slice.ground.data());
        });
        m_blocks.forEachRun(settled | touched, [&](int x, int count) {
            blend(slice, pixels(sample, y, x), pixels(mean, y, x), count);
        });
    }
    settled |= touched;
}

// Stamps change nothing but alphas, so that pixels differ in those alone.
template<class P>
void LayerPainter<P>::modulate(const Slice& slice, T* row, int count) {
    if (!slice.modulation.any()) {
        return;
    }
    if constexpr (ALPHAS > 0) {
        for (T* const end = row + std::ptrdiff_t{count} * componentsPerPixel; row != end;
             row += componentsPerPixel) {
            const Pixel& pixel = slice.modulated[row[P::FORMAT::alpha]];
            std::memcpy(row, pixel.data(), sizeof(pixel));
        }
    } else {
        m_rowKernels.hslModulate(row, count, slice.modulation);
    }
}

template<class P>
void LayerPainter<P>::blend(const Slice& slice, const T* row, T* mean, int count) {
    m_rowKernels.blendImages(row, mean, count * componentsPerPixel,
                             static_cast<float>(1.0 / (slice.sample + 1)));
}

// Where nothing was drawn the picture shows through, whatever the colour of the layer: its alpha is
// 0, and stays 0 under any opacity but an infinite one.
template<class P>
void LayerPainter<P>::finishRow(int y, const LayerFinish& how) {
    const Mask drawn = m_settled[static_cast<std::size_t>(y)];
    const Mask open = m_blocks.all() & ~drawn;
    T* const input = pixels(m_rasters.input, y, 0);
    T* const layer = pixels(m_rasters.output, y, 0);
    const auto runs = [&](Mask mask, const auto& finishRun) {
        m_blocks.forEachRun(mask, [&](int x, int count) {
            const std::ptrdiff_t first = std::ptrdiff_t{x} * componentsPerPixel;
            finishRun(input + first, layer + first, count);
        });
    };
    const auto code = static_cast<std::size_t>(how.code);
    const auto opacity = static_cast<float>(how.opacity);
    const bool isPremultiplied = m_alpha.source == SourceAlpha::Premultiplied &&
                                 m_alpha.output == OutputAlpha::Premultiplied;
    if (isPremultiplied && how.code != 0 && std::isfinite(opacity)) {
        const auto finish = m_rowKernels.finish[code];
        runs(drawn, [&](T* in, T* out, int n) { finish(in, out, n, opacity); });
        runs(open, [&](T* in, T* out, int n) { m_rowKernels.finishUntouched(in, out, n); });
        return;
    }
    runs(open, [&](T*, T* out, int n) { m_rowKernels.fill(out, n, m_mean.data()); });
    if (how.code == 0 && how.opacity != 1.0) {
        m_rowKernels.multiplyAlpha(layer, m_rasters.output.width, opacity);
    }
    if (isPremultiplied) {
        m_rowKernels.finish[code](input, layer, m_rasters.output.width, opacity);
    } else {
        finishPixels(input, layer, m_rasters.output.width, how);
    }
}

// Only the passes that the host's way of carrying alpha asks for.
template<class P>
void LayerPainter<P>::finishPixels(T* input, T* layer, int count, const LayerFinish& how) {
    straighten(input, count);
    if (const auto composite = m_rowKernels.composite[static_cast<std::size_t>(how.code)];
        composite != nullptr) {
        composite(layer, input, layer, count, static_cast<float>(how.opacity), 1.0F);
    }
    if (m_alpha.source == SourceAlpha::Premultiplied) {
        m_rowKernels.premult(input, count);
    }
    if (m_alpha.output == OutputAlpha::Premultiplied) {
        m_rowKernels.premult(layer, count);
    } else {
        clearHiddenColour<P>(input, layer, count);
    }
}

template<class P>
void LayerPainter<P>::straighten(T* input, int count) {
    if (m_alpha.source == SourceAlpha::Premultiplied) {
        m_rowKernels.unPremult(input, count);
    } else if (m_alpha.source == SourceAlpha::Opaque) {
        for (std::ptrdiff_t i = 0; i < count; ++i) {
            input[i * componentsPerPixel + P::FORMAT::alpha] = static_cast<T>(P::MAX_VALUE());
        }
    }
}

} // namespace orbel
