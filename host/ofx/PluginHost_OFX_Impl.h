#pragma once

#include "host/PluginHost_COMMON_Impl.h"
#include "host/ofx/EffectInstance.h"
#include "host/ofx/PluginRaster_OFX_Impl.h"
#include "host/ofx/PluginUpdate_OFX_Impl.h"
#include "params/InstanceData.h"

#include <string>

namespace orbel {

/// The handle of this door's host: the effect instance that renders.
struct OFXHost {
    const ofx::EffectInstance* instance;
};

/// When and at what scale a frame is rendered.
struct OFXRenderTime {
    OfxTime time = 0.0; ///< frames; fractions are allowed
    double scaleX = 1.0;
    double scaleY = 1.0;
    bool draft = false;
};

/// The pictures of a frame, top row first, at full height. The input is changed only where its
/// alpha has to be.
struct OFXPictures {
    RasterInfo input;
    RasterInfo output;
    AlphaHandling alpha;
};

/// One render call of the host as the core sees it. Lives for that call, on its thread.
class PluginHost_OFX_Impl final : public PluginHost_COMMON_Impl {
public:
    /// The instance is borrowed and so are the pixels. Without pictures there are only parameters.
    PluginHost_OFX_Impl(const ofx::EffectInstance* instance, const OFXRenderTime& when,
                        const OFXPictures& pictures);
    PluginHost_OFX_Impl(const PluginHost_OFX_Impl&) = delete;
    PluginHost_OFX_Impl& operator=(const PluginHost_OFX_Impl&) = delete;
    ~PluginHost_OFX_Impl() = default;

    /// Whether the host gave the frame up.
    [[nodiscard]] bool wasAborted() const { return m_aborted; }
    /// The frame that a time in ticks stands for: exactly the host's own time for the current one.
    [[nodiscard]] OfxTime timeToFrame(const TimeObject& time) const;

    OFXHost* getOFXHost() override { return &m_handle; }

    // --- Images ---
    using PluginHost_COMMON_Impl::fill;
    int getOutputWidth() override { return outputInfo().width; }
    int getOutputHeight() override { return outputInfo().height; }
    void fillOutput() override;
    void fill(PluginRaster_API* raster) override;
    void copyInputToOutput() override;
    void copy(PluginRaster_API* source, PluginRaster_API* destination) override;
    void copy(PluginRaster_API* source, PluginRaster_API* destination, Vx_Rect* sourceRect,
              Vx_Rect* destinationRect) override;
    PluginRaster_API* getInputRaster(int layer) override;
    PluginRaster_API* getOutputRaster() override;
    /// The output's layout at another size; `type` and `flags` are not consulted.
    PluginRaster_API* allocRaster(int width, int height, PixelType type, int& rowBytes,
                                  int flags) override;
    PluginRaster_API* allocRaster(RasterInfo* info) override;
    /// Frees the pixels of an allocated raster; the raster object is its holder's to delete.
    void deallocRaster(PluginRaster_API* raster) override;
    double geAspectRatio(PluginRaster_API* raster) override;
    void getInputRasterInfo(int layer, RasterInfo* info) override;
    void getOutputRasterInfo(RasterInfo* info) override;
    void getRasterInfo(PluginRaster_API* raster, RasterInfo* info) override;
    void getSourceLayerDimensions(int& width, int& height) override;
    void setOutputRaster(PluginRaster_API* raster) override { m_outputOverride = raster; }
    AlphaHandling getAlphaHandling() override { return m_pictures.alpha; }
    PluginRaster_API* lockTemporalRaster(double time, bool fieldMode, bool firstFieldOdd) override;
    PluginRaster_API* checkoutLayer(int param, int flags) override;
    PluginRaster_API* checkoutLayer(int param, double time, int flags) override;

    // --- Render request and time ---
    bool isQualityHigh() override { return !m_when.draft; }
    double getScaleX() override { return m_when.scaleX; }
    double getScaleY() override { return m_when.scaleY; }
    bool isFieldRendering() override { return false; }
    void getFullFrameInfo(double time, int height, int& fullHeight, int& step, int& phase) override;
    int getTimeScale() override { return 3000; }
    int getCurrentTime() override { return m_ticks; }
    int getTimeStep() override { return 100; }
    int getFrameLength() override { return 30 * getTimeStep(); }
    int getLocalTimeStep() override { return 100; }
    bool isApplication(long /*fourCC*/) override { return false; }
    int progress(long done, long total) override;
    bool doAbort() override;

    // --- Parameters ---
    int GetFloatValue(int param, int sub, const TimeObject& time, double& value) override;
    int GetAngleValue(int param, int sub, const TimeObject& time, double& degrees) override;
    int GetIntValue(int param, int sub, const TimeObject& time, int& value) override;
    int GetUIntValue(int param, int sub, const TimeObject& time, unsigned& value) override;
    int GetBoolValue(int param, int sub, const TimeObject& time, bool& value) override;
    int GetPoint2DValue(int param, int sub, const TimeObject& time, double& x, double& y) override;
    int GetColorValue(int param, int sub, const TimeObject& time, double& r, double& g,
                      double& b) override;
    PluginUpdate_API* makeUpdateApi() override { return &m_update; }

private:
    using Value = std::array<double, 3>;

    [[nodiscard]] RasterInfo outputInfo() const;
    bool read(int param, const TimeObject& time, Value& value) const;

    OFXHost m_handle;
    OFXRenderTime m_when;
    OFXPictures m_pictures;
    PluginUpdate_OFX_Impl m_update;
    std::string m_shapeText;
    Orbel_UserData m_shape;
    PluginRaster_API* m_outputOverride = nullptr;
    int m_ticks;           // whole ticks of the time
    double m_ticksDropped; // what is missing to it
    bool m_aborted = false;
};

} // namespace orbel
