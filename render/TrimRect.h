#pragma once

#include "host/Geometry.h"

namespace orbel {

/// Clips a rectangle with inclusive right and bottom edges to an image, in place. 0 for an empty
/// result (a single row or column counts as empty, which is meant), 1 when it was inside already,
/// 2 when it was trimmed.
int Vx_TrimRect(Vx_Rect* rect, int width, int height);

} // namespace orbel
