#include "doors/memory/PluginHost_MEMORY_Impl.h"

#include "host/Numeric.h"
#include "pixel/RasterFormats.h"

#include <utility>

namespace orbel {

PluginRaster_API::PixelType PluginRaster_MEMORY_Impl::getPixelType() {
    return convertToPixelType(info().pixelFormat);
}

PluginHost_MEMORY_Impl::PluginHost_MEMORY_Impl(const RasterInfo& input, const RasterInfo& output,
                                               ParameterStore* parameters,
                                               const MemoryHostSettings& settings)
    : PluginHost_PLAIN_Impl({input, output, settings.alpha}),
      m_parameters(parameters),
      m_settings(settings) {}

PluginRaster_API* PluginHost_MEMORY_Impl::makeRaster(const RasterInfo& info, PixelOwner owner) {
    return new PluginRaster_MEMORY_Impl(info, std::move(owner));
}

void PluginHost_MEMORY_Impl::showWarning(const char* text) {
    if (m_warning) {
        m_warning(text);
    }
}

int PluginHost_MEMORY_Impl::getCurrentTime() {
    return saturateTo<int>(m_settings.ticksPerFrame * m_settings.frame);
}

bool PluginHost_MEMORY_Impl::read(int param, const TimeObject& time, Value& value) const {
    return m_parameters->evaluate(param, timeToFrame(time), value);
}

int PluginHost_MEMORY_Impl::progress(long done, long total) {
    return m_progress ? m_progress(done, total) : 0;
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
