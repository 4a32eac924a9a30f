#pragma once

#include "media/MediaWriter.h"

#include <memory>
#include <string>

namespace orbel {

/// Whether frames can be dumped there: the folder exists and can be written, or its parent does.
/// Throws MediaError; makes nothing.
void checkRawFolder(const std::string& folder);

/// Writes each frame as `FOLDER/frame-%06d.raw`: rows top-down, tightly packed, the raster's own
/// pixel format, little-endian. Makes the folder if it is missing. A frame that cannot be written
/// whole leaves no file behind. Throws MediaError.
[[nodiscard]] std::unique_ptr<MediaWriter> openRawDump(const std::string& folder);

/// The name of a frame's file within the folder.
[[nodiscard]] std::string rawFrameName(long frame);

} // namespace orbel
