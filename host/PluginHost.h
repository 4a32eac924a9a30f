#pragma once

#include "host/AlphaHandling.h"
#include "host/Geometry.h"
#include "host/PluginPath.h"
#include "host/PluginRaster.h"
#include "host/PluginUpdate.h"

#include <cstddef>
#include <cstdint>

namespace orbel {

/// A complete pixel layout. Six of the codes are rendered; the others exist for other hosts.
enum RasterFormat : std::int32_t {
    RF_ARGB8 = 0,
    RF_BGRA8 = 1,
    RF_RGBA8 = 2,
    RF_ARGB15 = 3,
    RF_BGRA15 = 4,
    RF_ARGB14 = 5,
    RF_BGRA14 = 6,
    RF_ARGB16 = 7,
    RF_RGBA16 = 8,
    RF_ARGB32F = 9,
    RF_RGBA32F = 10,
    RF_BGRA32F = 11,
    RF_BGRA8_12 = 12,
    RF_BGRA15_13 = 13,
    RF_BGRA32F_14 = 14,
    RF_BGRA8_15 = 15,
    RF_BGRA8_16 = 16,
    RF_BGRA14_17 = 17,
    RF_BGRA14_18 = 18,
    RF_ARGB8_ALT = 19,
    RF_ARGB32F_ALT = 20,
};

/// Describes an image in memory. Plain record, filled by the host, copied by value.
struct RasterInfo {
    std::uint8_t* data = nullptr;        ///< first byte of the top row as the render code walks it
    RasterFormat pixelFormat = RF_ARGB8; ///< layout code
    std::int32_t width = 0;              ///< pixels per row
    std::int32_t height = 0;             ///< rows
    std::int32_t rowBytes = 0;           ///< from one row to the next; negative when bottom-up
    std::int32_t bytesPerPixel = 0;      ///< bytes per channel times 4
    float pixelAspect = 1.0F;            ///< pixel aspect ratio
    float scale = 1.0F;
    bool hasAltLayout = false; ///< set for the two alternative layouts (codes 19 and 20)

    /// First byte of row `y`.
    [[nodiscard]] std::uint8_t* row(int y) const {
        return data + static_cast<std::ptrdiff_t>(y) * rowBytes;
    }
};

// Native host handles; see the raster handles for the rule.
struct AEHost;
struct AVX1Host;
struct AVX2Host;
struct FXPLUGHost;
struct SPARKHost;
struct OFXHost;
struct GASKETHost;
struct RTFXHost;
struct VEGASHost;

/// The host as all rendering, parameter and shape code sees it. Operations stand in slot order; a
/// body here is the behaviour that a binding inherits. Unless said otherwise every operation is
/// called on the render thread with the process-wide lock held. Units are the user's: percent,
/// degrees, points normalised to 0..1 with y downwards; time in ticks.
class PluginHost_API {
public:
    using RasterInfo = orbel::RasterInfo;
    using RasterFormat = orbel::RasterFormat;
    using PixelType = PluginRaster_API::PixelType;

    /// The time of a parameter read.
    class TimeObject {
    public:
        TimeObject(std::int32_t time, std::int32_t step, std::int32_t extra)
            : m_time(time), m_step(step), m_extra(extra) {}
        /// Replaces the time, in ticks.
        void cur_time(std::int32_t time) { m_time = time; }
        /// Ticks, as a double.
        [[nodiscard]] double getTime() const { return m_time; }
        /// Ticks per frame.
        [[nodiscard]] std::int32_t time_step() const { return m_step; }

    private:
        std::int32_t m_time;
        std::int32_t m_step;
        [[maybe_unused]] std::int32_t m_extra; // stored, never read
    };

    // --- Output geometry and whole-image operations ---
    virtual int getOutputWidth() = 0;
    virtual int getOutputHeight() = 0;
    virtual int getOutputOriginX() { return 0; }
    virtual int getOutputOriginY() { return 0; }
    /// Sets every byte of the output to 0.
    virtual void fillOutput() = 0;
    /// Sets every byte of the raster to 0.
    virtual void fill(PluginRaster_API* raster) = 0;
    /// Sets the pixels inside `rect` (right and bottom exclusive, clipped to the raster) to 0; a
    /// null rectangle stands for the whole raster.
    virtual void fill(PluginRaster_API* raster, Vx_Rect* rect);
    virtual void copyInputToOutput() = 0;
    /// Copies rows top-left aligned, as far as both reach.
    virtual void copy(PluginRaster_API* source, PluginRaster_API* destination) = 0;
    virtual void copy(PluginRaster_API* source, PluginRaster_API* destination, Vx_Rect* sourceRect,
                      Vx_Rect* destinationRect) = 0;

    // --- Rasters. Null means that the host cannot supply one. ---
    /// Owned by the caller until `deallocRaster`.
    virtual PluginRaster_API* getInputRaster(int layer) = 0;
    virtual PluginRaster_API* getOutputRaster() = 0;
    virtual PluginRaster_API* allocRaster(int width, int height, PixelType type, int& rowBytes,
                                          int flags) = 0;
    /// Wraps memory described by the record.
    virtual PluginRaster_API* allocRaster(RasterInfo* info) = 0;
    virtual void deallocRaster(PluginRaster_API* raster) = 0;

    // --- Quality and scale ---
    virtual bool isQualityHigh() = 0;
    /// Render scale, 1.0 at full resolution.
    virtual double getScaleX() = 0;
    /// As `getScaleX`; halved while rendering a field.
    virtual double getScaleY() = 0;
    /// Pixel aspect ratio of the raster (the misspelt name is meant).
    virtual double geAspectRatio(PluginRaster_API* raster) = 0;

    // --- Native handles ---
    virtual AEHost* getAEHost() = 0;
    virtual AVX1Host* getAVX1Host() = 0;
    virtual AVX2Host* getAVX2Host() = 0;
    virtual FXPLUGHost* getFXPLUGHost() = 0;
    virtual SPARKHost* getSPARKHost() = 0;
    virtual OFXHost* getOFXHost() { return nullptr; }
    virtual GASKETHost* getGASKETHost() { return nullptr; }
    virtual RTFXHost* getRTFXHost() { return nullptr; }
    virtual VEGASHost* getVEGASHost() { return nullptr; }

    // --- Raster descriptions ---
    virtual void getInputRasterInfo(int layer, RasterInfo* info) = 0;
    virtual void getOutputRasterInfo(RasterInfo* info) = 0;
    virtual void getRasterInfo(PluginRaster_API* raster, RasterInfo* info) = 0;

    // --- Maths: the plain library functions of these names ---
    virtual double math_sqrt(double x) = 0;
    virtual float math_sqrt(float x) = 0;
    virtual double math_floor(double x) = 0;
    virtual float math_floor(float x) = 0;
    virtual double math_exp(double x) = 0;
    virtual float math_exp(float x) = 0;
    virtual double math_atan2(double y, double x) = 0;
    virtual float math_atan2(float y, float x) = 0;
    virtual double math_fabs(double x) = 0;
    virtual float math_fabs(float x) = 0;
    virtual double math_sin(double x) = 0;
    virtual float math_sin(float x) = 0;
    virtual double math_cos(double x) = 0;
    virtual float math_cos(float x) = 0;
    virtual double math_fmod(double x, double y) = 0;
    virtual float math_fmod(float x, float y) = 0;
    virtual double math_pow(double x, double y) = 0;
    virtual float math_pow(float x, float y) = 0;
    virtual float math_ceil(float x) = 0;
    virtual double math_ceil(double x) = 0;
    virtual float math_log(float x) = 0;
    virtual double math_log(double x) = 0;

    // --- Platform services ---
    virtual int maintainEvenSize(PluginRaster_API* raster) = 0;
    /// A host memory block; lock and unlock may be no-ops. Null when there is no memory.
    virtual void* allocMemory(int bytes) = 0;
    virtual void* lockMemory(void* memory) = 0;
    virtual void unlockMemory(void* memory) = 0;
    virtual void deallocMemory(void* memory) = 0;
    virtual void showWarning(const char* text) = 0;
    virtual void resetOutputOrigin(int a, int b, int c, int d) = 0;
    virtual bool hasGlobalSeqData() = 0;
    virtual void loadDLL(const char* name) = 0;
    virtual void unloadDLL() = 0;
    virtual void* getDLL() = 0;
    virtual void getSourceLayerDimensions(int& width, int& height) = 0;

    // --- Time ---
    /// Ticks per second.
    virtual int getTimeScale() = 0;
    /// Now, in ticks.
    virtual int getCurrentTime() = 0;
    /// Ticks per frame.
    virtual int getTimeStep() = 0;
    virtual int getFrameLength() = 0;
    virtual int getLocalTimeStep() = 0;

    // --- Host identity and per-host data ---
    virtual bool isApplication(long fourCC) = 0;
    /// One opaque pointer per host object; doors without a project of their own hang an
    /// `Orbel_UserData` on it. Never freed by the effect.
    virtual void* getUserData() = 0;
    virtual void setUserData(void* data) = 0;
    virtual void getOrigin(int& x, int& y) = 0;
    virtual void setOrigin(int x, int y) = 0;
    virtual int acquireSuite(const char* name, int version, const char* error, void** suite) = 0;
    virtual void releaseSuite(const char* name, int version, const char* error) = 0;
    virtual float getShutterAngle() = 0;
    virtual float getShutterPhase() = 0;

    // --- Parameter reads. A read that the host cannot answer leaves the output alone. ---
    virtual int GetFixedFloatValue(int param, int sub, const TimeObject& time, double& value) {
        return GetFloatValue(param, sub, time, value);
    }
    virtual int GetFloatValue(int param, int sub, const TimeObject& time, double& value) = 0;
    /// Degrees.
    virtual int GetAngleValue(int param, int sub, const TimeObject& time, double& degrees) = 0;
    virtual int GetIntValue(int param, int sub, const TimeObject& time, int& value) = 0;
    virtual int GetUIntValue(int param, int sub, const TimeObject& time, unsigned& value) = 0;
    virtual int GetBoolValue(int param, int sub, const TimeObject& time, bool& value) = 0;
    virtual int GetPoint2DValue(int param, int sub, const TimeObject& time, double& x,
                                double& y) = 0;
    virtual int GetColorValue(int param, int sub, const TimeObject& time, double& r, double& g,
                              double& b) = 0;
    /// Non-zero when the render must stop; the value travels up as the frame's result.
    virtual int progress(long done, long total) = 0;

    // --- The path being stroked. Borrowed: the host object does not own it. ---
    virtual PluginPath_API* getPathAPI() = 0;
    virtual void setPathAPI(PluginPath_API* path) = 0;

    // --- Images at other times, host compositing, fields ---
    virtual PluginRaster_API* lockTemporalRaster(double time, bool fieldMode,
                                                 bool firstFieldOdd) = 0;
    virtual void unlockTemporalRaster(PluginRaster_API* raster) = 0;
    virtual int blend(int mode, double opacity1, double opacity2, PluginRaster_API* source,
                      PluginRaster_API* destination) = 0;
    virtual bool isFieldRendering() = 0;
    virtual void getFullFrameInfo(double time, int height, int& fullHeight, int& step,
                                  int& phase) = 0;
    virtual bool doAbort() = 0;
    virtual PluginRaster_API* checkoutLayer(int param, int flags) = 0;
    virtual PluginRaster_API* checkoutLayer(int param, double time, int flags) = 0;
    virtual void checkinLayer(PluginRaster_API* raster) = 0;

    // --- Optional services ---
    virtual int setCursor(long /*cursor*/) { return 1; }
    virtual int forceUIUpdate() { return 1; }
    virtual int getAppColor(int /*which*/, int& /*r*/, int& /*g*/, int& /*b*/) { return 1; }
    virtual int getMousePos(long& /*x*/, long& /*y*/) { return 1; }
    virtual int getHostVersionNum(int& /*minor*/, int& /*major*/) { return 1; }
    virtual void setOutputRaster(PluginRaster_API* raster) = 0;
    virtual int transformWorld(PluginRaster_API* /*source*/, Vx_FloatMatrix* /*matrix*/,
                               Vx_Rect* /*rect*/, PluginRaster_API* /*destination*/) {
        return 1;
    }
    virtual int getFloatColor(int /*param*/, int /*sub*/, double* /*r*/, double* /*g*/,
                              double* /*b*/, TimeObject* /*time*/) {
        return 1;
    }
    virtual void showAboutBox(int /*kind*/, void* /*a*/, void* /*b*/, const char* /*title*/,
                              const char* /*text*/) {}
    virtual void dependOnOrigin() {}
    [[nodiscard]] virtual double getHeightScale() const { return 1.0; }
    virtual bool hasCamera() { return false; }
    virtual int getLayerSize(int /*layer*/, int /*which*/, float& /*width*/, float& /*height*/) {
        return 1;
    }
    virtual int setOutputSize(int /*width*/, int /*height*/) { return 1; }
    virtual int getFrameIncrement() { return 1; }
    virtual int getFPS(float& /*fps*/) { return 0; }
    virtual void refreshUi() {}
    virtual void SetFloatValue(int /*param*/, int /*sub*/, double& /*value*/) {}
    virtual void SetPoint2DValue(int /*param*/, int /*sub*/, double /*x*/, double /*y*/) {}
    virtual void SetAngleValue(int /*param*/, int /*sub*/, double& /*degrees*/) {}
    virtual void getParamTriggerChangedEvent(int& param, int& sub) {
        param = -1;
        sub = -1;
    }
    virtual void setEnablePropertyIndex(int /*index*/, bool /*enable*/) {}
    /// True when the host lays the effect over the picture itself, so "Normal" means the layer
    /// alone.
    virtual bool ignoreNormalComposite() { return false; }
    /// How the input carries its alpha and how the output is to; asked once per frame.
    virtual AlphaHandling getAlphaHandling() { return {}; }
    /// Null: parameter writes are impossible. Owned by the host.
    virtual PluginUpdate_API* makeUpdateApi() { return nullptr; }

protected:
    PluginHost_API() = default;
    PluginHost_API(const PluginHost_API&) = default;
    PluginHost_API& operator=(const PluginHost_API&) = default;
    // Always made and destroyed as its concrete type.
    ~PluginHost_API() = default;
};

} // namespace orbel
