#include "drawing/TextStyle.h"

#include "drawing/XmlTree.h"

#include <gtest/gtest.h>

#include <sstream>

namespace orbel {
namespace {

/// What a style says beyond that of the text around it, which has 20 units and says nothing else.
std::string told(const TextStyle& style) {
    std::ostringstream out;
    const auto tell = [&out](const char* name, const auto& value, const auto& usual) {
        if (value != usual) {
            out << name << ' ' << value << "; ";
        }
    };
    const FontChoice& font = style.font;
    tell("size", style.size, 20.0);
    tell("family", font.family, usualFamily);
    tell("weight", font.weight, 400);
    tell("stretch", font.stretch, 4);
    tell("italic", font.italic, false);
    tell("oblique", font.oblique, false);
    tell("capitals", font.smallCaps, false);
    tell("features", font.features, "");
    tell("letters", style.letterSpacing, 0.0);
    tell("words", style.wordSpacing, 0.0);
    tell("raise", style.raise, 0.0);
    tell("shifts", style.superscripts - style.subscripts, 0);
    tell("baseline", style.dominantBaseline, "");
    tell("anchor", static_cast<int>(style.anchor), 0);
    tell("right to left", style.rightToLeft, false);
    tell("vertical", style.vertical, false);
    tell("lines", 100 * style.underline + 10 * style.overline + 1 * style.strike, 0);
    return out.str();
}

/// Of a text with these declarations inside the other.
TextStyle styleOf(const std::string& declarations) {
    std::string error;
    const XmlTree tree = parseXmlTree(
        "<svg style='font-size:20px'><text style='" + declarations + "'/></svg>", &error);
    xmlNode* const root = xmlDocGetRootElement(tree.get());
    const Cascade cascade(root);
    return TextStyles(cascade).of(root->children);
}

TEST(TextStyle, sizesAreInUnitsNamedOrOfTheTextAround) {
    const std::pair<const char*, double> rows[] = {
        {"8px", 8},      {"50%", 10},      {"2em", 40},    {"3ex", 30},           {"12pt", 16},
        {"2pc", 32},     {"0.5in", 48},    {"12.7mm", 48}, {"2.54cm", 96},        {"+7", 7},
        {"xx-small", 9}, {"x-small", 10},  {"small", 13},  {"medium", 16},        {"large", 18},
        {"x-large", 24}, {"xx-large", 32}, {"larger", 24}, {"smaller", 20 / 1.2}, {"1.5rem", 30},
        {"-3", 20},      {"tall", 20}};
    for (const auto& [size, expected] : rows) {
        EXPECT_DOUBLE_EQ(styleOf(std::string("font-size: ") + size).size, expected) << size;
    }
}

TEST(TextStyle, isWhatItsDeclarationsSay) {
    const std::pair<const char*, const char*> rows[] = {
        {"", ""},
        {"font-weight: bold", "weight 700; "},
        {"font-weight: bolder", "weight 700; "},
        {"font-weight: lighter", "weight 100; "},
        {"font-weight: 5000", "weight 1000; "},
        {"font-weight: heavy", ""},
        {"font-stretch: condensed", "stretch 2; "},
        {"font-stretch: wider", "stretch 5; "},
        {"font-stretch: narrower", "stretch 3; "},
        {"font-style: italic", "italic 1; "},
        {"font-style: oblique 10deg", "oblique 1; "},
        {"font-variant: all-small-caps", "capitals 1; "},
        {"font-family: \"A B\", serif", "family A B,serif; "},
        {"font-family: sans-serif", "family sans; "},
        {"font-kerning: none", "features kern 0; "},
        {"font: italic 700 condensed 150%/2 \"A\"",
         "size 30; family A,Times New Roman; weight 700; stretch 2; italic 1; "},
        {"font: small-caps oblique larger x",
         "size 24; family x,Times New Roman; oblique 1; capitals 1; "},
        {"letter-spacing: .1em", "letters 2; "},
        {"word-spacing: 15%", "words 3; "},
        {"baseline-shift: sub", "shifts -1; "},
        {"baseline-shift: super", "shifts 1; "},
        {"dominant-baseline: text-top", ""},
        {"dominant-baseline: central", "baseline central; "},
        {"font-feature-settings: \"liga\" off, \"c2sc\", smcp", "features liga 0, c2sc 1; "},
        {"baseline-shift: 25%", "raise 5; "},
        {"text-anchor: middle", "anchor 1; "},
        {"text-anchor: end", "anchor 2; "},
        {"direction: rtl", "right to left 1; "},
        {"writing-mode: tb-rl", "vertical 1; "},
        {"writing-mode: vertical-lr", "vertical 1; "},
        {"text-decoration: underline line-through", "lines 101; "},
        {"text-decoration-line: overline", "lines 10; "},
    };
    for (const auto& [declarations, expected] : rows) {
        EXPECT_EQ(told(styleOf(declarations)), expected) << declarations;
    }
}

TEST(TextStyle, readsListsOfLengthsAsFarAsTheyGo) {
    EXPECT_EQ(lengthsOf(" 1,2em 3% -4+5px\t6x7", 10, 200),
              (std::vector<double>{1, 20, 6, -4, 5, 6, 7}));
    EXPECT_EQ(lengthsOf("1 2 auto 3", 1, 1), (std::vector<double>{1, 2}));
    EXPECT_EQ(lengthOf("auto", 10, 10), 0.0);
}

} // namespace
} // namespace orbel
