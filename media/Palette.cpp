#include "media/Palette.h"

#include "media/PixelConversion.h"

extern "C" {
#include <libavfilter/avfilter.h>
#include <libavfilter/buffersink.h>
#include <libavfilter/buffersrc.h>
}

#include <string>

namespace orbel {

namespace {

constexpr int paletteSide = 16;

/// These calls fail for want of memory alone.
void need(int code) {
    if (code < 0) {
        throw std::bad_alloc();
    }
}

AVFilterContext* addFilter(AVFilterGraph* graph, const char* name, const std::string& options) {
    AVFilterContext* filter = nullptr;
    need(avfilter_graph_create_filter(&filter, avfilter_get_by_name(name), nullptr, options.c_str(),
                                      nullptr, graph));
    return filter;
}

AVFilterContext* addSource(AVFilterGraph* graph, int width, int height) {
    return addFilter(graph, "buffer",
                     "video_size=" + std::to_string(width) + "x" + std::to_string(height) +
                         ":pix_fmt=" + std::to_string(AV_PIX_FMT_BGRA) +
                         ":time_base=1/1:pixel_aspect=1/1");
}

std::unique_ptr<AVFilterGraph, FilterGraphFree> makeGraph() {
    std::unique_ptr<AVFilterGraph, FilterGraphFree> graph(avfilter_graph_alloc());
    if (graph == nullptr) {
        throw std::bad_alloc();
    }
    graph->nb_threads = 1;
    return graph;
}

libav::FramePtr straightFrame(const RasterInfo& raster, OutputAlpha alpha, std::int64_t time) {
    libav::FramePtr frame = libav::makeFrame(AV_PIX_FMT_BGRA, raster.width, raster.height);
    std::uint8_t* const first = frame->data[0];
    encodeStraight(raster, alpha, {first + 2, first + 1, first, first + 3, 4, frame->linesize[0]});
    frame->pts = time;
    return frame;
}

/// In rows of four bytes a pixel, alpha last.
bool holesIn(const std::uint8_t* first, int rowBytes, int width, int height) {
    constexpr std::uint8_t half = 128;
    for (int y = 0; y < height; ++y, first += rowBytes) {
        for (int x = 0; x < width; ++x) {
            if (first[4 * x + 3] < half) {
                return true;
            }
        }
    }
    return false;
}

libav::FramePtr nextOf(AVFilterContext* out) {
    auto frame = libav::owned<libav::FramePtr>(av_frame_alloc());
    need(av_buffersink_get_frame(out, frame.get()));
    return frame;
}

} // namespace

bool hasHoles(const RasterInfo& raster) {
    return holesIn(raster.data, raster.rowBytes, raster.width, raster.height);
}

void FilterGraphFree::operator()(AVFilterGraph* graph) const {
    avfilter_graph_free(&graph);
}

PaletteChooser::PaletteChooser(int width, int height) : m_graph(makeGraph()) {
    m_in = addSource(m_graph.get(), width, height);
    AVFilterContext* const chooser = addFilter(m_graph.get(), "palettegen", "stats_mode=full");
    m_out = addFilter(m_graph.get(), "buffersink", "");
    need(avfilter_link(m_in, 0, chooser, 0));
    need(avfilter_link(chooser, 0, m_out, 0));
    need(avfilter_graph_config(m_graph.get(), nullptr));
}

void PaletteChooser::add(const RasterInfo& raster, OutputAlpha alpha) {
    const libav::FramePtr frame = straightFrame(raster, alpha, 0);
    m_sawHoles =
        m_sawHoles || holesIn(frame->data[0], frame->linesize[0], raster.width, raster.height);
    need(av_buffersrc_write_frame(m_in, frame.get()));
    // Nothing comes out before the end, but asking makes the filter take the frame.
    const auto none = libav::owned<libav::FramePtr>(av_frame_alloc());
    const int code = av_buffersink_get_frame(m_out, none.get());
    need(code == AVERROR(EAGAIN) ? 0 : code);
}

libav::FramePtr PaletteChooser::choose() {
    need(av_buffersrc_write_frame(m_in, nullptr));
    return nextOf(m_out);
}

PalettePainter::PalettePainter(const AVFrame& palette, int width, int height)
    : m_graph(makeGraph()) {
    m_in = addSource(m_graph.get(), width, height);
    AVFilterContext* const colours = addSource(m_graph.get(), paletteSide, paletteSide);
    AVFilterContext* const painter =
        addFilter(m_graph.get(), "paletteuse", "dither=bayer:bayer_scale=3:diff_mode=rectangle");
    m_out = addFilter(m_graph.get(), "buffersink", "");
    need(avfilter_link(m_in, 0, painter, 0));
    need(avfilter_link(colours, 0, painter, 1));
    need(avfilter_link(painter, 0, m_out, 0));
    need(avfilter_graph_config(m_graph.get(), nullptr));
    const auto copy = libav::owned<libav::FramePtr>(av_frame_clone(&palette));
    copy->pts = 0;
    need(av_buffersrc_write_frame(colours, copy.get()));
    need(av_buffersrc_write_frame(colours, nullptr));
}

libav::FramePtr PalettePainter::paint(const RasterInfo& raster, OutputAlpha alpha) {
    need(av_buffersrc_write_frame(m_in, straightFrame(raster, alpha, m_time++).get()));
    return nextOf(m_out);
}

} // namespace orbel
