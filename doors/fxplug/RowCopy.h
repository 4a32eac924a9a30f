#pragma once

#include "host/RasterRows.h"

namespace orbel {

// Rows are walked as the records describe them and never beyond the pixels of either image: behind
// a row a host may keep the lines of the other field. Images without pixels are left alone.

/// Row `first` of an image and every second one from there on.
[[nodiscard]] RasterInfo everySecondRow(const RasterInfo& image, int first);
/// Fills `to` with the nearest pixels of `from`, computed in single precision.
void resampleNearest(const RasterInfo& from, const RasterInfo& to);

} // namespace orbel
