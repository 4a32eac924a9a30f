#pragma once

#include "shapes/SvgReport.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace orbel {

/// Something of a file that the shape reader does not represent.
struct ShapeLoss {
    SvgIssue issue = SvgIssue::FileNotRead;
    std::string text;      ///< what is lost, and mostly how to draw it instead
    int line = 0;          ///< where first, from 1; 0 for the file as a whole
    std::size_t count = 0; ///< how often; counting ends at a thousand losses of all kinds
};

/// What the shape reader makes of a file as it is.
struct PlainReading {
    std::size_t outlines = 0;
    bool flat = false; ///< in one direction, so that nothing can be drawn
    std::vector<ShapeLoss> losses;
};

/// Reads a shape file, or the contents of one, to tell what an import would keep. Each loss is told
/// once.
[[nodiscard]] PlainReading readPlainFile(const std::string& file);
[[nodiscard]] PlainReading readPlainText(std::string_view svg);

} // namespace orbel
