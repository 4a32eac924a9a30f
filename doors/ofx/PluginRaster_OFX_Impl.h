#pragma once

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
    /// `owner` keeps the pixels; without one they are borrowed.
    explicit PluginRaster_OFX_Impl(const RasterInfo& info,
                                   std::shared_ptr<const void> owner = nullptr)
        : PluginRaster_PLAIN_Impl(info, std::move(owner)) {}

    PixelType getPixelType() override { return convertToPixelType(info().pixelFormat); }
    OFXRaster* getOFXRaster() override { return &m_handle; }

private:
    OFXRaster m_handle{&info()};
};

} // namespace orbel
