#pragma once

#include "render/RowBlocks.h"
#include "render/SampleSlice.h"
#include "render/StampBatch.h"
#include "render/StampKernels.h"

#include <algorithm>
#include <span>
#include <vector>

namespace orbel {

/// Paints samples into rows: the colour wherever a stamp comes near, stamps, modulation. Bands of
/// rows are painted independently of each other, on any threads; one band's slices come in order.
template<class P>
class SamplePainter {
    using T = typename P::Component;
    using Slice = SampleSlice<P>;

public:
    using Mask = RowBlocks::Mask;

    SamplePainter(const RasterInfo& output, const RowKernels<P>& rows, const StampKernels& stamps)
        : m_blocks(output.width),
          m_rowKernels(rows),
          m_stampKernels(stamps),
          m_touched(static_cast<std::size_t>(output.height)) {}

    /// Paints what a slice has in the rows of a band: `stamps` are its stamps that reach into it.
    /// What is complete then is modulated if `modulates` is true.
    void paint(const Slice& slice, const RasterInfo& raster, int first, int last,
               const StampBatch& batch, std::span<const StampBatch::Index> stamps, bool modulates) {
        if (slice.begins) {
            std::fill(m_touched.begin() + first, m_touched.begin() + last + 1, Mask{0});
        }
        const StampRows rows{raster.data, raster.rowBytes, raster.width, first, last};
        touchAll(slice, raster, rows, batch, stamps);
        if (slice.isOrdinary) {
            m_stampKernels.paint(rows, batch.data(), stamps, true);
        } else {
            paintOneByOne(rows, batch, stamps);
        }
        modulates = modulates && slice.ends && slice.modulation.any();
        for (int y = first; modulates && y <= last; ++y) {
            m_blocks.forEachRun(touched(y), [&](int x, int count) {
                modulate(slice, pixelsAt<P>(raster, y, x), count);
            });
        }
    }

    /// The blocks of a row that the sample was painted in. All others are its colour, modulated
    /// when the sample has ended, and were not written.
    [[nodiscard]] Mask touched(int y) const { return m_touched[static_cast<std::size_t>(y)]; }
    [[nodiscard]] const RowBlocks& blocks() const { return m_blocks; }

private:
    void paintOneByOne(const StampRows& rows, const StampBatch& batch,
                       std::span<const StampBatch::Index> stamps) {
        for (const StampBatch::Index& i : stamps) {
            if (kernelsCanPaint(batch[i], P::MAX_VALUE())) {
                m_stampKernels.paint(rows, batch.data(), {&i, 1}, false);
            } else {
                stampRows<P>(rows, batch[i]);
            }
        }
    }

    // What lies around stamps that follow each other closely is looked at in one go.
    void touchAll(const Slice& slice, const RasterInfo& raster, const StampRows& rows,
                  const StampBatch& batch, std::span<const StampBatch::Index> stamps) {
        constexpr int mostTogether = 48; // pixels across
        if (stamps.empty()) {
            return;
        }
        Vx_Rect together = batch[stamps.front()].box;
        for (const StampBatch::Index i : stamps) {
            const Vx_Rect& box = batch[i].box;
            const Vx_Rect both{std::min(together.top, box.top), std::min(together.left, box.left),
                               std::max(together.bottom, box.bottom),
                               std::max(together.right, box.right)};
            if (both.right - both.left < mostTogether && both.bottom - both.top < mostTogether) {
                together = both;
            } else {
                touch(slice, raster, rows, together);
                together = box;
            }
        }
        touch(slice, raster, rows, together);
    }

    // Fills the blocks around a box with the colour, unless that was done for another one: all
    // that the kernels may read.
    void touch(const Slice& slice, const RasterInfo& raster, const StampRows& rows,
               const Vx_Rect& box) {
        constexpr int beside = StampKernels::mostBeside;
        const int lastColumn = rows.width - 1;
        const Mask around =
            m_blocks.covering(std::min<int>(box.left, std::max(lastColumn - beside, 0)),
                              std::min(box.right + beside, lastColumn));
        const int first = std::max<int>(rows.first, box.top);
        const int last = std::min<int>(rows.last, box.bottom);
        for (int y = first; y <= last; ++y) {
            const Mask fresh = around & ~touched(y);
            m_blocks.forEachRun(fresh, [&](int x, int count) {
                m_rowKernels.fill(pixelsAt<P>(raster, y, x), count, slice.colour.data());
            });
            m_touched[static_cast<std::size_t>(y)] |= fresh;
        }
    }

    // Stamps change nothing but alphas, so that pixels differ in those alone.
    void modulate(const Slice& slice, T* row, int count) const {
        if constexpr (Slice::ALPHAS > 0) {
            m_stampKernels.recolour(row, count, slice.modulated.data());
        } else {
            m_rowKernels.hslModulate(row, count, slice.modulation);
        }
    }

    RowBlocks m_blocks;
    const RowKernels<P>& m_rowKernels;
    const StampKernels& m_stampKernels;
    std::vector<Mask> m_touched; // by row
};

} // namespace orbel
