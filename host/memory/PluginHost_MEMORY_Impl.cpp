#include "host/memory/PluginHost_MEMORY_Impl.h"

#include "host/Numeric.h"
#include "host/RasterRows.h"
#include "pixel/RasterFormats.h"

#include <new>
#include <stdexcept>

namespace orbel {

PluginRaster_API::PixelType PluginRaster_MEMORY_Impl::getPixelType() {
    return convertToPixelType(m_info.pixelFormat);
}

void PluginRaster_MEMORY_Impl::releasePixels() {
    m_image = MemoryImage();
    m_info = RasterInfo();
}

PluginHost_MEMORY_Impl::PluginHost_MEMORY_Impl(const RasterInfo& input, const RasterInfo& output,
                                               ParameterStore* parameters,
                                               const MemoryHostSettings& settings)
    : m_input(input), m_output(output), m_parameters(parameters), m_settings(settings) {}

RasterInfo PluginHost_MEMORY_Impl::outputInfo() const {
    const RasterInfo* const info =
        m_outputOverride == nullptr ? nullptr : m_outputOverride->getRasterInfoBase();
    return info == nullptr ? m_output : *info;
}

void PluginHost_MEMORY_Impl::fillOutput() {
    clearRows(outputInfo());
}

void PluginHost_MEMORY_Impl::fill(PluginRaster_API* raster) {
    clearRows(*raster->getRasterInfoBase());
}

void PluginHost_MEMORY_Impl::copyInputToOutput() {
    copyRows(m_input, outputInfo());
}

void PluginHost_MEMORY_Impl::copy(PluginRaster_API* source, PluginRaster_API* destination) {
    copyRows(*source->getRasterInfoBase(), *destination->getRasterInfoBase());
}

void PluginHost_MEMORY_Impl::copy(PluginRaster_API* source, PluginRaster_API* destination,
                                  Vx_Rect* sourceRect, Vx_Rect* destinationRect) {
    copyRows(croppedTo(*source->getRasterInfoBase(), *sourceRect),
             croppedTo(*destination->getRasterInfoBase(), *destinationRect));
}

PluginRaster_API* PluginHost_MEMORY_Impl::getInputRaster(int /*layer*/) {
    return new PluginRaster_MEMORY_Impl(m_input);
}

PluginRaster_API* PluginHost_MEMORY_Impl::getOutputRaster() {
    return new PluginRaster_MEMORY_Impl(outputInfo());
}

PluginRaster_API* PluginHost_MEMORY_Impl::allocRaster(int width, int height, PixelType /*type*/,
                                                      int& rowBytes, int /*flags*/) {
    try {
        // Clearing what is filled next would cost as much as a copy of the frame.
        MemoryImage image(width, height, outputInfo().pixelFormat, RowLayout{},
                          NewPixels::Undefined);
        image.setPixelAspect(outputInfo().pixelAspect);
        rowBytes = image.info().rowBytes;
        return new PluginRaster_MEMORY_Impl(std::move(image));
    } catch (const std::bad_alloc&) {
        return nullptr;
    } catch (const std::invalid_argument&) {
        return nullptr;
    }
}

PluginRaster_API* PluginHost_MEMORY_Impl::allocRaster(RasterInfo* info) {
    return new PluginRaster_MEMORY_Impl(*info);
}

void PluginHost_MEMORY_Impl::deallocRaster(PluginRaster_API* raster) {
    if (auto* const memory = dynamic_cast<PluginRaster_MEMORY_Impl*>(raster)) {
        memory->releasePixels();
    }
}

double PluginHost_MEMORY_Impl::geAspectRatio(PluginRaster_API* raster) {
    const RasterInfo* const info = raster->getRasterInfoBase();
    return info == nullptr ? 1.0 : static_cast<double>(info->pixelAspect);
}

void PluginHost_MEMORY_Impl::getInputRasterInfo(int /*layer*/, RasterInfo* info) {
    *info = m_input;
}

void PluginHost_MEMORY_Impl::getOutputRasterInfo(RasterInfo* info) {
    *info = outputInfo();
}

void PluginHost_MEMORY_Impl::getRasterInfo(PluginRaster_API* raster, RasterInfo* info) {
    *info = *raster->getRasterInfoBase();
}

void PluginHost_MEMORY_Impl::showWarning(const char* text) {
    if (m_warning) {
        m_warning(text);
    }
}

void PluginHost_MEMORY_Impl::getSourceLayerDimensions(int& width, int& height) {
    width = m_input.width;
    height = m_input.height;
}

int PluginHost_MEMORY_Impl::getCurrentTime() {
    return saturateTo<int>(m_settings.ticksPerFrame * m_settings.frame);
}

bool PluginHost_MEMORY_Impl::read(int param, const TimeObject& time, ParameterValue& value) const {
    return m_parameters->evaluate(param, timeToFrame(time), value);
}

int PluginHost_MEMORY_Impl::GetFloatValue(int param, int /*sub*/, const TimeObject& time,
                                          double& value) {
    ParameterValue read{};
    if (!this->read(param, time, read)) {
        return 1;
    }
    value = read[0];
    return 0;
}

int PluginHost_MEMORY_Impl::GetAngleValue(int param, int sub, const TimeObject& time,
                                          double& degrees) {
    return GetFloatValue(param, sub, time, degrees);
}

int PluginHost_MEMORY_Impl::GetIntValue(int param, int sub, const TimeObject& time, int& value) {
    double number = 0.0;
    if (GetFloatValue(param, sub, time, number) != 0) {
        return 1;
    }
    value = saturateTo<int>(number);
    return 0;
}

int PluginHost_MEMORY_Impl::GetUIntValue(int param, int sub, const TimeObject& time,
                                         unsigned& value) {
    double number = 0.0;
    if (GetFloatValue(param, sub, time, number) != 0) {
        return 1;
    }
    value = saturateTo<unsigned>(number);
    return 0;
}

int PluginHost_MEMORY_Impl::GetBoolValue(int param, int sub, const TimeObject& time, bool& value) {
    int number = 0;
    if (GetIntValue(param, sub, time, number) != 0) {
        return 1;
    }
    value = number == 1;
    return 0;
}

int PluginHost_MEMORY_Impl::GetPoint2DValue(int param, int /*sub*/, const TimeObject& time,
                                            double& x, double& y) {
    ParameterValue read{};
    if (!this->read(param, time, read)) {
        return 1;
    }
    x = read[0];
    y = read[1];
    return 0;
}

int PluginHost_MEMORY_Impl::GetColorValue(int param, int /*sub*/, const TimeObject& time, double& r,
                                          double& g, double& b) {
    ParameterValue read{};
    if (!this->read(param, time, read)) {
        return 1;
    }
    r = read[0];
    g = read[1];
    b = read[2];
    return 0;
}

int PluginHost_MEMORY_Impl::progress(long done, long total) {
    return m_progress ? m_progress(done, total) : 0;
}

PluginRaster_API* PluginHost_MEMORY_Impl::lockTemporalRaster(double /*time*/, bool /*fieldMode*/,
                                                             bool /*firstFieldOdd*/) {
    return nullptr;
}

void PluginHost_MEMORY_Impl::getFullFrameInfo(double /*time*/, int height, int& fullHeight,
                                              int& step, int& phase) {
    fullHeight = height;
    step = 1;
    phase = 0;
}

PluginRaster_API* PluginHost_MEMORY_Impl::checkoutLayer(int /*param*/, int /*flags*/) {
    return nullptr;
}

PluginRaster_API* PluginHost_MEMORY_Impl::checkoutLayer(int /*param*/, double /*time*/,
                                                        int /*flags*/) {
    return nullptr;
}

void PluginHost_MEMORY_Impl::setFloatValue(int param, int /*sub*/, double value) {
    m_parameters->set(param, value);
}

void PluginHost_MEMORY_Impl::setAngleValue(int param, int /*sub*/, double degrees) {
    m_parameters->set(param, degrees);
}

void PluginHost_MEMORY_Impl::setIntValue(int param, int /*sub*/, int value) {
    m_parameters->set(param, value);
}

void PluginHost_MEMORY_Impl::setBoolValue(int param, int /*sub*/, bool value) {
    m_parameters->set(param, value ? 1.0 : 0.0);
}

void PluginHost_MEMORY_Impl::setEnumValue(int param, int /*sub*/, unsigned value) {
    m_parameters->set(param, value);
}

void PluginHost_MEMORY_Impl::setPoint2DValue(int param, int /*sub*/, double x, double y) {
    m_parameters->set(param, ParameterValue{x, y});
}

void PluginHost_MEMORY_Impl::setColorValue(int param, int /*sub*/, double r, double g, double b) {
    m_parameters->set(param, ParameterValue{r, g, b});
}

} // namespace orbel
