#pragma once

#include <iosfwd>

namespace orbel::app {

/// Reads the command line and does what it says. Results go to `out`, problems and progress to
/// `err`. Returns an `ExitCode`.
int runCommandLine(int argc, const char* const* argv, std::ostream& out, std::ostream& err);

} // namespace orbel::app
