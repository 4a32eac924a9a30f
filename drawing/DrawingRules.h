#pragma once

#include "drawing/Outline.h"
#include "shapes/ImportOptions.h"

#include <string>
#include <vector>

namespace orbel {

/// One painting of a path on the page, with where it comes from.
struct PaintedOutlines {
    std::vector<OutlineCurve> curves;
    OutlineSource source;
};

/// Fill and stroke of one path, and what repeats the painting before it, become one.
void joinRepeats(std::vector<PaintedOutlines>* painted);

/// Turns what was painted, in order, into the outlines that are wanted. Tells in `notes` what was
/// left out.
void chooseOutlines(const std::vector<PaintedOutlines>& painted, const ImportOptions& options,
                    DrawnPage* page, std::vector<std::string>* notes);

} // namespace orbel
