#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

/// What a tree of commands says about itself, for whoever writes it down.
namespace orbel::app {

/// The commands below this one that are meant for people, in their order.
[[nodiscard]] std::vector<const CLI::App*> shownCommands(const CLI::App& command);

/// A command under the words that call it, as "orbel farm submit".
struct CalledCommand {
    const CLI::App* command;
    std::string path;
};

/// The program itself and all commands that are meant for people, each before those below it.
[[nodiscard]] std::vector<CalledCommand> allCommands(const CLI::App& program);

/// Its options, without what goes by place.
[[nodiscard]] std::vector<const CLI::Option*> namedOptions(const CLI::App& command);

/// What goes by place, in order.
[[nodiscard]] std::vector<const CLI::Option*> placedOptions(const CLI::App& command);

/// The names as they are typed, short ones first: "-o", "--output".
[[nodiscard]] std::vector<std::string> typedNames(const CLI::Option& option);

/// The word for its value, as "N"; empty for a flag.
[[nodiscard]] std::string valueWord(const CLI::Option& option);

/// The values that it takes where these can be listed: what its check allows, or names out of the
/// tables. A name that wants a value behind it ends in "=". Empty where anything goes.
[[nodiscard]] std::vector<std::string> valueChoices(const CLI::Option& option);

} // namespace orbel::app
