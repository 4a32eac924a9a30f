#pragma once

#include <string>

namespace orbel {

/// A piece of writing that becomes a shape.
struct LetteringOptions {
    enum class Align { Left, Center, Right };

    std::string text; ///< UTF-8; line ends part lines
    /// Family, then words after colons: "DejaVu Sans:bold:italic". Not for single strokes.
    std::string font = "sans";
    bool singleStroke = false;    ///< one pen line instead of the letters' outlines
    std::string hand = "cursive"; ///< which letters of single strokes
    double size = 100.0;          ///< of the font, pixels; 1 to 10,000
    double width = 0.0;           ///< pixels that the longest line shall span; 0 leaves the size
    double lineHeight = 1.2;      ///< in sizes of the font; 0.1 to 10
    Align align = Align::Left;

    friend bool operator==(const LetteringOptions&, const LetteringOptions&) = default;
};

} // namespace orbel
