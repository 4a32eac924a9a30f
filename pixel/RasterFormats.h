#pragma once

#include "host/PluginHost.h"

namespace orbel {

// What layout codes mean. The codes of other hosts are described too, although only six layouts are
// rendered (`withTraits`). Plain functions for any thread.

/// The depth class of a layout code; codes outside the table count as 8 bits.
PluginRaster_API::PixelType convertToPixelType(PluginHost_API::RasterFormat format);

/// Significant bits per component of a layout code: 8, 14, 15, 16 or 32.
int convertToPixelDepth(PluginHost_API::RasterFormat format);

/// Significant bits per component of a depth class; 0 for a value that is none.
int getPixelComponentSize(PluginRaster_API::PixelType type);

/// Writes the index of each channel within a pixel. A code outside the table leaves all four
/// outputs as they are.
void getRasterChannelOrder(PluginHost_API::RasterFormat format, int& red, int& green, int& blue,
                           int& alpha);

} // namespace orbel
