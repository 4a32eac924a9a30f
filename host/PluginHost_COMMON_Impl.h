#pragma once

#include "host/PluginHost.h"

namespace orbel {

/// What the doors of this program answer alike: the C library's maths, the C heap, one pointer and
/// one path per host object, 30 frames of 100 ticks a second, whole frames, no other layers, no
/// suites, no host compositing, no cancelling, copies and fills of whatever the records describe.
/// Every answer can be overridden. A door over plain memory starts from `PluginHost_PLAIN_Impl`.
class PluginHost_COMMON_Impl : public PluginHost_API {
public:
    // --- Images, as `getRasterInfo` and its like describe them ---
    using PluginHost_API::fill;
    void fillOutput() override;
    void fill(PluginRaster_API* raster) override;
    void copyInputToOutput() override;
    void copy(PluginRaster_API* source, PluginRaster_API* destination) override;
    void copy(PluginRaster_API* source, PluginRaster_API* destination, Vx_Rect* sourceRect,
              Vx_Rect* destinationRect) override;
    void setOutputRaster(PluginRaster_API* raster) override { m_outputOverride = raster; }
    void getOutputRasterInfo(RasterInfo* info) override;
    double geAspectRatio(PluginRaster_API* raster) override;
    PluginRaster_API* lockTemporalRaster(double time, bool fieldMode, bool firstFieldOdd) override;
    PluginRaster_API* checkoutLayer(int param, int flags) override;
    PluginRaster_API* checkoutLayer(int param, double time, int flags) override;

    AEHost* getAEHost() override { return nullptr; }
    AVX1Host* getAVX1Host() override { return nullptr; }
    AVX2Host* getAVX2Host() override { return nullptr; }
    FXPLUGHost* getFXPLUGHost() override { return nullptr; }
    SPARKHost* getSPARKHost() override { return nullptr; }

    // The C library's; the float overloads compute in double and round the result.
    double math_sqrt(double x) override;
    float math_sqrt(float x) override;
    double math_floor(double x) override;
    float math_floor(float x) override;
    double math_exp(double x) override;
    float math_exp(float x) override;
    double math_atan2(double y, double x) override;
    float math_atan2(float y, float x) override;
    double math_fabs(double x) override;
    float math_fabs(float x) override;
    double math_sin(double x) override;
    float math_sin(float x) override;
    double math_cos(double x) override;
    float math_cos(float x) override;
    double math_fmod(double x, double y) override;
    float math_fmod(float x, float y) override;
    double math_pow(double x, double y) override;
    float math_pow(float x, float y) override;
    float math_ceil(float x) override;
    double math_ceil(double x) override;
    float math_log(float x) override;
    double math_log(double x) override;

    int maintainEvenSize(PluginRaster_API* /*raster*/) override { return 0; }
    /// Takes the absolute value of `bytes`.
    void* allocMemory(int bytes) override;
    void* lockMemory(void* memory) override { return memory; }
    void unlockMemory(void* /*memory*/) override {}
    void deallocMemory(void* memory) override;
    void showWarning(const char* /*text*/) override {}
    void resetOutputOrigin(int /*a*/, int /*b*/, int /*c*/, int /*d*/) override {}
    bool hasGlobalSeqData() override { return true; }
    void loadDLL(const char* /*name*/) override {}
    void unloadDLL() override {}
    void* getDLL() override { return nullptr; }

    int getTimeScale() override { return 3000; }
    int getTimeStep() override { return 100; }
    int getFrameLength() override { return 30 * getTimeStep(); }
    int getLocalTimeStep() override { return getTimeStep(); }
    bool isFieldRendering() override { return false; }
    void getFullFrameInfo(double time, int height, int& fullHeight, int& step, int& phase) override;
    bool isApplication(long /*fourCC*/) override { return false; }

    void* getUserData() override { return m_userData; }
    void setUserData(void* data) override { m_userData = data; }
    std::string_view getShapeText() override { return m_shapeText; }
    /// Borrowed.
    void setShapeText(std::string_view svg) { m_shapeText = svg; }
    void getOrigin(int& x, int& y) override;
    void setOrigin(int x, int y) override;
    int acquireSuite(const char* name, int version, const char* error, void** suite) override;
    void releaseSuite(const char* name, int version, const char* error) override;
    float getShutterAngle() override { return 0.0F; }
    float getShutterPhase() override { return 0.0F; }
    int progress(long /*done*/, long /*total*/) override { return 0; }
    PluginPath_API* getPathAPI() override { return m_path; }
    void setPathAPI(PluginPath_API* path) override { m_path = path; }

    void unlockTemporalRaster(PluginRaster_API* raster) override;
    int blend(int mode, double opacity1, double opacity2, PluginRaster_API* source,
              PluginRaster_API* destination) override;
    bool doAbort() override { return false; }
    void checkinLayer(PluginRaster_API* raster) override { deallocRaster(raster); }

protected:
    PluginHost_COMMON_Impl() = default;
    PluginHost_COMMON_Impl(const PluginHost_COMMON_Impl&) = default;
    PluginHost_COMMON_Impl& operator=(const PluginHost_COMMON_Impl&) = default;
    // Always made and destroyed as its concrete type.
    ~PluginHost_COMMON_Impl() = default;

    /// Describes the host's own output, whatever stands in for it; leaves the record alone where
    /// there is none, or none of a known layout.
    virtual void describeOutput(RasterInfo* info) = 0;
    /// The raster that stands in for the output; null without one. Borrowed.
    [[nodiscard]] PluginRaster_API* outputOverride() const { return m_outputOverride; }
    // Without pixels where there is nothing to describe.
    [[nodiscard]] RasterInfo infoOf(PluginRaster_API* raster);
    [[nodiscard]] RasterInfo inputInfo();
    [[nodiscard]] RasterInfo outputInfo();

private:
    PluginRaster_API* m_outputOverride = nullptr;
    PluginPath_API* m_path = nullptr;
    void* m_userData = nullptr;
    std::string_view m_shapeText;
    int m_originX = 0;
    int m_originY = 0;
};

} // namespace orbel
