#pragma once

#include <string>

namespace CLI {
class App;
} // namespace CLI

/// What shells complete behind a program's name: commands, options and, where they can be listed,
/// values. Everything else is the name of a file.
namespace orbel::app {

[[nodiscard]] std::string bashCompletion(const CLI::App& program);
[[nodiscard]] std::string zshCompletion(const CLI::App& program);

} // namespace orbel::app
