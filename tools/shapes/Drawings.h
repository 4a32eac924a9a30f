#pragma once

#include "tools/shapes/Drawing.h"

namespace orbel::artwork {

/// Every shape of the set, each fitted to the sheet.
[[nodiscard]] std::vector<Drawing> shapeDrawings();
/// The drawings that only the example scenes use, likewise fitted.
[[nodiscard]] std::vector<Drawing> sceneDrawings();

// The families, each drawn in units of its own.
std::vector<Drawing> basicDrawings();
std::vector<Drawing> starDrawings();
std::vector<Drawing> circleDrawings();
std::vector<Drawing> lineDrawings();
std::vector<Drawing> squiggleDrawings();
std::vector<Drawing> flowerDrawings();
std::vector<Drawing> blotDrawings();
std::vector<Drawing> objectDrawings();

} // namespace orbel::artwork
