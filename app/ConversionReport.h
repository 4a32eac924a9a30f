#pragma once

#include "drawing/DrawingImport.h"

#include <nlohmann/json.hpp>

#include <iosfwd>
#include <string>

namespace orbel::app {

/// Writes the whole text or nothing: a file that was there before stays until the new one is
/// complete. Reports what goes wrong on `err`.
[[nodiscard]] bool writeWholeFile(const std::string& file, const std::string& text,
                                  std::ostream& err);

/// "5 outlines, 100 x 80 pixels"
[[nodiscard]] std::string summaryOf(const ConvertedShape& shape);

/// Size, outlines with their sources, and notes; without the outlines' points.
[[nodiscard]] nlohmann::json jsonOf(const ConvertedShape& shape);

} // namespace orbel::app
