#pragma once

#include "shapes/ImportOptions.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace orbel::app {

struct ImportCommandOptions {
    std::vector<std::string> inputs; ///< drawings, and folders of them
    std::string output;              ///< a file for one drawing, else a folder
    ImportOptions conversion;
    bool json = false;
};

/// Turns drawings into shapes that the reader represents exactly. What was made goes to `out`, what
/// was left out and problems to `err`; with `json` everything goes to `out` as one document.
/// Returns an `ExitCode`: `EXIT_BAD_INPUT` when any drawing could not be taken.
int importCommand(const ImportCommandOptions& options, std::ostream& out, std::ostream& err);

} // namespace orbel::app
