#pragma once

#include "doors/ofx/PixelBuffer.h"
#include "host/PluginRaster_PLAIN_Impl.h"
#include "pixel/RasterFormats.h"

#include <memory>
#include <utility>

namespace orbel {

/// The handle of this door's rasters: the pixels that the core works on.
struct OFXRaster {
    const RasterInfo* info;
};

/// A raster over a working copy, or over memory described by a record.
class PluginRaster_OFX_Impl final : public PluginRaster_PLAIN_Impl {
public:
    /// Borrows the pixels.
    explicit PluginRaster_OFX_Impl(const RasterInfo& info) : PluginRaster_PLAIN_Impl(info) {}
    /// Owns the pixels until `releasePixels` or destruction.
    explicit PluginRaster_OFX_Impl(ofx::PixelBuffer buffer)
        : PluginRaster_OFX_Impl(std::make_shared<ofx::PixelBuffer>(std::move(buffer))) {}

    PixelType getPixelType() override { return convertToPixelType(info().pixelFormat); }
    OFXRaster* getOFXRaster() override { return &m_handle; }

private:
    explicit PluginRaster_OFX_Impl(const std::shared_ptr<ofx::PixelBuffer>& buffer)
        : PluginRaster_PLAIN_Impl(buffer->info(), buffer) {}

    OFXRaster m_handle{&info()};
};

} // namespace orbel
