#pragma once

#include "host/PluginHost.h"
#include "tests/doors/fxplug/StandInImages.h"

namespace orbel::fxtest {

/// A bitmap as the application at hand keeps it, with the pixels of a top-down image: Motion stores
/// rows upside down, components as ARGB whatever it says, and says RGBA for the images that are
/// RGBA elsewhere. A single field says half the pixel aspect ratio. Owned by the caller.
[[nodiscard]] FxBitmap* makeHostBitmap(const RasterInfo& image, bool singleField);

/// The pixels of such a bitmap, in the layout of the image they came from.
void copyFromHostBitmap(FxBitmap* bitmap, const RasterInfo& image);

} // namespace orbel::fxtest
