#pragma once

#include <iosfwd>

namespace orbel::app {

/// How the parameter list is printed.
enum class ParamsLayout { Text, Json, Markdown };

/// Prints every parameter with identifier, group, range, default and menu entries.
void paramsCommand(ParamsLayout layout, std::ostream& out);

} // namespace orbel::app
