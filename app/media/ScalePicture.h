#pragma once

#include "app/media/Picture.h"

namespace orbel::app {

/// The picture at another size, bicubic, depth kept. Alpha is taken along correctly: transparent
/// pixels lend no colour to their neighbours. Floats keep values outside 0..1. Throws
/// std::invalid_argument for an empty size and std::bad_alloc.
[[nodiscard]] Picture scalePicture(const Picture& picture, int width, int height);

} // namespace orbel::app
