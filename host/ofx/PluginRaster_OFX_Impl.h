#pragma once

#include "host/ofx/PixelBuffer.h"
#include "pixel/RasterFormats.h"

#include <utility>

namespace orbel {

/// The handle of this door's rasters: the pixels that the core works on.
struct OFXRaster {
    RasterInfo info;
};

/// A raster over a working copy, or over memory described by a record.
class PluginRaster_OFX_Impl final : public PluginRaster_API {
public:
    /// Borrows the pixels.
    explicit PluginRaster_OFX_Impl(const RasterInfo& info) : m_handle{info} {}
    /// Owns the pixels until `releasePixels` or destruction.
    explicit PluginRaster_OFX_Impl(ofx::PixelBuffer buffer)
        : m_buffer(std::move(buffer)), m_handle{m_buffer.info()} {}

    int getWidth() override { return m_handle.info.width; }
    int getHeight() override { return m_handle.info.height; }
    PixelType getPixelType() override { return convertToPixelType(m_handle.info.pixelFormat); }
    int getRowBytes() override { return m_handle.info.rowBytes; }
    AERaster* getAERaster() override { return nullptr; }
    AVX1Raster* getAVX1Raster() override { return nullptr; }
    AVX2Raster* getAVX2Raster() override { return nullptr; }
    FXPLUGRaster* getFXPLUGRaster() override { return nullptr; }
    SPARKRaster* getSPARKRaster() override { return nullptr; }
    OFXRaster* getOFXRaster() override { return &m_handle; }
    void setHost(PluginHost_API* /*host*/) override {}
    RasterInfo* getRasterInfoBase() override { return &m_handle.info; }

    /// Frees owned pixels; the record then describes an empty image.
    void releasePixels() {
        m_buffer = ofx::PixelBuffer();
        m_handle = {};
    }

private:
    ofx::PixelBuffer m_buffer;
    OFXRaster m_handle;
};

} // namespace orbel
