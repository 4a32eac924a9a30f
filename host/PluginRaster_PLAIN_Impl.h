#pragma once

#include "host/PluginHost.h"

#include <memory>
#include <utility>

namespace orbel {

/// A raster over memory described by a record. A door adds how it tells the depth class, and its
/// handle if it has one.
class PluginRaster_PLAIN_Impl : public PluginRaster_API {
public:
    int getWidth() override { return m_info.width; }
    int getHeight() override { return m_info.height; }
    int getRowBytes() override { return m_info.rowBytes; }
    AERaster* getAERaster() override { return nullptr; }
    AVX1Raster* getAVX1Raster() override { return nullptr; }
    AVX2Raster* getAVX2Raster() override { return nullptr; }
    FXPLUGRaster* getFXPLUGRaster() override { return nullptr; }
    SPARKRaster* getSPARKRaster() override { return nullptr; }
    void setHost(PluginHost_API* /*host*/) override {}
    RasterInfo* getRasterInfoBase() override { return &m_info; }

    /// Frees owned pixels; the record then describes an empty image.
    void releasePixels() {
        m_owner.reset();
        m_info = RasterInfo();
    }

protected:
    /// `owner` keeps the pixels until `releasePixels` or destruction; without one they are
    /// borrowed.
    explicit PluginRaster_PLAIN_Impl(const RasterInfo& info,
                                     std::shared_ptr<const void> owner = nullptr)
        : m_owner(std::move(owner)), m_info(info) {}

    [[nodiscard]] const RasterInfo& info() const { return m_info; }

private:
    std::shared_ptr<const void> m_owner;
    RasterInfo m_info;
};

} // namespace orbel
