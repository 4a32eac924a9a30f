#include "scene/Diagnostics.h"

#include <array>
#include <charconv>
#include <ostream>

namespace orbel {

namespace {

constexpr std::size_t mostProblems = 200;
constexpr std::size_t mostQuotedBytes = 80;

/// Names and keys come from outside and end up on a terminal.
std::string printable(const std::string& text) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string result;
    for (const char c : text) {
        const auto code = static_cast<unsigned char>(c);
        if (code < 0x20 || code == 0x7f) {
            result += "\\x";
            result += digits[code >> 4];
            result += digits[code & 15];
        } else {
            result += c;
        }
    }
    return result;
}

/// A step of a JSON pointer, where "~" and "/" are written "~0" and "~1".
std::string pointerStep(std::string_view key) {
    std::string step = "/";
    for (const char c : key) {
        if (c == '~') {
            step += "~0";
        } else if (c == '/') {
            step += "~1";
        } else {
            step += c;
        }
    }
    return step;
}

/// Does not cut inside a character.
std::string_view readableLength(std::string_view text) {
    if (text.size() <= mostQuotedBytes) {
        return text;
    }
    std::size_t end = mostQuotedBytes;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) {
        --end;
    }
    return text.substr(0, end);
}

} // namespace

void Problems::add(Problem problem) {
    if (m_items.size() < mostProblems) {
        m_items.push_back(std::move(problem));
    } else {
        ++m_left;
    }
}

bool Problems::full() const {
    return m_items.size() >= mostProblems;
}

std::string sentence(const Problem& problem) {
    std::string text = problem.file;
    if (!problem.place.empty()) {
        text += " (" + problem.place + ")";
    }
    text += ": " + problem.message;
    if (!problem.remedy.empty()) {
        text += "; " + problem.remedy;
    }
    return printable(text);
}

void print(const Problems& problems, std::ostream& out) {
    for (const Problem& problem : problems.items()) {
        out << sentence(problem) << '\n';
    }
    if (problems.left() > 0) {
        out << "and " << problems.left() << " more\n";
    }
}

Site Site::at(std::string_view key) const {
    return {m_file, m_place + pointerStep(key), m_problems};
}

Site Site::at(std::size_t index) const {
    return {m_file, m_place + "/" + std::to_string(index), m_problems};
}

void Site::report(std::string message, std::string remedy) const {
    m_problems->add({m_file, m_place, std::move(message), std::move(remedy)});
}

std::string inQuotes(std::string_view text) {
    const std::string_view shown = readableLength(text);
    std::string result = "\"";
    result += shown;
    result += shown.size() < text.size() ? "...\"" : "\"";
    return result;
}

std::string numberText(double value) {
    std::array<char, 32> buffer{};
    const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    return {buffer.data(), written.ptr};
}

} // namespace orbel
