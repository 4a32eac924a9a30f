#pragma once

#include "doors/fxplug/FxPlugInterface.h"
#include "host/PluginHost.h"

#include <memory>

namespace orbel {

/// The native handle of a raster: an image of the host, or plain memory described by a record.
struct FXPLUGRaster {
    FxBitmap* bitmap = nil;           ///< borrowed from the host
    std::unique_ptr<RasterInfo> info; ///< set for plain memory only
    bool ownsPixels = false;          ///< whether `deallocRaster` frees the memory
};

/// A raster of the FxPlug door.
class PluginRaster_FXPLUG_Impl final : public PluginRaster_API, private FXPLUGRaster {
public:
    /// Borrows an image of the host.
    explicit PluginRaster_FXPLUG_Impl(FxBitmap* hostBitmap) { bitmap = hostBitmap; }
    /// Over plain memory; takes the record. With `owned` the pixels come from `allocMemory`.
    PluginRaster_FXPLUG_Impl(std::unique_ptr<RasterInfo> record, bool owned) {
        info = std::move(record);
        ownsPixels = owned;
    }

    int getWidth() override;
    int getHeight() override;
    /// For plain memory only a coarse answer, which is meant: 14-bit for 8 bytes per pixel, else 8.
    PixelType getPixelType() override;
    int getRowBytes() override;
    AERaster* getAERaster() override { return nullptr; }
    AVX1Raster* getAVX1Raster() override { return nullptr; }
    AVX2Raster* getAVX2Raster() override { return nullptr; }
    FXPLUGRaster* getFXPLUGRaster() override { return this; }
    SPARKRaster* getSPARKRaster() override { return nullptr; }
    void setHost(PluginHost_API* /*host*/) override {}
    RasterInfo* getRasterInfoBase() override { return info.get(); }

    /// What the host object's `copy`, `fill` and `getRasterInfo` read.
    FXPLUGRaster* getRaster() { return this; }
};

/// Describes an image of the host; with `flipRows` row 0 is the last one in memory. False, the
/// record untouched, when there is no image or its layout is unknown.
bool describeBitmap(FxBitmap* bitmap, bool flipRows, RasterInfo* info);

/// The bytes of one pixel of a host image.
[[nodiscard]] int bitmapPixelSize(FxBitmap* bitmap);

} // namespace orbel
