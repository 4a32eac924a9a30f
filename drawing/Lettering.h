#pragma once

#include "drawing/DrawingImport.h"
#include "shapes/LetteringOptions.h"

namespace orbel {

/// Turns a piece of writing into outlines, in reading order and each letter's together, so that
/// drawn one after the other they write. The page fits the writing. Characters that the font or
/// hand has not are left out and told. In a process of its own, like drawings.
[[nodiscard]] Conversion letterText(const LetteringOptions& options,
                                    const StopConversion& stopped = {});

/// What a text can be written with, each sorted by name.
struct InstalledLetters {
    std::vector<std::string> families; ///< of fonts
    std::vector<std::string> hands;    ///< of single strokes
};

/// Looks what is installed, in a process of its own; takes a moment.
[[nodiscard]] InstalledLetters installedLetters();

} // namespace orbel
