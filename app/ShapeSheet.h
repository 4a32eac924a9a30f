#pragma once

#include "doors/memory/MemoryImage.h"

namespace orbel::app {

/// The gallery of built-in shapes: eight by five, drawn by the effect itself in the order of the
/// table, each with its name. A shape without a file leaves its tile empty and its name
/// dim. Throws std::bad_alloc.
[[nodiscard]] MemoryImage makeShapeSheet();

} // namespace orbel::app
