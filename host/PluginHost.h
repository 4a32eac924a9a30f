#pragma once

#include "host/AlphaHandling.h"
#include "host/Geometry.h"
#include "host/PluginPath.h"
#include "host/PluginRaster.h"
#include "host/PluginUpdate.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace orbel {

/// A complete pixel layout: order of the components and their depth. Six of the codes are rendered
/// (8 and 16 bit and float, alpha first or last); the others exist for other hosts, and a frame in
/// one of them ends with an error.
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

/// Describes an image in memory. Plain record, filled by the host, copied by value; owns nothing.
/// Four components a pixel, rows aligned for them, colours premultiplied by alpha unless the host's
/// `getAlphaHandling` says otherwise. 16-bit components use all of 0..65535; floats are 1.0 at most
/// nominally, and may lie outside.
struct RasterInfo {
    /// First byte of the top row as the render code walks it: of the last row in memory when the
    /// image is stored bottom-up. Null: there are no pixels.
    std::uint8_t* data = nullptr;
    RasterFormat pixelFormat = RF_ARGB8; ///< layout code
    std::int32_t width = 0;              ///< pixels per row, 32767 at most
    std::int32_t height = 0;             ///< rows, 32767 at most
    std::int32_t rowBytes = 0;           ///< from one row to the next; negative when bottom-up
    std::int32_t bytesPerPixel = 0;      ///< bytes per channel times 4
    float pixelAspect = 1.0F;            ///< width of a pixel by its height
    float scale = 1.0F;                  ///< always 1.0; nothing reads it
    bool hasAltLayout = false;           ///< set for the two alternative layouts (codes 19 and 20)

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

/// The host as all rendering, parameter and shape code sees it, and the whole of what a door has to
/// give. One object stands for one render call: the door makes it, calls `Render` (or asks the
/// effect something else), and lets it go; nothing of it is kept.
///
/// - **Most of it is answered already.** `PluginHost_COMMON_Impl` gives what is the same everywhere
///   and `PluginHost_PLAIN_Impl` the rest of a door whose pictures lie in memory.
/// - **Threads.** A host object is called from the thread that called `Render` and from no other,
///   under a lock of the process: two renders never overlap. What it borrows must hold that long.
/// - **Units** are the user's: percent, degrees, points as fractions of the frame with y downwards,
///   colours in 0..1. A door converts what its own host delivers, and nobody else does. Time is
///   counted in ticks: `getTimeScale` of them make a second, `getTimeStep` a frame.
/// - **Pictures** are described by a `RasterInfo` and worked on in place: straight into the output,
///   and into the input's own pixels where its alpha has to change. Rows are walked from the top.
///   A host that keeps its input for others hands out a copy.
/// - **Who owns a raster**: see `getInputRaster`.
/// - **Errors.** Operations that return an `int` give 0 for success where it says so, and 1 where
///   they only stand for a service that a host may have. Rasters and memory may be null: the frame
///   then ends with an error. An exception ends the frame as an error, too, and goes no further.
///
/// Operations stand in slot order, which binaries rely on: new ones follow the last. A body here is
/// the behaviour that a binding inherits.
class PluginHost_API {
public:
    using RasterInfo = orbel::RasterInfo;
    using RasterFormat = orbel::RasterFormat;
    using PixelType = PluginRaster_API::PixelType;

    /// The time of a parameter read. A frame number is `getTime() / time_step()`.
    class TimeObject {
    public:
        /// `time` in ticks, `step` in ticks per frame; nothing reads `extra`.
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
    /// Width of the output in pixels: of the raster that stands in for it, if there is one.
    virtual int getOutputWidth() = 0;
    /// Height of the output in pixels; see `getOutputWidth`.
    virtual int getOutputHeight() = 0;
    /// Where the output lies in a larger picture, in pixels. Not asked by this effect.
    virtual int getOutputOriginX() { return 0; }
    virtual int getOutputOriginY() { return 0; }
    /// Sets every pixel of the output, or of what stands in for it, to 0.
    virtual void fillOutput() = 0;
    /// Sets every pixel of the raster to 0; bytes between rows are left alone.
    virtual void fill(PluginRaster_API* raster) = 0;
    /// Sets the pixels inside `rect` to 0: all four edges belong to it, and it is clipped to the
    /// raster. A null rectangle stands for the whole raster.
    virtual void fill(PluginRaster_API* raster, Vx_Rect* rect);
    /// Copies the input picture to the output picture, top-left aligned as far as both reach:
    /// always to the host's own output, whatever stands in for it.
    virtual void copyInputToOutput() = 0;
    /// Copies rows top-left aligned, as far as both reach. Both rasters have the same layout.
    virtual void copy(PluginRaster_API* source, PluginRaster_API* destination) = 0;
    /// Copies the pixels inside `sourceRect`, edges included, to where `destinationRect` has its
    /// top left corner, as far as both rasters reach. Null stands for the whole raster.
    virtual void copy(PluginRaster_API* source, PluginRaster_API* destination, Vx_Rect* sourceRect,
                      Vx_Rect* destinationRect) = 0;

    // --- Rasters. Null means that the host cannot supply one: the frame ends with an error. ---
    //
    // One rule for all of them, whether made here or by `checkoutLayer` and `lockTemporalRaster`:
    // the raster object belongs to whoever asked for it, and so do pixels that were made for it.
    // `deallocRaster` gives back what stands behind it (made pixels are freed, a host's picture is
    // left as it is); after that the object is good for nothing but `delete`, which is the
    // caller's to do. Both come before the host object goes. `PluginRasterProxy` does them in turn.

    /// A raster over the input picture; there is no other layer than 0.
    virtual PluginRaster_API* getInputRaster(int layer) = 0;
    /// A raster over the output picture, or over the pixels of what stands in for it.
    virtual PluginRaster_API* getOutputRaster() = 0;
    /// A raster with new pixels, not initialised, in the output's layout and pixel aspect ratio.
    /// `type` and `flags` are not consulted; `rowBytes` is written and says nothing of use. Null
    /// for a size that cannot be.
    virtual PluginRaster_API* allocRaster(int width, int height, PixelType type, int& rowBytes,
                                          int flags) = 0;
    /// A raster over pixels that are there already. Takes the record, made with `new`, and its
    /// pixels, made with `allocMemory` (or null).
    virtual PluginRaster_API* allocRaster(RasterInfo* info) = 0;
    /// Gives back what stands behind a raster of this host; see above. Null is allowed.
    virtual void deallocRaster(PluginRaster_API* raster) = 0;

    // --- Quality and scale ---
    /// False while a host wants speed. Not asked by this effect.
    virtual bool isQualityHigh() = 0;
    /// Render scale, 1.0 at full resolution.
    virtual double getScaleX() = 0;
    /// As `getScaleX`; halved while rendering a field.
    virtual double getScaleY() = 0;
    /// Width of a pixel by its height, as the raster's own record says; 1.0 for a raster without
    /// one (the misspelt name is meant).
    virtual double geAspectRatio(PluginRaster_API* raster) = 0;

    // --- Native handles. A door answers from its own accessor and null from all the others, so
    // that shared code can tell which host it runs in. ---
    virtual AEHost* getAEHost() = 0;
    virtual AVX1Host* getAVX1Host() = 0;
    virtual AVX2Host* getAVX2Host() = 0;
    virtual FXPLUGHost* getFXPLUGHost() = 0;
    virtual SPARKHost* getSPARKHost() = 0;
    virtual OFXHost* getOFXHost() { return nullptr; }
    virtual GASKETHost* getGASKETHost() { return nullptr; }
    virtual RTFXHost* getRTFXHost() { return nullptr; }
    virtual VEGASHost* getVEGASHost() { return nullptr; }

    // --- Raster descriptions. A picture that is missing, or whose layout is unknown, leaves the
    // record alone. ---
    virtual void getInputRasterInfo(int layer, RasterInfo* info) = 0;
    /// Of what stands in for the output, if anything does.
    virtual void getOutputRasterInfo(RasterInfo* info) = 0;
    virtual void getRasterInfo(PluginRaster_API* raster, RasterInfo* info) = 0;

    // --- Maths: the plain library functions of these names. The float overloads compute in double
    // and round the result: pictures are the same to the byte only then. ---
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
    /// A block of memory, not initialised, for as many bytes as the absolute value says, aligned
    /// for everything. Null when there is none.
    virtual void* allocMemory(int bytes) = 0;
    /// The address of a block until `unlockMemory`; null when it cannot be had.
    virtual void* lockMemory(void* memory) = 0;
    virtual void unlockMemory(void* memory) = 0;
    /// Frees a block; null is allowed.
    virtual void deallocMemory(void* memory) = 0;
    /// A message for the user, UTF-8, such as what is wrong with a shape file.
    virtual void showWarning(const char* text) = 0;
    virtual void resetOutputOrigin(int a, int b, int c, int d) = 0;
    virtual bool hasGlobalSeqData() = 0;
    virtual void loadDLL(const char* name) = 0;
    virtual void unloadDLL() = 0;
    virtual void* getDLL() = 0;
    /// Size of the input in pixels.
    virtual void getSourceLayerDimensions(int& width, int& height) = 0;

    // --- Time ---
    /// Ticks per second.
    virtual int getTimeScale() = 0;
    /// The frame being rendered, in ticks: `getTimeStep` times the frame, truncated towards 0.
    virtual int getCurrentTime() = 0;
    /// Ticks per frame, above 0.
    virtual int getTimeStep() = 0;
    virtual int getFrameLength() = 0;
    /// As `getTimeStep`.
    virtual int getLocalTimeStep() = 0;

    // --- Host identity and per-host data ---
    /// Whether the application of this four-character code runs the effect.
    virtual bool isApplication(long fourCC) = 0;
    /// One opaque pointer per host object; doors without a project of their own hang an
    /// `Orbel_UserData` on it. Never freed by the effect.
    virtual void* getUserData() = 0;
    virtual void setUserData(void* data) = 0;
    /// What `setOrigin` was told last, at first 0 and 0.
    virtual void getOrigin(int& x, int& y) = 0;
    virtual void setOrigin(int x, int y) = 0;
    virtual int acquireSuite(const char* name, int version, const char* error, void** suite) = 0;
    virtual void releaseSuite(const char* name, int version, const char* error) = 0;
    virtual float getShutterAngle() = 0;
    virtual float getShutterPhase() = 0;

    // --- Parameter reads: `param` is an identifier of `params/ParameterTable.h`, `sub` 0, the time
    // any, between frames too. 0 for success. What the host writes is taken whatever it answers,
    // and what it does not write stays as it was: a host need not know every parameter. ---
    virtual int GetFixedFloatValue(int param, int sub, const TimeObject& time, double& value) {
        return GetFloatValue(param, sub, time, value);
    }
    /// In the unit of the table, mostly percent or pixels.
    virtual int GetFloatValue(int param, int sub, const TimeObject& time, double& value) = 0;
    /// Degrees.
    virtual int GetAngleValue(int param, int sub, const TimeObject& time, double& degrees) = 0;
    /// A menu's entry, counted from 0.
    virtual int GetIntValue(int param, int sub, const TimeObject& time, int& value) = 0;
    virtual int GetUIntValue(int param, int sub, const TimeObject& time, unsigned& value) = 0;
    /// True when the host's value is exactly 1.
    virtual int GetBoolValue(int param, int sub, const TimeObject& time, bool& value) = 0;
    /// Fractions of the frame from its top left corner.
    virtual int GetPoint2DValue(int param, int sub, const TimeObject& time, double& x,
                                double& y) = 0;
    /// 0..1 each.
    virtual int GetColorValue(int param, int sub, const TimeObject& time, double& r, double& g,
                              double& b) = 0;
    /// Asked often during long strokes, `done` of `total` along an outline. Non-zero when the
    /// render must stop; the value travels up as the frame's result.
    virtual int progress(long done, long total) = 0;

    // --- The path being stroked. Borrowed: the host object does not own it. ---
    virtual PluginPath_API* getPathAPI() = 0;
    virtual void setPathAPI(PluginPath_API* path) = 0;

    // --- Images at other times, host compositing, fields. This effect asks for none of them. ---
    /// The input at another frame; null where the host has none.
    virtual PluginRaster_API* lockTemporalRaster(double time, bool fieldMode,
                                                 bool firstFieldOdd) = 0;
    /// Gives such a raster back and deletes the object: the one exception to the rule above.
    virtual void unlockTemporalRaster(PluginRaster_API* raster) = 0;
    virtual int blend(int mode, double opacity1, double opacity2, PluginRaster_API* source,
                      PluginRaster_API* destination) = 0;
    /// Whether the output holds every second row of a frame only.
    virtual bool isFieldRendering() = 0;
    virtual void getFullFrameInfo(double time, int height, int& fullHeight, int& step,
                                  int& phase) = 0;
    /// Whether the user cancelled.
    virtual bool doAbort() = 0;
    /// The picture of a layer parameter, now or at a time in frames; null where there is none.
    virtual PluginRaster_API* checkoutLayer(int param, int flags) = 0;
    virtual PluginRaster_API* checkoutLayer(int param, double time, int flags) = 0;
    /// Gives a layer's picture back, as `deallocRaster` does.
    virtual void checkinLayer(PluginRaster_API* raster) = 0;

    // --- Optional services: a door overrides what its host has ---
    virtual int setCursor(long /*cursor*/) { return 1; }
    virtual int forceUIUpdate() { return 1; }
    virtual int getAppColor(int /*which*/, int& /*r*/, int& /*g*/, int& /*b*/) { return 1; }
    virtual int getMousePos(long& /*x*/, long& /*y*/) { return 1; }
    virtual int getHostVersionNum(int& /*minor*/, int& /*major*/) { return 1; }
    /// Lets another raster stand in for the output; null ends that. Borrowed.
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
    /// From now on row 0 of every picture is its top one.
    virtual void dependOnOrigin() {}
    [[nodiscard]] virtual double getHeightScale() const { return 1.0; }
    /// Whether the host has a scene camera that the effect can take its view from.
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
    /// Null: parameter writes are impossible. Owned by the host.
    virtual PluginUpdate_API* makeUpdateApi() { return nullptr; }

    // --- Behind the slots of old ---
    /// How the input carries its alpha and how the output is to; asked once per frame.
    virtual AlphaHandling getAlphaHandling() { return {}; }
    /// The contents of an SVG file, drawn where the instance's path names none that can be read;
    /// empty without. Borrowed until the render ends, and never part of a project.
    virtual std::string_view getShapeText() { return {}; }

protected:
    PluginHost_API() = default;
    PluginHost_API(const PluginHost_API&) = default;
    PluginHost_API& operator=(const PluginHost_API&) = default;
    // Always made and destroyed as its concrete type.
    ~PluginHost_API() = default;
};

} // namespace orbel
