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
    tell("family", font.family, "sans");
    tell("weight", font.weight, 400);
    tell("stretch", font.stretch, 4);
    tell("italic", font.italic, false);
    tell("oblique", font.oblique, false);
    tell("capitals", font.smallCaps, false);
    tell("features", font.features, "");
    tell("letters", style.letterSpacing, 0.0);
    tell("words", style.wordSpacing, 0.0);
    tell("raise", style.raise, 0.0);
    tell("anchor", static_cast<int>(style.anchor), 0);
    tell("right to left", style.rightToLeft, false);
    tell("vertical", style.vertical, false);
    tell("lines", 100 * style.underline + 10 * style.overline + 1 * style.strike, 0);
    return out.str();
}

TEST(TextStyle, isWhatItsDeclarationsSay) {
    const std::pair<const char*, const char*> rows[] = {
        {"", ""},
        {"font-size: 8px", "size 8; "},
        {"font-size: 50%", "size 10; "},
        {"font-size: 2em", "size 40; "},
        {"font-size: 3ex", "size 30; "},
        {"font-size: 12pt", "size 16; "},
        {"font-size: 2pc", "size 32; "},
        {"font-size: 0.5in", "size 48; "},
        {"font-size: 12.7mm", "size 48; "},
        {"font-size: 2.54cm", "size 96; "},
        {"font-size: xx-small", "size 9.6; "},
        {"font-size: x-small", "size 12; "},
        {"font-size: small", "size 14.222; "},
        {"font-size: medium", "size 16; "},
        {"font-size: large", "size 19.2; "},
        {"font-size: x-large", "size 24; "},
        {"font-size: xx-large", "size 32; "},
        {"font-size: smaller", "size 16.6667; "},
        {"font-size: larger", "size 24; "},
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
        {"font-family: 'A B', serif", "family A B,serif; "},
        {"font-family: sans-serif", ""},
        {"font-kerning: none", "features kern 0; "},
        {"font: italic 700 condensed 150%/2 \"A\"",
         "size 30; family A; weight 700; stretch 2; italic 1; "},
        {"font: small-caps oblique larger x", "size 24; family x; oblique 1; capitals 1; "},
        {"letter-spacing: .1em", "letters 2; "},
        {"word-spacing: 15%", "words 3; "},
        {"baseline-shift: sub", "raise -4; "},
        {"baseline-shift: super", "raise 8; "},
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
        std::string error;
        const XmlTree tree =
            parseXmlTree(std::string("<svg style='font-size:20px'><text/></svg>"), &error);
        xmlNode* const root = xmlDocGetRootElement(tree.get());
        setAttribute(root->children, "style", declarations);
        const Cascade cascade(root);
        EXPECT_EQ(told(TextStyles(cascade).of(root->children)), expected) << declarations;
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
