#pragma once

#include "drawing/Cascade.h"
#include "drawing/FontShaper.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace orbel {

/// What browsers take where no family is stated, or none that is installed.
constexpr const char* usualFamily = "Times New Roman";

/// How the letters of one element look and stand; lengths in its user units.
struct TextStyle {
    enum class Anchor { Start, Middle, End };

    FontChoice font;
    double size = 16.0;
    double letterSpacing = 0.0;
    double wordSpacing = 0.0;
    double raise = 0.0;   ///< of all baseline shifts, upwards
    int superscripts = 0; ///< shifts by as much as the font says, upwards
    int subscripts = 0;
    std::string dominantBaseline;
    std::string alignmentBaseline; ///< of the element alone
    Anchor anchor = Anchor::Start;
    bool rightToLeft = false;
    bool forcesDirection = false; ///< whatever the scripts
    bool vertical = false;
    std::string orientation; ///< of letters in vertical text: "upright", "sideways", or by script
    bool preserve = false;   ///< white space stays
    std::string letterCase;  ///< "uppercase", "lowercase", "capitalize", or as it is
    bool underline = false;
    bool overline = false;
    bool strike = false;
};

/// Works out the styles of a drawing's text elements from its cascade, which is borrowed.
class TextStyles {
public:
    explicit TextStyles(const Cascade& cascade) : m_cascade(cascade) {}

    [[nodiscard]] const TextStyle& of(const xmlNode* node);

private:
    void readFont(const xmlNode* node, double parentSize, TextStyle* style);
    [[nodiscard]] double sizeOf(const std::string& text, const xmlNode* node, double parentSize);
    static void readShorthand(const std::string& text, double parentSize, TextStyle* style);
    void readPlace(const xmlNode* node, TextStyle* style) const;
    void readBaseline(const xmlNode* node, TextStyle* style) const;

    const Cascade& m_cascade;
    std::map<const xmlNode*, TextStyle> m_known;
};

/// A length with its unit; `em` is the font's size, `whole` what 100 % is. Nothing is 0.
[[nodiscard]] double lengthOf(std::string_view text, double em, double whole);

/// A list of lengths, separated by white space or commas; lists end where they cannot be read.
[[nodiscard]] std::vector<double> lengthsOf(std::string_view text, double em, double whole);

} // namespace orbel
