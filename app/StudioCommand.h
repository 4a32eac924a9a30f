#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>

namespace orbel::app {

/// What `orbel studio` is asked to do.
struct StudioOptions {
    std::string place; ///< scene file or folder; empty for the current folder
    std::uint16_t port = 0;
    bool noOpen = false; ///< leave the browser alone
};

/// Serves the studio's page until Ctrl-C. The address goes to `out`, once; problems to `err`.
/// Returns an `ExitCode`.
int studioCommand(const StudioOptions& options, std::ostream& out, std::ostream& err);

} // namespace orbel::app
