#include "app/ManPage.h"

#include "app/OptionTree.h"

#include <CLI/CLI.hpp>

#include <cctype>
#include <sstream>

namespace orbel::app {

namespace {

/// Text as it stands: nothing in it is a request, a minus stays one.
std::string plain(const std::string& text) {
    std::string out;
    bool lineStarts = true;
    for (const char c : text) {
        if (lineStarts && (c == '.' || c == '\'')) {
            out += "\\&";
        }
        if (c == '\\') {
            out += "\\e";
        } else if (c == '-') {
            out += "\\-";
        } else {
            out += c;
        }
        lineStarts = c == '\n';
    }
    return out;
}

std::string bold(const std::string& text) {
    return "\\fB" + plain(text) + "\\fR";
}

std::string italic(const std::string& text) {
    return "\\fI" + plain(text) + "\\fR";
}

std::string withStop(std::string sentence) {
    if (!sentence.empty() && sentence.back() != '.') {
        sentence += '.';
    }
    return sentence;
}

/// Paragraphs; what stands indented is shown line by line.
void writeText(const std::string& text, std::ostream& out) {
    std::istringstream lines(text);
    bool isShown = false;
    for (std::string line; std::getline(lines, line);) {
        const bool indented = line.starts_with(' ');
        if (indented != isShown) {
            out << (indented ? ".nf\n.RS 2\n" : ".RE\n.fi\n");
            isShown = indented;
        }
        out << (line.empty() ? ".PP" : plain(line)) << '\n';
    }
    out << (isShown ? ".RE\n.fi\n" : "");
}

void writeOption(const CLI::Option& option, std::ostream& out) {
    out << ".TP\n";
    const char* between = "";
    for (const std::string& name : typedNames(option)) {
        out << between << bold(name);
        between = ", ";
    }
    const std::string word = valueWord(option);
    out << (word.empty() ? "" : " " + italic(word)) << '\n'
        << plain(withStop(option.get_description())) << '\n';
}

void writePlaced(const CLI::Option& option, std::ostream& out) {
    out << ".TP\n"
        << italic(valueWord(option)) << '\n'
        << plain(withStop(option.get_description())) << '\n';
}

std::string synopsis(const CLI::App& command, const std::string& name) {
    std::string line = bold(name);
    for (const CLI::Option* const option : placedOptions(command)) {
        const std::string word = italic(valueWord(*option));
        line += option->get_required() ? " " + word : " [" + word + "]";
    }
    return line + (shownCommands(command).empty() ? " [" + italic("OPTION") + "...]"
                                                  : " " + italic("COMMAND"));
}

void writeCommand(const CLI::App& command, const std::string& name, std::ostream& out) {
    out << ".SS \"" << plain(name) << "\"\n"
        << plain(withStop(command.get_description())) << "\n.PP\n"
        << synopsis(command, name) << '\n';
    for (const CLI::Option* const option : placedOptions(command)) {
        writePlaced(*option, out);
    }
    for (const CLI::Option* const option : namedOptions(command)) {
        if (option != command.get_help_ptr()) {
            writeOption(*option, out);
        }
    }
    if (const std::string footer = command.get_footer(); !footer.empty()) {
        out << ".PP\n";
        writeText(footer, out);
    }
}

std::string inCapitals(std::string text) {
    for (char& c : text) {
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    }
    return text;
}

/// The first letter small, as names of manual pages go on.
std::string asSummary(std::string text) {
    text[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(text[0])));
    return text;
}

} // namespace

std::string manPage(const CLI::App& program, const std::string& version) {
    const std::string& name = program.get_name();
    std::ostringstream out;
    out << R"(.\" Made from the texts of ")" << name << " --help\".\n.TH " << inCapitals(name)
        << R"( 1 "" ")" << name << ' ' << version << "\" \"User Commands\"\n.SH NAME\n"
        << name << R"( \- )" << plain(asSummary(program.get_description())) << "\n.SH SYNOPSIS\n"
        << synopsis(program, name) << "\n.SH DESCRIPTION\n"
        << plain(withStop(program.get_description())) << '\n';
    writeText(program.get_footer(), out);
    out << ".SH OPTIONS\n";
    for (const CLI::Option* const option : namedOptions(program)) {
        writeOption(*option, out);
    }
    out << ".SH COMMANDS\n";
    for (const CalledCommand& called : allCommands(program)) {
        if (called.command != &program) {
            writeCommand(*called.command, called.path, out);
        }
    }
    return out.str();
}

} // namespace orbel::app
