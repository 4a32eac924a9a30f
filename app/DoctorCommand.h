#pragma once

#include <iosfwd>

namespace orbel::app {

/// Tells on `out` whether the built-in shapes and the plug-ins are where this program and each host
/// look for them, whether the plug-ins load, and what to do if not. Returns `EXIT_DONE` when all is
/// well, else 1.
int doctorCommand(std::ostream& out);

} // namespace orbel::app
