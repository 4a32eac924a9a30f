#pragma once

#include "drawing/DrawingImport.h"
#include "shapes/LetteringOptions.h"

namespace orbel {

/// Turns a piece of writing into outlines, in reading order and each letter's together, so that
/// drawn one after the other they write. The page fits the writing. Characters that the font or
/// hand has not are left out and told. In a process of its own, like drawings.
[[nodiscard]] Conversion letterText(const LetteringOptions& options);

} // namespace orbel
