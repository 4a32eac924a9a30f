#pragma once

#include "doors/memory/MemoryImage.h"
#include "doors/memory/ParameterStore.h"
#include "host/PluginHost_PLAIN_Impl.h"
#include "host/PluginRaster_PLAIN_Impl.h"

#include <functional>
#include <memory>
#include <string>

namespace orbel {

/// A raster over memory described by a record.
class PluginRaster_MEMORY_Impl final : public PluginRaster_PLAIN_Impl {
public:
    /// `owner` keeps the pixels; without one they are borrowed.
    explicit PluginRaster_MEMORY_Impl(const RasterInfo& info,
                                      std::shared_ptr<const void> owner = nullptr)
        : PluginRaster_PLAIN_Impl(info, std::move(owner)) {}

    PixelType getPixelType() override;
};

/// What an in-memory render is told beside its images and parameters.
struct MemoryHostSettings {
    double frame = 0.0;        ///< the frame being rendered; fractions are allowed
    double renderScaleX = 1.0; ///< 1.0 is full resolution; lengths shrink with it
    double renderScaleY = 1.0;
    bool qualityHigh = true;            ///< nothing asks
    int ticksPerSecond = 3000;          ///< above 0
    int ticksPerFrame = 100;            ///< above 0; times are whole ticks
    bool ignoreNormalComposite = false; ///< the caller lays "Normal" over the picture itself
    AlphaHandling alpha{};              ///< how both images carry alpha
};

/// A host made of plain memory: one input and one output image, parameters from a store, C library
/// maths. Lives for one render call, on one thread. The shape to stroke hangs on it by
/// `setUserData`, as an `Orbel_UserData` that outlives the call; without one there is only
/// "Presets". Derive from it to answer single operations differently.
class PluginHost_MEMORY_Impl : public PluginHost_PLAIN_Impl, private PluginUpdate_API {
public:
    /// Images and parameters are borrowed and must outlive the host. Both images have the same size
    /// and one of the six rendered layouts, and do not overlap. The render works in the input's own
    /// pixels unless they are straight: hand out a fresh copy of the picture for every frame.
    PluginHost_MEMORY_Impl(const RasterInfo& input, const RasterInfo& output,
                           ParameterStore* parameters, const MemoryHostSettings& settings);
    virtual ~PluginHost_MEMORY_Impl() = default;

    /// Called on the rendering thread now and then during long strokes, with how many steps of how
    /// many are done; a non-zero answer aborts the render with that code.
    void setProgress(std::function<int(long, long)> progress) { m_progress = std::move(progress); }
    /// Receives the texts of warnings, on the rendering thread; without it they are dropped.
    void setWarning(std::function<void(const std::string&)> warning) {
        m_warning = std::move(warning);
    }
    /// The frame that a time in ticks stands for.
    [[nodiscard]] static double timeToFrame(const TimeObject& time) {
        return time.getTime() / time.time_step();
    }

    bool isQualityHigh() override { return m_settings.qualityHigh; }
    double getScaleX() override { return m_settings.renderScaleX; }
    double getScaleY() override { return m_settings.renderScaleY; }
    void showWarning(const char* text) override;
    int getTimeScale() override { return m_settings.ticksPerSecond; }
    int getCurrentTime() override;
    int getTimeStep() override { return m_settings.ticksPerFrame; }
    int progress(long done, long total) override;
    bool ignoreNormalComposite() override { return m_settings.ignoreNormalComposite; }
    /// Writes constants into the parameter store.
    PluginUpdate_API* makeUpdateApi() override { return this; }

protected:
    PluginRaster_API* makeRaster(const RasterInfo& info, PixelOwner owner) override;

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

    bool read(int param, const TimeObject& time, Value& value) const override;

    ParameterStore* m_parameters;
    MemoryHostSettings m_settings;
    std::function<int(long, long)> m_progress;
    std::function<void(const std::string&)> m_warning;
};

} // namespace orbel
