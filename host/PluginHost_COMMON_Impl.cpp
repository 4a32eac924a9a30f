#include "host/PluginHost_COMMON_Impl.h"

#include "host/RasterRows.h"

#include <cmath>
#include <cstdlib>
#include <limits>

namespace orbel {

namespace {

float rounded(double value) {
    return static_cast<float>(value);
}

double wide(float value) {
    return static_cast<double>(value);
}

} // namespace

RasterInfo PluginHost_COMMON_Impl::infoOf(PluginRaster_API* raster) {
    RasterInfo info;
    getRasterInfo(raster, &info);
    return info;
}

RasterInfo PluginHost_COMMON_Impl::inputInfo() {
    RasterInfo info;
    getInputRasterInfo(0, &info);
    return info;
}

RasterInfo PluginHost_COMMON_Impl::outputInfo() {
    RasterInfo info;
    getOutputRasterInfo(&info);
    return info;
}

void PluginHost_COMMON_Impl::fillOutput() {
    clearRows(outputInfo());
}

void PluginHost_COMMON_Impl::fill(PluginRaster_API* raster) {
    clearRows(infoOf(raster));
}

void PluginHost_COMMON_Impl::copyInputToOutput() {
    RasterInfo output;
    describeOutput(&output);
    copyRows(inputInfo(), output);
}

void PluginHost_COMMON_Impl::copy(PluginRaster_API* source, PluginRaster_API* destination) {
    copyRows(infoOf(source), infoOf(destination));
}

void PluginHost_COMMON_Impl::copy(PluginRaster_API* source, PluginRaster_API* destination,
                                  Vx_Rect* sourceRect, Vx_Rect* destinationRect) {
    constexpr std::int16_t end = std::numeric_limits<std::int16_t>::max();
    const Vx_Rect part = sourceRect == nullptr ? Vx_Rect{0, 0, end, end} : *sourceRect;
    Vx_Rect place{0, 0, end, end};
    if (destinationRect != nullptr) {
        place.top = destinationRect->top;
        place.left = destinationRect->left;
    }
    copyRows(croppedTo(infoOf(source), part), croppedTo(infoOf(destination), place));
}

void PluginHost_COMMON_Impl::getOutputRasterInfo(RasterInfo* info) {
    if (m_outputOverride != nullptr) {
        getRasterInfo(m_outputOverride, info);
    } else {
        describeOutput(info);
    }
}

double PluginHost_COMMON_Impl::geAspectRatio(PluginRaster_API* raster) {
    const RasterInfo* const info = raster == nullptr ? nullptr : raster->getRasterInfoBase();
    return info == nullptr ? 1.0 : static_cast<double>(info->pixelAspect);
}

PluginRaster_API* PluginHost_COMMON_Impl::lockTemporalRaster(double /*time*/, bool /*fieldMode*/,
                                                             bool /*firstFieldOdd*/) {
    return nullptr;
}

PluginRaster_API* PluginHost_COMMON_Impl::checkoutLayer(int /*param*/, int /*flags*/) {
    return nullptr;
}

PluginRaster_API* PluginHost_COMMON_Impl::checkoutLayer(int /*param*/, double /*time*/,
                                                        int /*flags*/) {
    return nullptr;
}

void PluginHost_COMMON_Impl::getFullFrameInfo(double /*time*/, int height, int& fullHeight,
                                              int& step, int& phase) {
    fullHeight = height;
    step = 1;
    phase = 0;
}

double PluginHost_COMMON_Impl::math_sqrt(double x) {
    return std::sqrt(x);
}
float PluginHost_COMMON_Impl::math_sqrt(float x) {
    return rounded(std::sqrt(wide(x)));
}
double PluginHost_COMMON_Impl::math_floor(double x) {
    return std::floor(x);
}
float PluginHost_COMMON_Impl::math_floor(float x) {
    return rounded(std::floor(wide(x)));
}
double PluginHost_COMMON_Impl::math_exp(double x) {
    return std::exp(x);
}
float PluginHost_COMMON_Impl::math_exp(float x) {
    return rounded(std::exp(wide(x)));
}
double PluginHost_COMMON_Impl::math_atan2(double y, double x) {
    return std::atan2(y, x);
}
float PluginHost_COMMON_Impl::math_atan2(float y, float x) {
    return rounded(std::atan2(wide(y), wide(x)));
}
double PluginHost_COMMON_Impl::math_fabs(double x) {
    return std::fabs(x);
}
float PluginHost_COMMON_Impl::math_fabs(float x) {
    return rounded(std::fabs(wide(x)));
}
double PluginHost_COMMON_Impl::math_sin(double x) {
    return std::sin(x);
}
float PluginHost_COMMON_Impl::math_sin(float x) {
    return rounded(std::sin(wide(x)));
}
double PluginHost_COMMON_Impl::math_cos(double x) {
    return std::cos(x);
}
float PluginHost_COMMON_Impl::math_cos(float x) {
    return rounded(std::cos(wide(x)));
}
double PluginHost_COMMON_Impl::math_fmod(double x, double y) {
    return std::fmod(x, y);
}
float PluginHost_COMMON_Impl::math_fmod(float x, float y) {
    return rounded(std::fmod(wide(x), wide(y)));
}
double PluginHost_COMMON_Impl::math_pow(double x, double y) {
    return std::pow(x, y);
}
float PluginHost_COMMON_Impl::math_pow(float x, float y) {
    return rounded(std::pow(wide(x), wide(y)));
}
float PluginHost_COMMON_Impl::math_ceil(float x) {
    return rounded(std::ceil(wide(x)));
}
double PluginHost_COMMON_Impl::math_ceil(double x) {
    return std::ceil(x);
}
float PluginHost_COMMON_Impl::math_log(float x) {
    return rounded(std::log(wide(x)));
}
double PluginHost_COMMON_Impl::math_log(double x) {
    return std::log(x);
}

void* PluginHost_COMMON_Impl::allocMemory(int bytes) {
    return std::malloc(static_cast<std::size_t>(std::abs(static_cast<long>(bytes))));
}

void PluginHost_COMMON_Impl::deallocMemory(void* memory) {
    std::free(memory);
}

void PluginHost_COMMON_Impl::getOrigin(int& x, int& y) {
    x = m_originX;
    y = m_originY;
}

void PluginHost_COMMON_Impl::setOrigin(int x, int y) {
    m_originX = x;
    m_originY = y;
}

int PluginHost_COMMON_Impl::acquireSuite(const char* /*name*/, int /*version*/,
                                         const char* /*error*/, void** /*suite*/) {
    return 2;
}

void PluginHost_COMMON_Impl::releaseSuite(const char* /*name*/, int /*version*/,
                                          const char* /*error*/) {}

void PluginHost_COMMON_Impl::unlockTemporalRaster(PluginRaster_API* raster) {
    deallocRaster(raster);
    delete raster;
}

int PluginHost_COMMON_Impl::blend(int /*mode*/, double /*opacity1*/, double /*opacity2*/,
                                  PluginRaster_API* /*source*/, PluginRaster_API* /*destination*/) {
    return 1;
}

} // namespace orbel
