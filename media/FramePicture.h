#pragma once

#include "media/Libav.h"
#include "media/Picture.h"

#include <cstdint>
#include <string>

namespace orbel {

/// Where a frame comes from.
struct FrameOrigin {
    std::string file;
    std::string place;          ///< for error messages
    bool premultiplied = false; ///< its colours were multiplied by its alpha
};

/// Turns decoded frames into pictures. RGB, grey and palette frames keep their values exactly,
/// widened to the next depth of a picture; Y'CbCr frames are converted with the matrix and range
/// that they state, or by their size where they state none; float frames stay float.
class FrameConverter {
public:
    /// Throws MediaError when there is no conversion.
    [[nodiscard]] Picture convert(const AVFrame& frame, const FrameOrigin& origin);

private:
    libav::ScalerPtr m_scaler;
};

/// Depth of the pictures that `FrameConverter` makes of this pixel format.
[[nodiscard]] PictureDepth pictureDepth(AVPixelFormat format);
[[nodiscard]] bool formatHasAlpha(AVPixelFormat format);

/// One of the eight ways to lay a picture down.
struct Turn {
    bool mirrored = false; ///< left and right change places first
    int quarters = 0;      ///< then it turns clockwise by so many quarters, 0 to 3

    [[nodiscard]] bool isNone() const { return !mirrored && quarters == 0; }
    /// Whether width and height change places.
    [[nodiscard]] bool lies() const { return quarters % 2 != 0; }
};

/// What a display matrix of the media libraries (nine numbers) asks for; angles in between go to
/// the nearest.
[[nodiscard]] Turn turnOf(const std::int32_t* matrix);

[[nodiscard]] Picture turned(const Picture& picture, Turn turn);

} // namespace orbel
