#pragma once

#include "host/AlphaHandling.h"
#include "host/PluginHost.h"
#include "media/Libav.h"

#include <memory>

namespace orbel {

/// Brings decoded frames of Y'CbCr to the size and the layout of a raster in one pass: planes are
/// scaled as `PictureScaler` does it, at 16 bits, chroma right from its own size, and become pixels
/// line by line while they are in the cache. Matrix and range are as for `FrameConverter`, chroma
/// lies in the middle of its pixels. Gives the same pixels on every machine. One thread at a time.
class FrameScaler {
public:
    FrameScaler();
    FrameScaler(const FrameScaler&) = delete;
    FrameScaler& operator=(const FrameScaler&) = delete;
    ~FrameScaler();

    /// Whether there is this way from a frame to a raster: planes without alpha to 8 bits.
    [[nodiscard]] static bool takes(const AVFrame& frame, const RasterInfo& raster);

    /// Throws std::runtime_error for a size that cannot be scaled to, and std::bad_alloc.
    void fill(const AVFrame& frame, const RasterInfo& raster, SourceAlpha alpha);

private:
    class Workspace;

    std::unique_ptr<Workspace> m_workspace;
};

} // namespace orbel
