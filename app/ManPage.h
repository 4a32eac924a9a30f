#pragma once

#include <string>

namespace CLI {
class App;
} // namespace CLI

namespace orbel::app {

/// The manual page of a program in the language of man(7), with the texts of its "--help".
[[nodiscard]] std::string manPage(const CLI::App& program, const std::string& version);

} // namespace orbel::app
