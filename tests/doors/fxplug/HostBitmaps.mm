#include "tests/doors/fxplug/HostBitmaps.h"

#include <array>
#include <cstring>

namespace orbel::fxtest {

namespace {

bool isRgba(RasterFormat format) {
    return format == RF_RGBA8 || format == RF_RGBA16 || format == RF_RGBA32F;
}

std::uint8_t* hostRow(FxBitmap* bitmap, int y) {
    const bool upsideDown = manners().kind == 1;
    const int row = upsideDown ? static_cast<int>([bitmap height]) - 1 - y : y;
    return static_cast<std::uint8_t*>([bitmap dataPtr]) +
           static_cast<std::ptrdiff_t>(row) * static_cast<int>([bitmap rowBytes]);
}

// Moves whole components; `shift` says where the first one of the target comes from.
void copyPixels(const std::uint8_t* from, std::uint8_t* to, const RasterInfo& image,
                std::size_t shift) {
    const auto pixel = static_cast<std::size_t>(image.bytesPerPixel);
    const std::size_t component = pixel / 4;
    for (std::size_t x = 0; x < static_cast<std::size_t>(image.width); ++x) {
        for (std::size_t c = 0; c < 4; ++c) {
            std::memcpy(to + x * pixel + c * component,
                        from + x * pixel + (c + shift) % 4 * component, component);
        }
    }
}

bool turned(const RasterInfo& image) {
    return manners().kind == 1 && isRgba(image.pixelFormat);
}

} // namespace

FxBitmap* makeHostBitmap(const RasterInfo& image, bool singleField) {
    FxImageInfo info{};
    info.width = static_cast<FxUInt>(image.width);
    info.height = static_cast<FxUInt>(image.height);
    info.depth = static_cast<FxUInt>(8 * image.bytesPerPixel / 4);
    info.activeChannels = 4;
    info.imageType = kFxImageType_BITMAP;
    info.origin = manners().kind == 1 ? kFxImageOrigin_BOTTOM_LEFT : kFxImageOrigin_TOP_LEFT;
    info.pixelFormat = isRgba(image.pixelFormat) ? kFxPixelFormat_RGBA : kFxPixelFormat_ARGB;
    info.isPremultiplied = YES;
    info.pixelAspect = static_cast<double>(image.pixelAspect) * (singleField ? 0.5 : 1.0);
    FxBitmap* const bitmap = [[FxBitmap alloc] initWithInfo:info];
    for (int y = 0; y < image.height; ++y) {
        copyPixels(image.row(y), hostRow(bitmap, y), image, turned(image) ? 3 : 0);
    }
    return bitmap;
}

void copyFromHostBitmap(FxBitmap* bitmap, const RasterInfo& image) {
    for (int y = 0; y < image.height; ++y) {
        copyPixels(hostRow(bitmap, y), image.row(y), image, turned(image) ? 1 : 0);
    }
}

} // namespace orbel::fxtest
