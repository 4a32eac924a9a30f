#include "host/ofx/PluginHost_OFX_Impl.h"

#include "host/Numeric.h"
#include "host/RasterRows.h"

#include <new>
#include <utility>

namespace orbel {

namespace {

constexpr double TICKS_PER_FRAME = 100.0;
constexpr int ABORTED = 2;

} // namespace

PluginHost_OFX_Impl::PluginHost_OFX_Impl(const ofx::EffectInstance* instance,
                                         const OFXRenderTime& when, const OFXPictures& pictures)
    : m_handle{instance},
      m_when(when),
      m_pictures(pictures),
      m_update(instance),
      m_shapeText(instance->shapeText(when.time)),
      m_ticks(saturateTo<int>(TICKS_PER_FRAME * when.time)),
      m_ticksDropped(TICKS_PER_FRAME * when.time - m_ticks) {
    setUserDataPath(&m_shape, instance->shapeFile(when.time).c_str());
    m_shape.svg = m_shapeText;
    setUserData(&m_shape);
}

OfxTime PluginHost_OFX_Impl::timeToFrame(const TimeObject& time) const {
    if (time.getTime() == m_ticks) {
        return m_when.time;
    }
    return (time.getTime() + m_ticksDropped) / time.time_step();
}

// --- Images ---

RasterInfo PluginHost_OFX_Impl::outputInfo() const {
    const RasterInfo* const info =
        m_outputOverride == nullptr ? nullptr : m_outputOverride->getRasterInfoBase();
    return info == nullptr ? m_pictures.output : *info;
}

void PluginHost_OFX_Impl::fillOutput() {
    clearRows(outputInfo());
}

void PluginHost_OFX_Impl::fill(PluginRaster_API* raster) {
    clearRows(*raster->getRasterInfoBase());
}

void PluginHost_OFX_Impl::copyInputToOutput() {
    copyRows(m_pictures.input, outputInfo());
}

void PluginHost_OFX_Impl::copy(PluginRaster_API* source, PluginRaster_API* destination) {
    copyRows(*source->getRasterInfoBase(), *destination->getRasterInfoBase());
}

void PluginHost_OFX_Impl::copy(PluginRaster_API* source, PluginRaster_API* destination,
                               Vx_Rect* sourceRect, Vx_Rect* destinationRect) {
    copyRows(croppedTo(*source->getRasterInfoBase(), *sourceRect),
             croppedTo(*destination->getRasterInfoBase(), *destinationRect));
}

PluginRaster_API* PluginHost_OFX_Impl::getInputRaster(int /*layer*/) {
    return new PluginRaster_OFX_Impl(m_pictures.input);
}

PluginRaster_API* PluginHost_OFX_Impl::getOutputRaster() {
    return new PluginRaster_OFX_Impl(outputInfo());
}

PluginRaster_API* PluginHost_OFX_Impl::allocRaster(int width, int height, PixelType /*type*/,
                                                   int& rowBytes, int /*flags*/) {
    try {
        const RasterInfo like = outputInfo();
        ofx::PixelBuffer buffer(width, height, like.pixelFormat, like.pixelAspect);
        rowBytes = buffer.info().rowBytes;
        return new PluginRaster_OFX_Impl(std::move(buffer));
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

PluginRaster_API* PluginHost_OFX_Impl::allocRaster(RasterInfo* info) {
    return new PluginRaster_OFX_Impl(*info);
}

void PluginHost_OFX_Impl::deallocRaster(PluginRaster_API* raster) {
    if (auto* const own = dynamic_cast<PluginRaster_OFX_Impl*>(raster)) {
        own->releasePixels();
    }
}

double PluginHost_OFX_Impl::geAspectRatio(PluginRaster_API* raster) {
    const RasterInfo* const info = raster->getRasterInfoBase();
    return info == nullptr ? 1.0 : static_cast<double>(info->pixelAspect);
}

void PluginHost_OFX_Impl::getInputRasterInfo(int /*layer*/, RasterInfo* info) {
    *info = m_pictures.input;
}

void PluginHost_OFX_Impl::getOutputRasterInfo(RasterInfo* info) {
    *info = outputInfo();
}

void PluginHost_OFX_Impl::getRasterInfo(PluginRaster_API* raster, RasterInfo* info) {
    *info = *raster->getRasterInfoBase();
}

void PluginHost_OFX_Impl::getSourceLayerDimensions(int& width, int& height) {
    width = m_pictures.input.width;
    height = m_pictures.input.height;
}

PluginRaster_API* PluginHost_OFX_Impl::lockTemporalRaster(double /*time*/, bool /*fieldMode*/,
                                                          bool /*firstFieldOdd*/) {
    return nullptr;
}

PluginRaster_API* PluginHost_OFX_Impl::checkoutLayer(int /*param*/, int /*flags*/) {
    return nullptr;
}

PluginRaster_API* PluginHost_OFX_Impl::checkoutLayer(int /*param*/, double /*time*/,
                                                     int /*flags*/) {
    return nullptr;
}

// --- Render request and time ---

void PluginHost_OFX_Impl::getFullFrameInfo(double /*time*/, int height, int& fullHeight, int& step,
                                           int& phase) {
    fullHeight = height;
    step = 1;
    phase = 0;
}

int PluginHost_OFX_Impl::progress(long /*done*/, long /*total*/) {
    return doAbort() ? ABORTED : 0;
}

bool PluginHost_OFX_Impl::doAbort() {
    const ofx::EffectInstance& instance = *m_handle.instance;
    m_aborted = m_aborted || instance.suites().effect->abort(instance.effect()) != 0;
    return m_aborted;
}

// --- Parameters ---

bool PluginHost_OFX_Impl::read(int param, const TimeObject& time, Value& value) const {
    const ParameterRow* const row = findParameter(param);
    if (row == nullptr || row->kind == RowKind::Custom) {
        return false;
    }
    value = m_handle.instance->value(*row, timeToFrame(time));
    return true;
}

int PluginHost_OFX_Impl::GetFloatValue(int param, int /*sub*/, const TimeObject& time,
                                       double& value) {
    Value answer{};
    if (!read(param, time, answer)) {
        return 1;
    }
    value = answer[0];
    return 0;
}

int PluginHost_OFX_Impl::GetAngleValue(int param, int sub, const TimeObject& time,
                                       double& degrees) {
    return GetFloatValue(param, sub, time, degrees);
}

int PluginHost_OFX_Impl::GetIntValue(int param, int sub, const TimeObject& time, int& value) {
    double number = 0.0;
    if (GetFloatValue(param, sub, time, number) != 0) {
        return 1;
    }
    value = saturateTo<int>(number);
    return 0;
}

int PluginHost_OFX_Impl::GetUIntValue(int param, int sub, const TimeObject& time, unsigned& value) {
    double number = 0.0;
    if (GetFloatValue(param, sub, time, number) != 0) {
        return 1;
    }
    value = saturateTo<unsigned>(number);
    return 0;
}

int PluginHost_OFX_Impl::GetBoolValue(int param, int sub, const TimeObject& time, bool& value) {
    int number = 0;
    if (GetIntValue(param, sub, time, number) != 0) {
        return 1;
    }
    value = number == 1;
    return 0;
}

int PluginHost_OFX_Impl::GetPoint2DValue(int param, int /*sub*/, const TimeObject& time, double& x,
                                         double& y) {
    Value answer{};
    if (!read(param, time, answer)) {
        return 1;
    }
    x = answer[0];
    y = answer[1];
    return 0;
}

int PluginHost_OFX_Impl::GetColorValue(int param, int /*sub*/, const TimeObject& time, double& r,
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
