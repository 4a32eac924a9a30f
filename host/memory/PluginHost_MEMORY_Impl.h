#pragma once

#include "host/PluginHost_COMMON_Impl.h"
#include "host/memory/MemoryImage.h"
#include "host/memory/ParameterStore.h"

#include <functional>
#include <memory>
#include <string>

namespace orbel {

/// A raster over the pixels of a `MemoryImage` or of any memory described by a record.
class PluginRaster_MEMORY_Impl final : public PluginRaster_API {
public:
    /// Borrows the pixels.
    explicit PluginRaster_MEMORY_Impl(const RasterInfo& info) : m_info(info) {}
    /// Owns the pixels until `releasePixels` or destruction.
    explicit PluginRaster_MEMORY_Impl(MemoryImage image)
        : m_image(std::move(image)), m_info(m_image.info()) {}

    int getWidth() override { return m_info.width; }
    int getHeight() override { return m_info.height; }
    PixelType getPixelType() override;
    int getRowBytes() override { return m_info.rowBytes; }
    AERaster* getAERaster() override { return nullptr; }
    AVX1Raster* getAVX1Raster() override { return nullptr; }
    AVX2Raster* getAVX2Raster() override { return nullptr; }
    FXPLUGRaster* getFXPLUGRaster() override { return nullptr; }
    SPARKRaster* getSPARKRaster() override { return nullptr; }
    void setHost(PluginHost_API* /*host*/) override {}
    RasterInfo* getRasterInfoBase() override { return &m_info; }

    /// Frees owned pixels; the record then describes an empty image.
    void releasePixels();

private:
    MemoryImage m_image;
    RasterInfo m_info;
};

/// What an in-memory render is told beside its images and parameters.
struct MemoryHostSettings {
    double frame = 0.0;        ///< the frame being rendered; fractions are allowed
    double renderScaleX = 1.0; ///< 1.0 is full resolution
    double renderScaleY = 1.0;
    bool qualityHigh = true;
    int ticksPerSecond = 3000;
    int ticksPerFrame = 100;
    bool ignoreNormalComposite = false; ///< the caller lays "Normal" over the picture itself
    AlphaHandling alpha{};              ///< how both images carry alpha
};

/// A host made of plain memory: one input and one output image, parameters from a store, C library
/// maths. Lives for one render call; one object per thread. Derive from it to answer single
/// operations differently.
class PluginHost_MEMORY_Impl : public PluginHost_COMMON_Impl, private PluginUpdate_API {
public:
    /// All three are borrowed and must outlive the host. The render works in the input's own
    /// pixels: hand out a fresh copy of the picture for every frame.
    PluginHost_MEMORY_Impl(const RasterInfo& input, const RasterInfo& output,
                           ParameterStore* parameters, const MemoryHostSettings& settings);
    virtual ~PluginHost_MEMORY_Impl() = default;

    /// Asked now and then during long strokes; a non-zero answer aborts the render with that code.
    void setProgress(std::function<int(long, long)> progress) { m_progress = std::move(progress); }
    /// Receives the texts of warnings; without it they are dropped.
    void setWarning(std::function<void(const std::string&)> warning) {
        m_warning = std::move(warning);
    }
    /// The frame that a time in ticks stands for.
    [[nodiscard]] static double timeToFrame(const TimeObject& time) {
        return time.getTime() / time.time_step();
    }

    int getOutputWidth() override { return outputInfo().width; }
    int getOutputHeight() override { return outputInfo().height; }
    using PluginHost_COMMON_Impl::fill;
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
    bool isQualityHigh() override { return m_settings.qualityHigh; }
    double getScaleX() override { return m_settings.renderScaleX; }
    double getScaleY() override { return m_settings.renderScaleY; }
    double geAspectRatio(PluginRaster_API* raster) override;
    void getInputRasterInfo(int layer, RasterInfo* info) override;
    void getOutputRasterInfo(RasterInfo* info) override;
    void getRasterInfo(PluginRaster_API* raster, RasterInfo* info) override;
    void showWarning(const char* text) override;
    void getSourceLayerDimensions(int& width, int& height) override;
    int getTimeScale() override { return m_settings.ticksPerSecond; }
    int getCurrentTime() override;
    int getTimeStep() override { return m_settings.ticksPerFrame; }
    int getFrameLength() override { return 30 * m_settings.ticksPerFrame; }
    int getLocalTimeStep() override { return m_settings.ticksPerFrame; }
    bool isApplication(long /*fourCC*/) override { return false; }
    int GetFloatValue(int param, int sub, const TimeObject& time, double& value) override;
    int GetAngleValue(int param, int sub, const TimeObject& time, double& degrees) override;
    int GetIntValue(int param, int sub, const TimeObject& time, int& value) override;
    int GetUIntValue(int param, int sub, const TimeObject& time, unsigned& value) override;
    int GetBoolValue(int param, int sub, const TimeObject& time, bool& value) override;
    int GetPoint2DValue(int param, int sub, const TimeObject& time, double& x, double& y) override;
    int GetColorValue(int param, int sub, const TimeObject& time, double& r, double& g,
                      double& b) override;
    int progress(long done, long total) override;
    PluginRaster_API* lockTemporalRaster(double time, bool fieldMode, bool firstFieldOdd) override;
    bool isFieldRendering() override { return false; }
    void getFullFrameInfo(double time, int height, int& fullHeight, int& step, int& phase) override;
    PluginRaster_API* checkoutLayer(int param, int flags) override;
    PluginRaster_API* checkoutLayer(int param, double time, int flags) override;
    void setOutputRaster(PluginRaster_API* raster) override { m_outputOverride = raster; }
    bool ignoreNormalComposite() override { return m_settings.ignoreNormalComposite; }
    AlphaHandling getAlphaHandling() override { return m_settings.alpha; }
    /// Writes constants into the parameter store.
    PluginUpdate_API* makeUpdateApi() override { return this; }

private:
    bool isValid() override { return true; }
    void setFloatValue(int param, int sub, double value) override;
    void setAngleValue(int param, int sub, double degrees) override;
    void setIntValue(int param, int sub, int value) override;
    void setBoolValue(int param, int sub, bool value) override;
    void setEnumValue(int param, int sub, unsigned value) override;
    void setPoint2DValue(int param, int sub, double x, double y) override;
    void setColorValue(int param, int sub, double r, double g, double b) override;
    void setEnable(int /*param*/, int /*sub*/, bool /*enable*/) override {}
    void setGroupOpen(int /*param*/, int /*sub*/, bool /*open*/) override {}
    void setParamName(int /*param*/, int /*sub*/, const char* /*name*/) override {}

    [[nodiscard]] RasterInfo outputInfo() const;
    [[nodiscard]] bool read(int param, const TimeObject& time, ParameterValue& value) const;

    RasterInfo m_input;
    RasterInfo m_output;
    ParameterStore* m_parameters;
    MemoryHostSettings m_settings;
    std::function<int(long, long)> m_progress;
    std::function<void(const std::string&)> m_warning;
    PluginRaster_API* m_outputOverride = nullptr;
};

} // namespace orbel
