#pragma once

#include "drawing/Outline.h"

#include <string>

namespace orbel {

/// The page as an SVG file that the shape reader represents exactly: one `path` an outline, of one
/// absolute move and two or more absolute cubics, closed by `Z`, in plain numbers. Sources stand in
/// `data-` attributes.
[[nodiscard]] std::string shapeText(const DrawnPage& page);

} // namespace orbel
