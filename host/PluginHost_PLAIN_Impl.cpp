#include "host/PluginHost_PLAIN_Impl.h"

#include "host/Numeric.h"
#include "host/PluginRaster_PLAIN_Impl.h"
#include "host/RasterRows.h"

#include <limits>
#include <new>

namespace orbel {

PluginRaster_API* PluginHost_PLAIN_Impl::getInputRaster(int /*layer*/) {
    return makeRaster(m_pictures.input, nullptr);
}

PluginRaster_API* PluginHost_PLAIN_Impl::getOutputRaster() {
    return makeRaster(outputInfo(), nullptr);
}

// Rows are tightly packed. Clearing what is filled next would cost as much as a copy of the frame.
PluginRaster_API* PluginHost_PLAIN_Impl::allocRaster(int width, int height, PixelType /*type*/,
                                                     int& rowBytes, int /*flags*/) {
    constexpr int largest = std::numeric_limits<std::int16_t>::max();
    RasterInfo info = outputInfo();
    rowBytes = 0;
    if (width < 1 || height < 1 || width > largest || height > largest || info.bytesPerPixel < 1) {
        return nullptr;
    }
    info.width = width;
    info.height = height;
    info.rowBytes = width * info.bytesPerPixel;
    const auto bytes = static_cast<std::size_t>(height) * static_cast<std::size_t>(info.rowBytes);
    const std::shared_ptr<std::uint8_t[]> pixels(new (std::nothrow) std::uint8_t[bytes]);
    if (pixels == nullptr) {
        return nullptr;
    }
    info.data = pixels.get();
    rowBytes = info.rowBytes;
    return makeRaster(info, pixels);
}

PluginRaster_API* PluginHost_PLAIN_Impl::allocRaster(RasterInfo* info) {
    const std::unique_ptr<RasterInfo> record(info);
    return makeRaster(
        *record, PixelOwner(firstByte(*record), [this](void* pixels) { deallocMemory(pixels); }));
}

void PluginHost_PLAIN_Impl::deallocRaster(PluginRaster_API* raster) {
    if (auto* const plain = dynamic_cast<PluginRaster_PLAIN_Impl*>(raster)) {
        plain->releasePixels();
    }
}

void PluginHost_PLAIN_Impl::getInputRasterInfo(int /*layer*/, RasterInfo* info) {
    *info = m_pictures.input;
}

void PluginHost_PLAIN_Impl::getRasterInfo(PluginRaster_API* raster, RasterInfo* info) {
    const RasterInfo* const record = raster == nullptr ? nullptr : raster->getRasterInfoBase();
    if (record != nullptr) {
        *info = *record;
    }
}

void PluginHost_PLAIN_Impl::getSourceLayerDimensions(int& width, int& height) {
    width = m_pictures.input.width;
    height = m_pictures.input.height;
}

int PluginHost_PLAIN_Impl::GetFloatValue(int param, int /*sub*/, const TimeObject& time,
                                         double& value) {
    Value answer{};
    if (!read(param, time, answer)) {
        return 1;
    }
    value = answer[0];
    return 0;
}

int PluginHost_PLAIN_Impl::GetAngleValue(int param, int sub, const TimeObject& time,
                                         double& degrees) {
    return GetFloatValue(param, sub, time, degrees);
}

int PluginHost_PLAIN_Impl::GetIntValue(int param, int sub, const TimeObject& time, int& value) {
    double number = 0.0;
    if (GetFloatValue(param, sub, time, number) != 0) {
        return 1;
    }
    value = saturateTo<int>(number);
    return 0;
}

int PluginHost_PLAIN_Impl::GetUIntValue(int param, int sub, const TimeObject& time,
                                        unsigned& value) {
    double number = 0.0;
    if (GetFloatValue(param, sub, time, number) != 0) {
        return 1;
    }
    value = saturateTo<unsigned>(number);
    return 0;
}

int PluginHost_PLAIN_Impl::GetBoolValue(int param, int sub, const TimeObject& time, bool& value) {
    int number = 0;
    if (GetIntValue(param, sub, time, number) != 0) {
        return 1;
    }
    value = number == 1;
    return 0;
}

int PluginHost_PLAIN_Impl::GetPoint2DValue(int param, int /*sub*/, const TimeObject& time,
                                           double& x, double& y) {
    Value answer{};
    if (!read(param, time, answer)) {
        return 1;
    }
    x = answer[0];
    y = answer[1];
    return 0;
}

int PluginHost_PLAIN_Impl::GetColorValue(int param, int /*sub*/, const TimeObject& time, double& r,
                                         double& g, double& b) {
    Value answer{};
    if (!read(param, time, answer)) {
        return 1;
    }
    r = answer[0];
    g = answer[1];
    b = answer[2];
    return 0;
}

} // namespace orbel
