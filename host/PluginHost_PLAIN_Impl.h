#pragma once

#include "host/PluginHost_COMMON_Impl.h"

#include <array>
#include <memory>

namespace orbel {

/// The pictures of a frame: records of memory that the host object borrows. Both have the same size
/// and layout, one of the six that are rendered, and their pixels do not overlap.
struct PlainPictures {
    RasterInfo input;    ///< what is under the stroke; changed only where its alpha has to be
    RasterInfo output;   ///< what the frame is drawn into; every pixel is written
    AlphaHandling alpha; ///< how both carry alpha
};

/// A host of plain data: its pictures are memory described by records, its parameters rows of
/// numbers. A door adds where the numbers come from (`read`), what its rasters are (`makeRaster`),
/// and of the operations of `PluginHost_API` the few that are left: when and at what scale it
/// renders, and where warnings go.
class PluginHost_PLAIN_Impl : public PluginHost_COMMON_Impl {
public:
    int getOutputWidth() override { return outputInfo().width; }
    int getOutputHeight() override { return outputInfo().height; }
    PluginRaster_API* getInputRaster(int layer) override;
    PluginRaster_API* getOutputRaster() override;
    PluginRaster_API* allocRaster(int width, int height, PixelType type, int& rowBytes,
                                  int flags) override;
    PluginRaster_API* allocRaster(RasterInfo* info) override;
    /// The raster describes an empty image afterwards.
    void deallocRaster(PluginRaster_API* raster) override;
    void getInputRasterInfo(int layer, RasterInfo* info) override;
    void getRasterInfo(PluginRaster_API* raster, RasterInfo* info) override;
    void getSourceLayerDimensions(int& width, int& height) override;
    AlphaHandling getAlphaHandling() override { return m_pictures.alpha; }

    int GetFloatValue(int param, int sub, const TimeObject& time, double& value) override;
    int GetAngleValue(int param, int sub, const TimeObject& time, double& degrees) override;
    int GetIntValue(int param, int sub, const TimeObject& time, int& value) override;
    int GetUIntValue(int param, int sub, const TimeObject& time, unsigned& value) override;
    int GetBoolValue(int param, int sub, const TimeObject& time, bool& value) override;
    int GetPoint2DValue(int param, int sub, const TimeObject& time, double& x, double& y) override;
    int GetColorValue(int param, int sub, const TimeObject& time, double& r, double& g,
                      double& b) override;

protected:
    /// A parameter's numbers in the units of `PluginHost_API`: one, two of a point, three of a
    /// colour; toggles are 0 or 1, menus their index. The rest are not looked at.
    using Value = std::array<double, 3>;
    /// Keeps pixels that belong to a raster; empty for those that do not.
    using PixelOwner = std::shared_ptr<const void>;

    /// Borrows the pixels for as long as it lives.
    explicit PluginHost_PLAIN_Impl(const PlainPictures& pictures) : m_pictures(pictures) {}
    PluginHost_PLAIN_Impl(const PluginHost_PLAIN_Impl&) = default;
    PluginHost_PLAIN_Impl& operator=(const PluginHost_PLAIN_Impl&) = default;
    // Always made and destroyed as its concrete type.
    ~PluginHost_PLAIN_Impl() = default;

    /// False, `value` untouched, for a parameter that has no numbers.
    virtual bool read(int param, const TimeObject& time, Value& value) const = 0;
    /// A `PluginRaster_PLAIN_Impl` of the door's own kind, made with `new`.
    virtual PluginRaster_API* makeRaster(const RasterInfo& info, PixelOwner owner) = 0;
    void describeOutput(RasterInfo* info) override { *info = m_pictures.output; }

private:
    PlainPictures m_pictures;
};

} // namespace orbel
