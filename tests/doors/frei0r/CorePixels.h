#pragma once

#include "tests/doors/CoreFrame.h"
#include "tests/doors/frei0r/LoadedPlugin.h"

#include <cstring>

namespace orbel::frei0r {

/// A frame over pixels, straight as everywhere in this interface.
inline Pixels coreFrame(test::CoreFrame frame, unsigned width, unsigned height, Pixels pixels) {
    RasterInfo picture;
    picture.data = reinterpret_cast<std::uint8_t*>(pixels.data());
    picture.pixelFormat = RF_RGBA8;
    picture.width = static_cast<int>(width);
    picture.height = static_cast<int>(height);
    picture.bytesPerPixel = 4;
    picture.rowBytes = 4 * picture.width;
    frame.alpha = {SourceAlpha::Straight, OutputAlpha::Straight};
    const MemoryImage result = frame.over(picture);
    std::memcpy(pixels.data(), result.info().data, 4 * pixels.size());
    return pixels;
}

} // namespace orbel::frei0r
