#pragma once

#include "tools/shapes/Outline.h"

#include <string>
#include <vector>

namespace orbel::artwork {

/// The sheet every shape is drawn on: square, with a margin for the stroke of a preview.
constexpr double SHEET = 512.0;
constexpr Point MIDDLE{SHEET / 2, SHEET / 2};
constexpr double REACH = 224.0; ///< from the middle to where a drawing ends

/// A shape: its name, and its outlines in the order in which they are stroked.
struct Drawing {
    std::string name;
    std::vector<Outline> outlines;
};

/// Moves and scales a drawing so that it fills the sheet up to the margin along its longer side.
void fitToSheet(Drawing* drawing);

/// The drawing as an SVG document of cubic paths, thinly stroked, without fill.
[[nodiscard]] std::string svgText(const Drawing& drawing);

} // namespace orbel::artwork
