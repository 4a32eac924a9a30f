#include "shapes/PathTokenizer.h"

#include "shapes/NumberText.h"

namespace orbel {

path_tokenizer::path_tokenizer(SvgReport* report)
    // The signs are among the commands because they start a number.
    : m_commands(maskOf("+-MmZzLlHhVvCcSsQqTtAaFfPp")),
      m_numerics(maskOf(".Ee0123456789")),
      m_separators(maskOf(" ,\t\n\r")),
      m_report(report) {}

path_tokenizer::CharacterMask path_tokenizer::maskOf(const char* characters) {
    CharacterMask mask;
    for (; *characters != '\0'; ++characters) {
        mask.set(static_cast<unsigned char>(*characters));
    }
    return mask;
}

bool path_tokenizer::contains(const CharacterMask& mask, char character) {
    return mask[static_cast<unsigned char>(character)];
}

void path_tokenizer::set_path_str(const char* text) {
    m_position = text;
    m_lastCommand = '\0';
    m_lastNumber = 0.0;
}

bool path_tokenizer::next() {
    m_commandRead = false;
    if (!skipToToken()) {
        return false;
    }
    const char character = *m_position;
    if (contains(m_commands, character) && character != '+' && character != '-') {
        m_lastCommand = character;
        m_commandRead = true;
        do {
            ++m_position;
        } while (contains(m_separators, *m_position));
        if (*m_position == '\0') {
            return true;
        }
    }
    readNumber();
    return true;
}

double path_tokenizer::next(char command) {
    if (next() && m_lastCommand == command) {
        return m_lastNumber;
    }
    m_report->add(SvgIssue::MissingParameter, command);
    return 0.0;
}

bool path_tokenizer::skipToToken() {
    while (*m_position != '\0' && !contains(m_commands, *m_position) &&
           !contains(m_numerics, *m_position)) {
        if (!contains(m_separators, *m_position)) {
            m_report->add(SvgIssue::InvalidCharacter, *m_position);
            m_position = "";
            return false;
        }
        ++m_position;
    }
    return *m_position != '\0';
}

void path_tokenizer::readNumber() {
    char text[256];
    char* end = text;
    const char* const last = text + sizeof text - 1;
    // A "+" is taken even when the buffer is full, a "-" is not: this is meant.
    while ((*m_position == '-' && end != last) || *m_position == '+') {
        if (end != last) {
            *end++ = *m_position;
        }
        ++m_position;
    }
    while (end != last && contains(m_numerics, *m_position)) {
        *end++ = *m_position++;
    }
    *end = '\0';
    m_lastNumber = parseNumber(text);
    if (m_report->wanted()) {
        reportNumber({text, static_cast<std::size_t>(end - text)});
    }
}

/// Numbers that are right elsewhere and something else here.
void path_tokenizer::reportNumber(std::string_view text) {
    if (text.find('.') != text.rfind('.')) {
        m_report->add(SvgIssue::TwoPoints, text);
    } else if (!text.empty() && (text.back() == 'e' || text.back() == 'E') &&
               (*m_position == '-' || *m_position == '+')) {
        m_report->add(SvgIssue::Exponent, std::string(text) + *m_position + "...");
    }
}

} // namespace orbel
