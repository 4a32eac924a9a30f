#pragma once

#include <iosfwd>
#include <string>

namespace orbel::app {

/// Tells everything that is wrong with a scene, and what the shape reader will not draw of its
/// shape files, on `out`; the latter alone for a shape (.svg). Returns `EXIT_DONE` for a scene that
/// can be rendered and for a shape that gives a stroke, else `EXIT_BAD_INPUT`.
int checkCommand(const std::string& file, std::ostream& out);

} // namespace orbel::app
