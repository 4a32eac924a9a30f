#include "media/FrameScaler.h"

#include "media/AlignedPlane.h"
#include "media/FrameColour.h"
#include "pixel/RowKernels.h"
#include "pixel/YCbCrRows.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>

namespace orbel {

namespace {

constexpr std::size_t planeCount = 3;

/// Everything that one prepared way depends on.
struct Route {
    int format = 0;
    int fromWidth = 0;
    int fromHeight = 0;
    int toWidth = 0;
    int toHeight = 0;
    bool fullRange = false;

    bool operator==(const Route&) const = default;
};

bool hasPlainPlanes(const AVPixFmtDescriptor& format) {
    constexpr std::uint64_t others =
        AV_PIX_FMT_FLAG_ALPHA | AV_PIX_FMT_FLAG_BE | AV_PIX_FMT_FLAG_BITSTREAM |
        AV_PIX_FMT_FLAG_FLOAT | AV_PIX_FMT_FLAG_HWACCEL | AV_PIX_FMT_FLAG_PAL | AV_PIX_FMT_FLAG_RGB;
    if ((format.flags & others) != 0 || format.nb_components != planeCount) {
        return false;
    }
    for (int c = 0; c < format.nb_components; ++c) {
        const AVComponentDescriptor& part = format.comp[c];
        if (part.plane != c || part.offset != 0 || part.shift != 0 || part.depth < 8 ||
            part.depth > 16 || part.step != (part.depth > 8 ? 2 : 1)) {
            return false;
        }
    }
    return true;
}

bool divides(int shift, int length) {
    return (length >> shift) << shift == length;
}

zimgxx::zimage_format zimgFormat(int width, int height, unsigned depth, bool fullRange) {
    zimgxx::zimage_format format;
    format.width = static_cast<unsigned>(width);
    format.height = static_cast<unsigned>(height);
    format.color_family = ZIMG_COLOR_YUV;
    format.matrix_coefficients = ZIMG_MATRIX_UNSPECIFIED; // the pixels are made here
    format.pixel_range = fullRange ? ZIMG_RANGE_FULL : ZIMG_RANGE_LIMITED;
    format.depth = depth;
    format.pixel_type = depth > 8 ? ZIMG_PIXEL_WORD : ZIMG_PIXEL_BYTE;
    format.chroma_location = ZIMG_CHROMA_CENTER;
    return format;
}

YCbCrWeights weightsFor(const AVFrame& frame) {
    const bool full = isFullRange(frame);
    switch (matrixOf(frame)) {
    case SWS_CS_FCC:
        return yCbCrWeights(0.30, 0.11, full);
    case SWS_CS_ITU601:
        return yCbCrWeights(0.299, 0.114, full);
    case SWS_CS_SMPTE240M:
        return yCbCrWeights(0.212, 0.087, full);
    case SWS_CS_BT2020:
        return yCbCrWeights(0.2627, 0.0593, full);
    default:
        return yCbCrWeights(0.2126, 0.0722, full);
    }
}

/// Whether all rows begin where vectors may be read from.
bool isAligned(const AVFrame& frame) {
    for (std::size_t p = 0; p < planeCount; ++p) {
        if (reinterpret_cast<std::uintptr_t>(frame.data[p]) % planeAlignment != 0 ||
            frame.linesize[p] <= 0 ||
            static_cast<std::size_t>(frame.linesize[p]) % planeAlignment != 0) {
            return false;
        }
    }
    return true;
}

} // namespace

class FrameScaler::Workspace {
public:
    void fill(const AVFrame& frame, const RasterInfo& raster, SourceAlpha alpha) try {
        prepare(frame, raster);
        m_raster = &raster;
        m_weights = weightsFor(frame);
        m_premultiplies = alpha == SourceAlpha::Premultiplied;
        zimgxx::zimage_buffer_const from = source(frame);
        zimgxx::zimage_buffer to;
        for (unsigned p = 0; p < planeCount; ++p) {
            to.data(p) = m_lines[p].row(0);
            to.stride(p) = m_lines[p].stride();
            to.mask(p) = m_mask;
        }
        m_graph.process(from, to, m_scratch.data(), nullptr, nullptr, &pack, this);
    } catch (const zimgxx::zerror& error) {
        failToScale(error);
    }

private:
    void prepare(const AVFrame& frame, const RasterInfo& raster) {
        const Route route{frame.format, frame.width,   frame.height,
                          raster.width, raster.height, isFullRange(frame)};
        if (m_route == route) {
            return;
        }
        m_route.reset(); // nothing is prepared until everything is
        const AVPixFmtDescriptor& known =
            *av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format));
        zimgxx::zimage_format from = zimgFormat(
            frame.width, frame.height, static_cast<unsigned>(known.comp[0].depth), route.fullRange);
        from.subsample_w = known.log2_chroma_w;
        from.subsample_h = known.log2_chroma_h;
        const zimgxx::zimage_format to =
            zimgFormat(raster.width, raster.height, 16, route.fullRange);
        const zimgxx::zfilter_graph_builder_params how = bicubic();
        m_graph = zimgxx::FilterGraph::build(from, to, &how);
        m_scratch.resize(cellsFor(m_graph.get_tmp_size()));
        m_mask = zimg_select_buffer_mask(m_graph.get_output_buffering());
        const int lines = m_mask == ZIMG_BUFFER_MAX ? raster.height : static_cast<int>(m_mask) + 1;
        for (Plane<std::uint16_t>& plane : m_lines) {
            plane.resize(raster.width, lines);
        }
        m_route = route;
    }

    /// The frame's planes, copied where they do not lie as they have to.
    zimgxx::zimage_buffer_const source(const AVFrame& frame) {
        const AVPixFmtDescriptor& known =
            *av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format));
        const bool copies = !isAligned(frame);
        zimgxx::zimage_buffer_const planes;
        for (unsigned p = 0; p < planeCount; ++p) {
            planes.data(p) = frame.data[p];
            planes.stride(p) = frame.linesize[p];
            planes.mask(p) = ZIMG_BUFFER_MAX;
            if (copies) {
                const int shiftX = p == 0 ? 0 : known.log2_chroma_w;
                const int shiftY = p == 0 ? 0 : known.log2_chroma_h;
                copyPlane(frame, p, (frame.width >> shiftX) * known.comp[p].step,
                          frame.height >> shiftY);
                planes.data(p) = m_copies[p].row(0);
                planes.stride(p) = m_copies[p].stride();
            }
        }
        return planes;
    }

    void copyPlane(const AVFrame& frame, unsigned p, int rowBytes, int rows) {
        m_copies[p].resize(rowBytes, rows);
        for (int y = 0; y < rows; ++y) {
            const std::uint8_t* const row =
                frame.data[p] + static_cast<std::ptrdiff_t>(y) * frame.linesize[p];
            std::copy_n(row, rowBytes, m_copies[p].row(y));
        }
    }

    static int pack(void* workspace, unsigned y, unsigned left, unsigned right) {
        const auto& self = *static_cast<const Workspace*>(workspace);
        if (self.m_raster->pixelFormat == RF_RGBA8) {
            self.packRow<PIXEL_RGBA8>(y, left, right);
        } else {
            self.packRow<PIXEL_ARGB8>(y, left, right);
        }
        return 0;
    }

    template<typename P>
    void packRow(unsigned y, unsigned left, unsigned right) const {
        const auto samples = [&](std::size_t p) {
            return m_lines[p].row(static_cast<int>(y & m_mask)) + left;
        };
        std::uint8_t* const row =
            m_raster->row(static_cast<int>(y)) + std::size_t{left} * componentsPerPixel;
        const int pixels = static_cast<int>(right - left);
        yCbCrRows<P>().decode({samples(0), samples(1), samples(2)}, pixels, m_weights, row);
        if (m_premultiplies) {
            rowKernels<P>().premult(row, pixels);
        }
    }

    zimgxx::FilterGraph m_graph;
    std::optional<Route> m_route;
    Cells m_scratch;
    std::array<Plane<std::uint16_t>, planeCount> m_lines;
    std::array<Plane<std::uint8_t>, planeCount> m_copies;
    unsigned m_mask = 0;
    // Of the frame at hand.
    const RasterInfo* m_raster = nullptr;
    YCbCrWeights m_weights{};
    bool m_premultiplies = false;
};

FrameScaler::FrameScaler() : m_workspace(std::make_unique<Workspace>()) {}

FrameScaler::~FrameScaler() = default;

bool FrameScaler::takes(const AVFrame& frame, const RasterInfo& raster) {
    const AVPixFmtDescriptor* const known =
        av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format));
    return known != nullptr && hasPlainPlanes(*known) &&
           divides(known->log2_chroma_w, frame.width) &&
           divides(known->log2_chroma_h, frame.height) &&
           (raster.pixelFormat == RF_RGBA8 || raster.pixelFormat == RF_ARGB8) &&
           raster.bytesPerPixel == componentsPerPixel;
}

void FrameScaler::fill(const AVFrame& frame, const RasterInfo& raster, SourceAlpha alpha) {
    m_workspace->fill(frame, raster, alpha);
}

} // namespace orbel
