#include "app/Completions.h"

#include "app/OptionTree.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <sstream>
#include <vector>

namespace orbel::app {

namespace {

/// One word of a shell, whatever is in it.
std::string shellWord(const std::string& text) {
    std::string out = "'";
    for (const char c : text) {
        out += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return out + "'";
}

std::string shellWords(const std::vector<std::string>& list) {
    std::string out;
    for (const std::string& word : list) {
        out += " " + shellWord(word);
    }
    return out;
}

/// Names between "|", as the patterns of a case have them.
std::string pattern(const std::string& path, const std::vector<std::string>& names) {
    std::string out;
    for (const std::string& name : names) {
        std::string called = path;
        called += ' ';
        called += name;
        out += (out.empty() ? "" : "|") + shellWord(called);
    }
    return out;
}

std::vector<std::string> namesBelow(const CLI::App& command) {
    std::vector<std::string> names;
    for (const CLI::App* const below : shownCommands(command)) {
        names.push_back(below->get_name());
    }
    return names;
}

std::vector<std::string> optionNames(const CLI::App& command) {
    std::vector<std::string> names;
    for (const CLI::Option* const option : namedOptions(command)) {
        const std::vector<std::string> typed = typedNames(*option);
        names.insert(names.end(), typed.begin(), typed.end());
    }
    return names;
}

void bashPaths(const CLI::App& command, const std::string& path, std::ostream& out) {
    const std::vector<std::string> names = namesBelow(command);
    if (!names.empty()) {
        out << "        " << pattern(path, names) << ") path+=\" $word\" ;;\n";
    }
}

void bashValues(const CLI::App& command, const std::string& path, std::ostream& out) {
    for (const CLI::Option* const option : namedOptions(command)) {
        if (valueWord(*option).empty()) {
            continue;
        }
        out << "    " << pattern(path, typedNames(*option)) << ")\n        ";
        const std::vector<std::string> choices = valueChoices(*option);
        out << (choices.empty() ? std::string(":") : "_orbel_offer" + shellWords(choices)) << "\n"
            << "        return ;;\n";
    }
}

void bashWords(const CLI::App& command, const std::string& path, std::ostream& out) {
    out << "    " << shellWord(path) << ")\n        _orbel_offer" << shellWords(namesBelow(command))
        << "\n        [[ $current != -* ]] || _orbel_offer" << shellWords(optionNames(command))
        << " ;;\n";
}

constexpr const char* bashHead =
    R"bash(# Completion of orbel for bash, made from the program's own tables.

# Offers the values that begin with the current word, quoted as the shell wants them.
_orbel_offer() {
    local typed="${current#[\"\']}" value
    for value in "$@"; do
        if [[ $value == "$typed"* || $(printf %q "$value") == "$typed"* ]]; then
            [[ $value != *= ]] || compopt -o nospace 2>/dev/null
            if [[ $typed == "$current" ]]; then
                COMPREPLY+=("$(printf %q "$value")")
            else
                COMPREPLY+=("$value")
            fi
        fi
    done
}

_orbel() {
    local current="${COMP_WORDS[COMP_CWORD]}" before="${COMP_WORDS[COMP_CWORD - 1]}"
    local path=orbel word
    COMPREPLY=()
    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        case "$path $word" in
)bash";

std::string zshFunction(std::string path) {
    std::replace(path.begin(), path.end(), ' ', '_');
    return "_" + path;
}

/// The parts of a description that mean something to _arguments and _describe.
std::string escaped(const std::string& text) {
    std::string out;
    for (const char c : text) {
        if (c == ':' || c == '[' || c == ']' || c == '\\') {
            out += '\\';
        }
        out += c;
    }
    return out;
}

std::string zshAction(const CLI::Option& option) {
    const std::vector<std::string> choices = valueChoices(option);
    if (choices.empty()) {
        return "_files";
    }
    std::string list;
    for (const std::string& choice : choices) {
        list += (list.empty() ? "" : " ") + shellWord(choice);
    }
    const bool wantsMore = choices.front().ends_with('=');
    return "{local -a values; values=(" + list + "); compadd " + (wantsMore ? "-S '' " : "") +
           "-a values" + (typedNames(option).front() == "--shape" ? "; _files" : "") + "}";
}

std::string zshOption(const CLI::Option& option, const std::string& name) {
    const std::string word = valueWord(option);
    std::string text = "*" + name + "[" + escaped(option.get_description()) + "]";
    if (!word.empty()) {
        text += ":" + escaped(word) + ":" + zshAction(option);
    }
    return shellWord(text);
}

void zshCommand(const CLI::App& command, const std::string& path, std::ostream& out) {
    const bool hasCommands = !shownCommands(command).empty();
    out << zshFunction(path) << "() {\n";
    if (hasCommands) {
        out << "    local -a commands\n    local state\n    commands=(\n";
        for (const CLI::App* const below : shownCommands(command)) {
            out << "        "
                << shellWord(below->get_name() + ":" + escaped(below->get_description())) << '\n';
        }
        out << "    )\n";
    }
    out << "    _arguments " << (hasCommands ? "-C" : "");
    for (const CLI::Option* const option : namedOptions(command)) {
        for (const std::string& name : typedNames(*option)) {
            out << " \\\n        " << zshOption(*option, name);
        }
    }
    if (!hasCommands) {
        out << " \\\n        '*:file:_files'\n}\n\n";
        return;
    }
    out << " \\\n        '1:command:->command' '*::argument:->rest'\n    case $state in\n"
        << "    command) _describe command commands ;;\n    rest)\n        case $words[1] in\n";
    for (const CLI::App* const below : shownCommands(command)) {
        out << "        " << below->get_name() << ") "
            << zshFunction(path + " " + below->get_name()) << " ;;\n";
    }
    out << "        esac ;;\n    esac\n}\n\n";
}

} // namespace

std::string bashCompletion(const CLI::App& program) {
    const std::vector<CalledCommand> commands = allCommands(program);
    std::ostringstream out;
    out << bashHead;
    for (const auto& [command, path] : commands) {
        bashPaths(*command, path, out);
    }
    out << "        esac\n    done\n    case \"$path $before\" in\n";
    for (const auto& [command, path] : commands) {
        bashValues(*command, path, out);
    }
    out << "    esac\n    case \"$path\" in\n";
    for (const auto& [command, path] : commands) {
        bashWords(*command, path, out);
    }
    out << "    esac\n}\n\ncomplete -o default -F _orbel orbel\n";
    return out.str();
}

std::string zshCompletion(const CLI::App& program) {
    const std::string& name = program.get_name();
    std::ostringstream out;
    out << "#compdef " << name << "\n# Completion of " << name
        << " for zsh, made from the program's own tables.\n\n";
    for (const auto& [command, path] : allCommands(program)) {
        zshCommand(*command, path, out);
    }
    out << zshFunction(name) << " \"$@\"\n";
    return out.str();
}

} // namespace orbel::app
