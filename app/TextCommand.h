#pragma once

#include "shapes/LetteringOptions.h"

#include <iosfwd>
#include <string>

namespace orbel::app {

struct TextCommandOptions {
    LetteringOptions lettering; ///< "\n" in the text, as typed, starts a line
    std::string output;
    bool outline = false; ///< said aloud; it is what happens without `singleStroke`
    bool json = false;
};

/// Writes a text as a shape. What was made goes to `out`, notes and problems to `err`. Returns an
/// `ExitCode`.
int textCommand(const TextCommandOptions& options, std::ostream& out, std::ostream& err);

} // namespace orbel::app
