#pragma once

#include "shapes/PathModel.h"

#include <cstddef>
#include <string_view>

namespace orbel {

/// A longer text gives no shape.
inline constexpr std::size_t maxInlineShapeBytes = std::size_t{16} << 20;
/// How many texts are remembered; the one that was not used for longest makes room.
inline constexpr std::size_t maxInlineShapes = 16;

/// The normalised shape of a text that holds what an SVG file would: read on its first use, and
/// found again by its content. Null for a text that is too long. The shape is gone when enough
/// other texts have been used since. The caller holds `g_globalCritSection`.
[[nodiscard]] PluginPath_Impl* findInlineShape(std::string_view svg);

/// Frees every shape. The caller holds the lock.
void flushInlineShapes();

} // namespace orbel
