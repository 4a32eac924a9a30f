#include "doors/fxplug/PluginRaster_FXPLUG_Impl.h"

#include "doors/fxplug/HostKind.h"

#include <optional>

namespace orbel {

namespace {

constexpr FxUInt FORMAT_RGBA = 0;
constexpr FxUInt FORMAT_ARGB = 2;
constexpr FxUInt FORMAT_ALT_8 = 4;
constexpr FxUInt FORMAT_ALT_FLOAT = 5;

// Motion labels its images RGBA and stores ARGB.
RasterFormat labelledRgba(RasterFormat inMotion, RasterFormat elsewhere) {
    return isMotion() ? inMotion : elsewhere;
}

std::optional<RasterFormat> layoutCode(FxUInt depth, FxUInt format) {
    if (depth == 8) {
        switch (format) {
        case FORMAT_ARGB:
            return RF_ARGB8;
        case FORMAT_ALT_8:
            return RF_ARGB8_ALT;
        case FORMAT_RGBA:
            return labelledRgba(RF_ARGB8, RF_RGBA8);
        }
    } else if (depth == 16) {
        switch (format) {
        case FORMAT_ARGB:
            return RF_ARGB16;
        case FORMAT_RGBA:
            return labelledRgba(RF_ARGB16, RF_RGBA16);
        }
    } else if (depth == 32) {
        switch (format) {
        case FORMAT_ARGB:
            return RF_ARGB32F;
        case FORMAT_ALT_FLOAT:
            return RF_ARGB32F_ALT;
        case FORMAT_RGBA:
            return labelledRgba(RF_ARGB32F, RF_RGBA32F);
        }
    }
    return std::nullopt;
}

} // namespace

int bitmapPixelSize(FxBitmap* bitmap) {
    return 4 * static_cast<int>([bitmap bytes]);
}

bool describeBitmap(FxBitmap* bitmap, bool flipRows, RasterInfo* info) {
    if (bitmap == nil || [bitmap dataPtr] == nullptr) {
        return false;
    }
    const FxImageInfo image = [bitmap imageInfo];
    const std::optional<RasterFormat> code = layoutCode(image.depth, image.pixelFormat);
    if (!code) {
        return false;
    }
    info->data = static_cast<std::uint8_t*>([bitmap dataPtr]);
    info->bytesPerPixel = bitmapPixelSize(bitmap);
    info->scale = 1.0F;
    info->pixelFormat = *code;
    info->hasAltLayout = *code == RF_ARGB8_ALT || *code == RF_ARGB32F_ALT;
    info->width = static_cast<int>([bitmap width]);
    info->height = static_cast<int>([bitmap height]);
    info->rowBytes = static_cast<int>([bitmap rowBytes]);
    info->pixelAspect = static_cast<float>([bitmap pixelAspect]);
    if (isMotion() && flipRows && info->height > 0) {
        info->data = info->row(info->height - 1);
        info->rowBytes = -info->rowBytes;
    }
    return true;
}

int PluginRaster_FXPLUG_Impl::getWidth() {
    return info ? info->width : static_cast<int>([bitmap width]);
}

int PluginRaster_FXPLUG_Impl::getHeight() {
    return info ? info->height : static_cast<int>([bitmap height]);
}

int PluginRaster_FXPLUG_Impl::getRowBytes() {
    return info ? info->rowBytes : static_cast<int>([bitmap rowBytes]);
}

PluginRaster_API::PixelType PluginRaster_FXPLUG_Impl::getPixelType() {
    if (info) {
        return info->bytesPerPixel == 8 ? PIXEL_TYPE_14 : PIXEL_TYPE_8;
    }
    switch ([bitmap depth]) {
    case 16:
        return PIXEL_TYPE_16;
    case 32:
        return PIXEL_TYPE_FLOAT;
    default:
        return PIXEL_TYPE_8;
    }
}

} // namespace orbel
