#include "drawing/TextLayout.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <sstream>

namespace orbel {
namespace {

double rounded(double value, double unit) {
    return std::round(value / unit) * unit + 0.0; // no minus before a zero
}

/// Where every letter of a text stands, in letters' widths across and units down: "a 0 0, b 1 0";
/// then what else there is to say of it. A letter of the font is 6.02 units wide.
std::string laidOut(const std::string& attributes, const std::string& inside) {
    std::string error;
    const XmlTree tree = parseXmlTree(
        "<svg viewBox='0 0 200 100'><path id='p' d='M20 10V70' pathLength='6' fill='none'/>"
        "<text font-family='DejaVu Sans Mono' font-size='10' " +
            attributes + ">" + inside + "</text></svg>",
        &error);
    xmlNode* const root = xmlDocGetRootElement(tree.get());
    if (root == nullptr) {
        return error;
    }
    const Cascade cascade(root);
    TextStyles styles(cascade);
    FontShaper shaper;
    const TextLayout layout = layOutText(xmlLastElementChild(root), &styles, cascade, &shaper);
    std::ostringstream out;
    for (const PlacedCluster& c : layout.clusters) {
        out << (out.tellp() > 0 ? ", " : "") << layout.characters[c.character].text << ' '
            << rounded(c.x / 6.02, 0.1) << ' ' << rounded(c.y, 0.1);
        const auto tell = [&out](const char* name, double value, double usual) {
            if (std::abs(value - usual) > 0.05) {
                out << ' ' << name << rounded(value, 0.1);
            }
        };
        tell("turn ", c.turn * 180 / std::numbers::pi, 0);
        tell("stretch ", c.stretch, 1);
        tell("raise ", c.raise, 0);
        out << (c.sideways ? " sideways" : "") << (c.hidden ? " hidden" : "");
    }
    return out.str();
}

TEST(TextLayout, placesLettersAsBrowsersDo) {
    struct Row {
        const char* attributes;
        const char* inside;
        const char* places;
    };
    const Row rows[] = {
        {"y='20'", "abc", "a 0 20, b 1 20, c 2 20"},
        {"x='6.02' y='10%' dx='6.02 12.04' dy='1 2 3'", "abc", "a 2 11, b 5 13, c 6 16"},
        {"x='50%'", "a", "a 16.6 0"},
        {"x='0 60.2' y='1 2'", "abc", "a 0 1, b 10 2, c 11 2"},
        {"rotate='90 45'", "abc", "a 0 0 turn 90, b 1 0 turn 45, c 2 0 turn 45"},
        {"x='6.02'", "a<tspan x='0' y='30' rotate='10'>bc</tspan>d",
         "a 1 0, b 0 30 turn 10, c 1 30 turn 10, d 2 30"},
        {"x='0 12.04'", "a<tspan dx='6.02'>b</tspan>c", "a 0 0, b 3 0, c 4 0"},
        {"x='60.2' text-anchor='middle'", "abcd", "a 8 0, b 9 0, c 10 0, d 11 0"},
        {"x='60.2' text-anchor='end' dx='0 6.02'", "ab", "a 7 0, b 9 0"},
        {"x='60.2' direction='rtl'", "ab", "a 8 0, b 9 0"},
        {"x='60.2' direction='rtl' text-anchor='end'", "ab", "a 10 0, b 11 0"},
        {"unicode-bidi='bidi-override' direction='rtl' x='60.2'", "abc", "c 7 0, b 8 0, a 9 0"},
        {"", "a<tspan unicode-bidi='bidi-override' direction='rtl'>bc</tspan>d",
         "a 0 0, c 1 0, b 2 0, d 3 0"},
        {"letter-spacing='6.02'", "abc", "a 0 0, b 2 0, c 4 0"},
        {"word-spacing='6.02'", "a b c", "a 0 0,   1 0, b 3 0,   4 0, c 6 0"},
        {"textLength='30.1'", "abc", "a 0 0, b 2 0, c 4 0"},
        {"textLength='36.12' lengthAdjust='spacingAndGlyphs'", "abc",
         "a 0 0 stretch 2, b 2 0 stretch 2, c 4 0 stretch 2"},
        {"", "a<tspan textLength='24.08'>bc</tspan>d", "a 0 0, b 1 0, c 4 0, d 7 0"},
        {"textLength='0'", "ab", "a 0 0, b 1 0"},
        {"", "  a \n\t b<tspan> c </tspan> ", "a 0 0,   1 0, b 2 0,   3 0, c 4 0"},
        {"style='white-space:pre'", " a  b ", "  0 0, a 1 0,   2 0,   3 0, b 4 0,   5 0"},
        {"", "a<tspan display='none'>b</tspan><title>t</title>c", "a 0 0, c 1 0"},
        {"text-transform='uppercase'", "ab", "A 0 0, B 1 0"},
        {"text-transform='lowercase'", "AB", "a 0 0, b 1 0"},
        {"text-transform='capitalize'", "o'er ab",
         "O 0 0, ' 1 0, e 2 0, r 3 0,   4 0, A 5 0, b 6 0"},
        {"", "e&#x301;b", "e 0 0, b 1 0"},
        {"x='0 60.2 120.4' rotate='5 50 20'", "e&#x301;b", "e 0 0 turn 5, b 20 0 turn 20"},
        {"writing-mode='vertical-rl' x='60.2'", "ab",
         "a 10 0 raise -3.5 sideways, b 10 6 raise -3.5 sideways"},
        {"writing-mode='vertical-rl' y='50' dy='0 3' text-anchor='end'", "ab",
         "a 0 35 raise -3.5 sideways, b 0 44 raise -3.5 sideways"},
        {"dominant-baseline='middle'", "a", "a 0 0 raise -2.5"},
        {"dominant-baseline='central'", "a", "a 0 0 raise -3.5"},
        {"dominant-baseline='hanging'", "a", "a 0 0 raise -7.4"},
        {"dominant-baseline='mathematical'", "a", "a 0 0 raise -4.6"},
        {"dominant-baseline='text-before-edge'", "a", "a 0 0 raise -9.3"},
        {"dominant-baseline='ideographic'", "a", "a 0 0 raise 2.4"},
        {"dominant-baseline='hanging'", "a<tspan alignment-baseline='text-after-edge'>b</tspan>",
         "a 0 0 raise -7.4, b 1 0 raise 2.4"},
        {"", "a<tspan baseline-shift='30%'>b</tspan>", "a 0 0, b 1 0 raise 3"},
        {"", "<textPath href='#p'>ab</textPath>c", "a 3.3 10 turn 90, b 3.3 16 turn 90, c 3.3 70"},
        {"", "<textPath href='#p' startOffset='50%' side='right'>ab</textPath>",
         "a 3.3 40 turn 90, b 3.3 46 turn 90"},
        {"", "<textPath href='#p' startOffset='5.5'>ab</textPath>",
         "a 3.3 65 turn 90, b 3.3 71 turn 90 hidden"},
        {"text-anchor='middle' dy='2'", "<textPath href='#p' startOffset='3'>ab</textPath>",
         "a 3 34 turn 90, b 3 40 turn 90"},
        {"", "<textPath path='M0 5H6.02L12.04 5M30 30V90' startOffset='6.02'>abc</textPath>",
         "a 1 5, b 5 30 turn 90, c 5 36 turn 90"},
        {"", "<textPath href='#none'>a</textPath>", "a -0.5 0 hidden"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(laidOut(row.attributes, row.inside), row.places)
            << row.attributes << ' ' << row.inside;
    }
}

} // namespace
} // namespace orbel
