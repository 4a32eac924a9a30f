#include "host/PluginHost_PLAIN_Impl.h"

#include "host/Numeric.h"
#include "host/PluginRaster_PLAIN_Impl.h"

namespace orbel {

PluginRaster_API* PluginHost_PLAIN_Impl::getInputRaster(int /*layer*/) {
    RasterInfo info = m_pictures.input;
    return allocRaster(&info);
}

PluginRaster_API* PluginHost_PLAIN_Impl::getOutputRaster() {
    RasterInfo info = outputInfo();
    return allocRaster(&info);
}

void PluginHost_PLAIN_Impl::deallocRaster(PluginRaster_API* raster) {
    if (auto* const plain = dynamic_cast<PluginRaster_PLAIN_Impl*>(raster)) {
        plain->releasePixels();
    }
}

double PluginHost_PLAIN_Impl::geAspectRatio(PluginRaster_API* raster) {
    const RasterInfo* const info = raster->getRasterInfoBase();
    return info == nullptr ? 1.0 : static_cast<double>(info->pixelAspect);
}

void PluginHost_PLAIN_Impl::getInputRasterInfo(int /*layer*/, RasterInfo* info) {
    *info = m_pictures.input;
}

void PluginHost_PLAIN_Impl::getOutputRasterInfo(RasterInfo* info) {
    const RasterInfo* const other =
        outputOverride() == nullptr ? nullptr : outputOverride()->getRasterInfoBase();
    *info = other == nullptr ? m_pictures.output : *other;
}

void PluginHost_PLAIN_Impl::getRasterInfo(PluginRaster_API* raster, RasterInfo* info) {
    *info = *raster->getRasterInfoBase();
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
