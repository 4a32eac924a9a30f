#pragma once

#include <iosfwd>
#include <string>

namespace orbel::app {

/// Tells everything that is wrong with a scene, and what the shape reader will not draw of its
/// shape files, on `out`. Returns `EXIT_DONE` for a scene that can be rendered, else
/// `EXIT_BAD_INPUT`.
int checkCommand(const std::string& sceneFile, std::ostream& out);

} // namespace orbel::app
