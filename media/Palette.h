#pragma once

#include "host/AlphaHandling.h"
#include "host/PluginHost.h"
#include "media/Libav.h"

#include <cstdint>
#include <memory>

struct AVFilterContext;
struct AVFilterGraph;

namespace orbel {

struct FilterGraphFree {
    void operator()(AVFilterGraph* graph) const;
};

/// Whether a pixel of a raster in the layout RF_RGBA8 is less than half opaque, and so a hole.
[[nodiscard]] bool hasHoles(const RasterInfo& raster);

/// Chooses the 255 colours, and the one for nothing, that show all frames of a film best.
class PaletteChooser {
public:
    PaletteChooser(int width, int height);

    /// Counts the colours of a frame of that size; `alpha` is how it carries its alpha.
    void add(const RasterInfo& raster, OutputAlpha alpha);
    /// Whether a pixel of any frame was less than half opaque.
    [[nodiscard]] bool sawHoles() const { return m_sawHoles; }
    /// The colours as a picture of 16 × 16 pixels; nothing can be added any more.
    [[nodiscard]] libav::FramePtr choose();

private:
    std::unique_ptr<AVFilterGraph, FilterGraphFree> m_graph;
    AVFilterContext* m_in = nullptr;
    AVFilterContext* m_out = nullptr;
    bool m_sawHoles = false;
};

/// Shows frames in the colours of a palette, one index a pixel. Steps between colours become a
/// pattern that stands still; what is less than half opaque becomes nothing.
class PalettePainter {
public:
    PalettePainter(const AVFrame& palette, int width, int height);

    [[nodiscard]] libav::FramePtr paint(const RasterInfo& raster, OutputAlpha alpha);

private:
    std::unique_ptr<AVFilterGraph, FilterGraphFree> m_graph;
    AVFilterContext* m_in = nullptr;
    AVFilterContext* m_out = nullptr;
    std::int64_t m_time = 0;
};

} // namespace orbel
