#pragma once

#include <charconv>
#include <string>

namespace orbel {

/// A number as people write it in a sentence, whatever the locale: 10, 0.2, 1e+06.
[[nodiscard]] inline std::string shortNumber(double value) {
    char text[32];
    constexpr int digits = 6;
    return {text, std::to_chars(std::begin(text), std::end(text), value, std::chars_format::general,
                                digits)
                      .ptr};
}

} // namespace orbel
