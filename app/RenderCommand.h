#pragma once

#include "app/SceneOptions.h"

#include <iosfwd>
#include <optional>
#include <string>

namespace orbel::app {

/// What `orbel render` is asked to do.
struct RenderOptions {
    std::optional<std::string> scene; ///< scene file
    SceneOptions overrides;           ///< the scene itself, where there is no file
    std::optional<std::string> output;
    std::optional<std::string> rawFolder;
    int threads = 0; ///< 0: as many as the machine has
    bool quiet = false;
    std::string progress = "text"; ///< or "json"
    bool profile = false;          ///< tell where the time went
    bool resume = false;           ///< in chunks that outlive the program
    bool restart = false;          ///< `resume`, from the beginning
    long chunk = 0;                ///< frames of one; 0: as usual
};

/// Renders a scene into a film, pictures or raw frames; at least one output must be named. Problems
/// and progress go to `err`. Returns an `ExitCode`.
int renderCommand(const RenderOptions& options, std::ostream& err);

} // namespace orbel::app
