#include "app/OptionTree.h"

#include "params/ParameterTable.h"
#include "scene/PixelFormats.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <sstream>

namespace orbel::app {

namespace {

std::vector<std::string> parameterNames() {
    std::vector<std::string> names;
    for (const ParameterRow& row : parameterTable()) {
        if (row.isParameter() && row.kind != RowKind::Custom) {
            names.push_back(fullName(row) + "=");
        }
    }
    return names;
}

std::vector<std::string> formatNames() {
    std::vector<std::string> names;
    names.reserve(namedFormats.size());
    for (const NamedFormat& format : namedFormats) {
        names.emplace_back(format.name);
    }
    return names;
}

/// The parts of a text between separators.
std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::istringstream list(text);
    for (std::string part; std::getline(list, part, separator);) {
        parts.push_back(part);
    }
    return parts;
}

/// Out of what an option calls its value, "keep|all|none", or a check's own words, "{text,json}".
/// Capital letters stand for something else: "SCENE|FOLDER".
std::vector<std::string> checkedNames(const std::string& type) {
    const std::size_t begin = type.find('{', type.find(':'));
    const std::size_t end = type.find('}', begin);
    if (begin != std::string::npos && end != std::string::npos) {
        return split(type.substr(begin + 1, end - begin - 1), ',');
    }
    const bool areWords =
        type.find('|') != std::string::npos &&
        std::none_of(type.begin(), type.end(), [](char c) { return c >= 'A' && c <= 'Z'; });
    return areWords ? split(type, '|') : std::vector<std::string>{};
}

} // namespace

std::vector<const CLI::App*> shownCommands(const CLI::App& command) {
    return command.get_subcommands([](const CLI::App* one) { return !one->get_group().empty(); });
}

std::vector<CalledCommand> allCommands(const CLI::App& program) {
    std::vector<CalledCommand> all;
    std::vector<CalledCommand> waiting{{&program, program.get_name()}};
    while (!waiting.empty()) {
        const CalledCommand next = waiting.back();
        waiting.pop_back();
        all.push_back(next);
        const std::vector<const CLI::App*> below = shownCommands(*next.command);
        std::for_each(below.rbegin(), below.rend(), [&](const CLI::App* command) {
            waiting.push_back({command, next.path + " " + command->get_name()});
        });
    }
    return all;
}

std::vector<const CLI::Option*> namedOptions(const CLI::App& command) {
    return command.get_options(
        [](const CLI::Option* one) { return one->nonpositional() && !one->get_group().empty(); });
}

std::vector<const CLI::Option*> placedOptions(const CLI::App& command) {
    return command.get_options([](const CLI::Option* one) { return one->get_positional(); });
}

std::vector<std::string> typedNames(const CLI::Option& option) {
    std::vector<std::string> names;
    for (const std::string& name : option.get_snames()) {
        names.push_back("-" + name);
    }
    for (const std::string& name : option.get_lnames()) {
        names.push_back("--" + name);
    }
    return names;
}

std::string valueWord(const CLI::Option& option) {
    if (option.get_items_expected_max() == 0) {
        return {};
    }
    // Behind the word stand the checks' own: "N:INT in [1 - 8]", "HOW:{text,json}".
    const std::string type = option.get_type_name();
    std::size_t end = type.size();
    for (const char* const check : {":{", ":value in {", ":INT in ", ":FLOAT in "}) {
        end = std::min(end, type.find(check));
    }
    return type.substr(0, end);
}

std::vector<std::string> valueChoices(const CLI::Option& option) {
    const std::vector<std::string> names = typedNames(option);
    const auto isCalled = [&names](const char* name) {
        return std::find(names.begin(), names.end(), name) != names.end();
    };
    if (isCalled("--set") || isCalled("--animate")) {
        return parameterNames();
    }
    if (isCalled("--shape")) {
        return menuEntries(*findParameter(PARAM_PRESETS));
    }
    if (isCalled("--format")) {
        return formatNames();
    }
    return checkedNames(option.get_type_name());
}

} // namespace orbel::app
