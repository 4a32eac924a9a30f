#pragma once

#include <functional>
#include <iosfwd>

namespace CLI {
class App;
} // namespace CLI

namespace orbel::app {

/// Reads the command line and does what it says. Results go to `out`, problems and progress to
/// `err`. Returns an `ExitCode`.
int runCommandLine(int argc, const char* const* argv, std::ostream& out, std::ostream& err);

/// Hands the tree of commands and options that `runCommandLine` reads to whoever tells of it. The
/// tree lives until `describe` returns.
void describeCommands(const std::function<void(const CLI::App& program)>& describe);

} // namespace orbel::app
