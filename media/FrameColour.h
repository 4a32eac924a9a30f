#pragma once

#include "media/Libav.h"

namespace orbel {

/// The matrix of Y'CbCr that a frame states, or the usual one for its size: as a constant of the
/// scaling library (`SWS_CS_ITU709`).
[[nodiscard]] int matrixOf(const AVFrame& frame);

/// Whether its samples use all values of their depth.
[[nodiscard]] bool isFullRange(const AVFrame& frame);

} // namespace orbel
