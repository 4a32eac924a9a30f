#pragma once

#include <iosfwd>
#include <optional>
#include <string>

namespace orbel::app {

/// Lists the built-in shapes on `out`, index and name, and says which have no file. With `sheet`
/// draws them all into that picture instead. Problems go to `err`. Returns an `ExitCode`.
int shapesCommand(const std::optional<std::string>& sheet, std::ostream& out, std::ostream& err);

} // namespace orbel::app
