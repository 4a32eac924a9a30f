#pragma once

#include "host/PluginHost_COMMON_Impl.h"

#include <array>

namespace orbel {

/// The pictures of a frame, top row first. The input is changed only where its alpha has to be.
struct PlainPictures {
    RasterInfo input;
    RasterInfo output;
    AlphaHandling alpha; ///< how both carry alpha
};

/// A host of plain data: its pictures are memory described by records, its parameters rows of
/// numbers. A door adds where the numbers come from, and when and at what scale it renders.
class PluginHost_PLAIN_Impl : public PluginHost_COMMON_Impl {
public:
    int getOutputWidth() override { return outputInfo().width; }
    int getOutputHeight() override { return outputInfo().height; }
    PluginRaster_API* getInputRaster(int layer) override;
    PluginRaster_API* getOutputRaster() override;
    /// Frees the pixels of an allocated raster; the raster object is its holder's to delete.
    void deallocRaster(PluginRaster_API* raster) override;
    double geAspectRatio(PluginRaster_API* raster) override;
    void getInputRasterInfo(int layer, RasterInfo* info) override;
    void getOutputRasterInfo(RasterInfo* info) override;
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
    /// A parameter's numbers; those that its kind does not have are 0.
    using Value = std::array<double, 3>;

    /// Borrows the pixels.
    explicit PluginHost_PLAIN_Impl(const PlainPictures& pictures) : m_pictures(pictures) {}
    PluginHost_PLAIN_Impl(const PluginHost_PLAIN_Impl&) = default;
    PluginHost_PLAIN_Impl& operator=(const PluginHost_PLAIN_Impl&) = default;
    // Always made and destroyed as its concrete type.
    ~PluginHost_PLAIN_Impl() = default;

    /// False, `value` untouched, for a parameter that has no numbers.
    virtual bool read(int param, const TimeObject& time, Value& value) const = 0;

private:
    PlainPictures m_pictures;
};

} // namespace orbel
