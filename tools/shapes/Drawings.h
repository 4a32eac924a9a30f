#pragma once

#include "tools/shapes/Drawing.h"

namespace orbel::artwork {

/// Every shape of the set, each fitted to the sheet.
[[nodiscard]] std::vector<Drawing> allDrawings();

std::vector<Drawing> basicDrawings();

} // namespace orbel::artwork
