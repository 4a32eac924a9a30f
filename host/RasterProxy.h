#pragma once

#include "host/PluginHost.h"

namespace orbel {

/// Owns a raster for the length of a scope. On destruction the raster goes back to the host when
/// `deallocOnExit` is set (a null raster included), then the raster object itself is destroyed when
/// `deleteOnExit` is set. For a raster that was just asked for both are:
///
///     const PluginRasterProxy input(host, host->getInputRaster(0), true, true);
class PluginRasterProxy {
public:
    /// Borrows the host, which must outlive the proxy.
    PluginRasterProxy(PluginHost_API* host, PluginRaster_API* raster, bool deallocOnExit,
                      bool deleteOnExit)
        : m_raster(raster),
          m_host(host),
          m_deallocOnExit(deallocOnExit),
          m_deleteOnExit(deleteOnExit) {}
    PluginRasterProxy(const PluginRasterProxy&) = delete;
    PluginRasterProxy& operator=(const PluginRasterProxy&) = delete;
    ~PluginRasterProxy() {
        if (m_deallocOnExit) {
            m_host->deallocRaster(m_raster);
        }
        if (m_raster != nullptr && m_deleteOnExit) {
            delete m_raster;
        }
    }

    /// Replaces the raster and the first flag; the former raster is not released.
    void setRaster(PluginRaster_API* raster, bool deallocOnExit) {
        m_raster = raster;
        m_deallocOnExit = deallocOnExit;
    }
    /// The raster, null where the host had none: ask before the first use.
    PluginRaster_API* operator->() const { return m_raster; }
    [[nodiscard]] PluginRaster_API* getImpl() const { return m_raster; }

private:
    PluginRaster_API* m_raster;
    PluginHost_API* m_host;
    bool m_deallocOnExit;
    bool m_deleteOnExit;
};

} // namespace orbel
