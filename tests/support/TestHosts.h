#pragma once

#include "doors/memory/PluginHost_MEMORY_Impl.h"
#include "host/FxPlugHost.h"
#include "host/ParameterReader.h"
#include "params/InstanceData.h"

#include <cmath>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace orbel::test {

/// A host without pictures: maths, time and parameters.
class BareHost : public PluginHost_MEMORY_Impl {
public:
    explicit BareHost(const MemoryHostSettings& settings = {})
        : PluginHost_MEMORY_Impl(RasterInfo{}, RasterInfo{}, &parameters, settings) {}
    ParameterStore parameters;
};

/// A raster that cannot say what it is over.
class SilentRaster final : public PluginRaster_API {
public:
    int getWidth() override { return 4; }
    int getHeight() override { return 4; }
    PixelType getPixelType() override { return PIXEL_TYPE_8; }
    int getRowBytes() override { return 16; }
    AERaster* getAERaster() override { return nullptr; }
    AVX1Raster* getAVX1Raster() override { return nullptr; }
    AVX2Raster* getAVX2Raster() override { return nullptr; }
    FXPLUGRaster* getFXPLUGRaster() override { return nullptr; }
    SPARKRaster* getSPARKRaster() override { return nullptr; }
    void setHost(PluginHost_API*) override {}
};

/// A host that keeps book of its rasters and warnings and can be told to fail.
class FailingHost : public PluginHost_MEMORY_Impl {
public:
    FailingHost(const RasterInfo& input, const RasterInfo& output, ParameterStore* parameters,
                const MemoryHostSettings& settings)
        : PluginHost_MEMORY_Impl(input, output, parameters, settings) {
        setWarning([this](const std::string& text) { warnings.push_back(text); });
        setProgress([this](long, long) { return ++progressCalls >= abortAtCall ? 42 : 0; });
    }

    bool inputMissing = false;
    bool outputMissing = false;
    bool allocFails = false;
    bool memoryFails = false;
    bool lockFails = false;
    bool recordsMissing = false; ///< of the rasters handed out
    bool mathsThrows = false;
    long abortAtCall = 1L << 40; ///< `progress` answers 42 from this call on
    long progressCalls = 0;
    int allocated = 0;
    std::set<PluginRaster_API*> held; ///< handed out and not yet returned
    std::vector<std::string> warnings;

    PluginRaster_API* getInputRaster(int layer) override {
        return inputMissing ? nullptr : hold(PluginHost_MEMORY_Impl::getInputRaster(layer));
    }
    PluginRaster_API* getOutputRaster() override {
        return outputMissing ? nullptr : hold(PluginHost_MEMORY_Impl::getOutputRaster());
    }
    using PluginHost_MEMORY_Impl::allocRaster;
    PluginRaster_API* allocRaster(int width, int height, PixelType type, int& rowBytes,
                                  int flags) override {
        ++allocated;
        return allocFails ? nullptr
                          : hold(PluginHost_MEMORY_Impl::allocRaster(width, height, type, rowBytes,
                                                                     flags));
    }
    void deallocRaster(PluginRaster_API* raster) override {
        held.erase(raster);
        PluginHost_MEMORY_Impl::deallocRaster(raster);
    }
    void* allocMemory(int bytes) override {
        return memoryFails ? nullptr : PluginHost_MEMORY_Impl::allocMemory(bytes);
    }
    void* lockMemory(void* memory) override {
        return lockFails ? nullptr : PluginHost_MEMORY_Impl::lockMemory(memory);
    }
    using PluginHost_MEMORY_Impl::math_atan2;
    double math_atan2(double y, double x) override {
        return mathsThrows ? throw std::runtime_error("maths") : std::atan2(y, x);
    }

private:
    PluginRaster_API* makeRaster(const RasterInfo& info, PixelOwner owner) override {
        return recordsMissing ? new SilentRaster
                              : PluginHost_MEMORY_Impl::makeRaster(info, std::move(owner));
    }
    PluginRaster_API* hold(PluginRaster_API* raster) {
        held.insert(raster);
        return raster;
    }
};

/// Whether no read of a parameter is answered, and every one leaves its output alone.
[[nodiscard]] inline bool answersNothing(PluginHost_API& host, int param) {
    const PluginHost_API::TimeObject now(0, 100, 0);
    double x = 1;
    double y = 2;
    double z = 3;
    int i = 4;
    unsigned u = 5;
    bool b = true;
    const bool silent =
        host.GetFloatValue(param, 0, now, x) != 0 && host.GetAngleValue(param, 0, now, x) != 0 &&
        host.GetIntValue(param, 0, now, i) != 0 && host.GetUIntValue(param, 0, now, u) != 0 &&
        host.GetBoolValue(param, 0, now, b) != 0 &&
        host.GetPoint2DValue(param, 0, now, x, y) != 0 &&
        host.GetColorValue(param, 0, now, x, y, z) != 0;
    return silent && x == 1 && y == 2 && z == 3 && i == 4 && u == 5 && b;
}

/// Takes every write and does nothing; derive to look at some.
class SilentUpdate : public PluginUpdate_API {
public:
    bool isValid() override { return true; }
    void setFloatValue(int, int, double) override {}
    void setAngleValue(int, int, double) override {}
    void setIntValue(int, int, int) override {}
    void setBoolValue(int, int, bool) override {}
    void setEnumValue(int, int, unsigned) override {}
    void setPoint2DValue(int, int, double, double) override {}
    void setColorValue(int, int, double, double, double) override {}
    void setEnable(int, int, bool) override {}
    void setGroupOpen(int, int, bool) override {}
    void setParamName(int, int, const char*) override {}

protected:
    ~SilentUpdate() = default;
};

/// The record of a host with selectors of its own; answers what it is told.
class FakeFxPlugHost final : public FXPLUGHost, private ParameterReader {
public:
    std::vector<int> asked; ///< identifiers in the order in which they were read
    std::string path;
    int preset = 0;
    int cameraStatus = 0;

    ParameterReader& reader() override { return *this; }
    int readPreset() override { return preset; }
    void readShapeFile(Orbel_UserData* data) override { setUserDataPath(data, path.c_str()); }
    void writeShapeFile(const Orbel_UserData* data) override { path = data->path; }
    int cameraMatrix(long, long, Vx_Matrix4*, double*) override { return cameraStatus; }

private:
    void readFloat(int param, double& value) override { value = ask(param); }
    void readAngle(int param, double& degrees) override { degrees = ask(param); }
    void readToggle(int param, bool& value) override { value = ask(param) > 0; }
    void readMenu(int param, int& index) override { index = static_cast<int>(ask(param)); }
    void readColor(int param, double& red, double& green, double& blue) override {
        red = ask(param);
        green = red + 0.25;
        blue = red + 0.5;
    }
    void readPoint(int param, double& x, double& y) override {
        x = ask(param);
        y = x + 0.25;
    }
    double ask(int param) {
        asked.push_back(param);
        return param;
    }
};

} // namespace orbel::test
