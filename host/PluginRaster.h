#pragma once

namespace orbel {

class PluginHost_API;
struct RasterInfo;

// Native raster handles, one kind per host. Each binding returns its own handle from its own
// accessor and null from all the others.
struct AERaster;
struct AVX1Raster;
struct AVX2Raster;
struct FXPLUGRaster;
struct SPARKRaster;
struct OFXRaster;
struct GASKETRaster;
struct RTFXRaster;
struct VEGASRaster;

/// One image of the host. A raster obtained from a host goes back to that host with `deallocRaster`
/// or `checkinLayer` and is then deleted by whoever obtained it; `PluginHost_API::getInputRaster`
/// states the rule.
class PluginRaster_API {
public:
    /// Depth class of a channel: a coarser notion than the layout code in `RasterInfo`.
    enum PixelType : int {
        PIXEL_TYPE_8 = 0,
        PIXEL_TYPE_15 = 1,
        PIXEL_TYPE_14 = 2,
        PIXEL_TYPE_16 = 3,
        PIXEL_TYPE_FLOAT = 4,
    };

    virtual ~PluginRaster_API() = default;

    /// Width in pixels.
    virtual int getWidth() = 0;
    /// Height in pixels.
    virtual int getHeight() = 0;
    /// The depth class, not the layout code.
    virtual PixelType getPixelType() = 0;
    /// Bytes from one row to the next; negative for an image walked bottom-up.
    virtual int getRowBytes() = 0;

    // --- Native handles: a door's own, borrowed, and null for all the others. ---

    virtual AERaster* getAERaster() = 0;
    virtual AVX1Raster* getAVX1Raster() = 0;
    virtual AVX2Raster* getAVX2Raster() = 0;
    virtual FXPLUGRaster* getFXPLUGRaster() = 0;
    virtual SPARKRaster* getSPARKRaster() = 0;
    virtual OFXRaster* getOFXRaster() { return nullptr; }
    virtual GASKETRaster* getGASKETRaster() { return nullptr; }
    virtual RTFXRaster* getRTFXRaster() { return nullptr; }
    virtual VEGASRaster* getVEGASRaster() { return nullptr; }

    /// Tells a raster which host it belongs to. Borrowed; most rasters have no use for it.
    virtual void setHost(PluginHost_API* host) = 0;

    // --- The area that has pixels, in pixels from the top left corner, edges included. ---

    virtual int getExtentTop() { return 0; }
    virtual int getExtentLeft() { return 0; }
    /// Last row, inclusive: -1 for an empty raster.
    virtual int getExtentBottom() { return getHeight() - 1; }
    /// Last column, inclusive: -1 for an empty raster.
    virtual int getExtentRight() { return getWidth() - 1; }

    /// The record of a raster that carries its own description, null otherwise: then only the host
    /// that made it can describe it. Owned by the raster.
    virtual RasterInfo* getRasterInfoBase() { return nullptr; }
};

} // namespace orbel
