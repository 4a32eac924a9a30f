#pragma once

#include "shapes/SvgReport.h"

#include <bitset>
#include <string_view>

namespace orbel {

/// Splits path data ("M 10 20 L 5-5") into commands and numbers. Numbers are read with "." whatever
/// the locale says, at most 255 characters of each; one that cannot be read is 0.
class path_tokenizer {
public:
    /// `report` is borrowed, never null.
    explicit path_tokenizer(SvgReport* report = SvgReport::silent());

    /// Starts on a new text, NUL-terminated and borrowed, with no last command and number 0.
    void set_path_str(const char* text);
    /// Advances to the next token: a command with its first number, or a further number. False at
    /// the end and at a character that does not belong here, which ends the text.
    bool next();
    /// One more number that must belong to `command`; 0.0 when there is none. A foreign command
    /// met here is used up.
    double next(char command);
    [[nodiscard]] char last_command() const { return m_lastCommand; }
    [[nodiscard]] double last_number() const { return m_lastNumber; }
    /// Whether the last token began with a command letter, rather than repeating the one before.
    [[nodiscard]] bool commandRead() const { return m_commandRead; }

private:
    using CharacterMask = std::bitset<256>;

    static CharacterMask maskOf(const char* characters);
    static bool contains(const CharacterMask& mask, char character);
    bool skipToToken();
    void readNumber();
    void reportNumber(std::string_view text);

    CharacterMask m_commands;
    CharacterMask m_numerics;
    CharacterMask m_separators;
    const char* m_position = "";
    char m_lastCommand = '\0';
    double m_lastNumber = 0.0;
    bool m_commandRead = false;
    SvgReport* m_report;
};

} // namespace orbel
