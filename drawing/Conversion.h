#pragma once

#include "drawing/DrawingImport.h"

#include <functional>
#include <string>
#include <vector>

namespace orbel {

/// A page made by a conversion, and what there is to tell.
struct ConvertedPage {
    DrawnPage page;
    std::vector<std::string> notes;
};

/// Runs `work` in a limited process and makes a shape of what it draws. `work` may throw
/// DrawingError.
[[nodiscard]] Conversion convertLimited(const std::function<ConvertedPage()>& work, double seconds,
                                        const StopConversion& stopped);

} // namespace orbel
