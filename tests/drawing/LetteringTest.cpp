#include "drawing/Lettering.h"
#include "drawing/SingleStrokes.h"
#include "shapes/PathModel.h"
#include "shapes/SvgParser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace orbel {
namespace {

using testing::HasSubstr;

TEST(Lettering, writesLettersInReadingOrder) {
    LetteringOptions options;
    options.font = "DejaVu Sans:bold";
    options.text = "io\nl";
    const Conversion written = letterText(options);
    ASSERT_TRUE(written.shape) << written.message;
    std::string letters;
    for (const auto& part : written.shape->outlines) {
        letters += part.source.title;
        EXPECT_TRUE(part.closed);
    }
    EXPECT_EQ(letters, "iiool"); // a dot and a stem, a ring and its hole
    options.width = 300;
    EXPECT_NEAR(letterText(options).shape->width, 300, 60);
    options.text = "אב";
    EXPECT_EQ(letterText(options).shape->outlines.front().source.title, "א");
}

TEST(Lettering, drawsPenLinesThatStayOpen) {
    LetteringOptions options;
    options.singleStroke = true;
    options.hand = "futural";
    options.text = "L\xc3\xa9";
    const Conversion written = letterText(options);
    ASSERT_TRUE(written.shape) << written.message;
    ASSERT_EQ(written.shape->outlines.size(), 1U); // its two lines are one, the pen stays down
    EXPECT_FALSE(written.shape->outlines.front().closed);
    EXPECT_THAT(written.shape->notes.front(), HasSubstr("U+00E9"));
}

// A letter of one line and a lone point, one of nothing, and no letter at all.
TEST(Lettering, readsThePensWayFromPairsOfCharacters) {
    const std::vector<PenLetter> letters = parseHand("    1  5JZJ[R[ RQR\n    2  1RR\nno");
    ASSERT_EQ(letters.size(), 3U);
    ASSERT_EQ(letters[0].lines.size(), 1U);
    const auto& line = letters[0].lines[0];
    ASSERT_EQ(line.size(), 2U);
    EXPECT_EQ(line[0], (PlanePoint{0, 0}));
    EXPECT_EQ(line[1], (PlanePoint{letters[0].advance / 2, 0}));
    EXPECT_TRUE(letters[1].lines.empty() && letters[2].lines.empty());
}

/// Width, height and baseline of a writing, then the box of every outline, all to a tenth.
std::string pageOf(const LetteringOptions& options) {
    const Conversion written = letterText(options);
    if (!written.shape) {
        return written.message;
    }
    PluginPath_Impl path;
    svg_parser parser;
    parser.setPath(&path);
    parser.parseBuffer(written.shape->svg);
    std::string text;
    const auto tell = [&text](double number, const char* end) {
        char digits[32];
        std::snprintf(digits, sizeof digits, "%.1f%s", std::round(number * 10) / 10 + 0.0, end);
        text += digits;
    };
    tell(written.shape->width, " ");
    tell(written.shape->height, " ");
    tell(written.shape->baseline, ";");
    for (const auto& outline : path.outlines()) {
        OutlineBox box;
        for (const Vx_PathVertex& v : outline.vertices) {
            box.add(PlanePoint{v.x, v.y});
        }
        tell(box.left, " ");
        tell(box.top, " ");
        tell(box.right, " ");
        tell(box.bottom, ";");
    }
    for (const std::string& note : written.shape->notes) {
        text += note + ";";
    }
    return text;
}

TEST(Lettering, setsLinesOnThePage) {
    using Options = LetteringOptions;
    const std::pair<void (*)(Options&), const char*> rows[] = {
        {[](Options&) {},
         "125.9 216.5 86.5;10.0 10.0 52.7 86.5;69.1 13.6 115.9 86.5;10.0 130.0 52.7 206.5;"},
        {[](Options& o) { o.size = 50; },
         "63.0 108.3 43.3;5.0 5.0 26.3 43.3;34.5 6.8 58.0 43.3;5.0 65.0 26.3 103.3;"},
        {[](Options& o) { o.align = Options::Align::Center; },
         "125.9 216.5 86.5;10.0 10.0 52.7 86.5;69.1 13.6 115.9 86.5;40.1 130.0 82.8 206.5;"},
        {[](Options& o) { o.align = Options::Align::Right; },
         "125.9 216.5 86.5;10.0 10.0 52.7 86.5;69.1 13.6 115.9 86.5;70.2 130.0 112.9 206.5;"},
        {[](Options& o) { o.lineHeight = 2; },
         "125.9 296.5 86.5;10.0 10.0 52.7 86.5;69.1 13.6 115.9 86.5;10.0 210.0 52.7 286.5;"},
        {[](Options& o) { o.width = 240.8; },
         "251.8 433.0 173.0;20.0 20.0 105.3 173.0;138.2 27.2 231.8 173.0;20.0 260.0 105.3 413.0;"},
        {[](Options& o) { o.text = "\x01\tl\n\nl"; },
         "122.9 336.5 86.5;70.2 10.0 112.9 86.5;10.0 250.0 52.7 326.5;"},
        {[](Options& o) { o.font = "DejaVu Sans:bold:condensed"; },
         "110.3 216.0 86.0;10.0 10.0 25.7 86.0;41.5 13.1 100.3 86.0;10.0 130.0 25.7 206.0;"},
        {[](Options& o) { o.font = "DejaVu Sans Mono:oblique"; },
         "125.6 216.5 86.5;10.0 10.0 42.5 86.5;54.6 13.6 115.6 86.5;10.0 130.0 42.5 206.5;"},
        {[](Options& o) {
             o.font = "No Such Font";
             o.text.assign(1, '\n');
         },
         "there is nothing to write"},
        {[](Options& o) {
             o.singleStroke = true;
             o.hand = "futural";
             o.text = " lL\x7f\u00e9\nL";
         },
         "196.7 210.0 80.0;63.3 10.0 63.3 80.0;90.0 10.0 130.0 80.0;133.3 10.0 186.7 80.0;10.0 "
         "130.0 50.0 200.0;the hand \"futural\" has no U+00E9: left out;"},
    };
    for (const auto& [change, page] : rows) {
        LetteringOptions options;
        options.font = "DejaVu Sans Mono";
        options.text = "lH\nl";
        change(options);
        EXPECT_EQ(pageOf(options), page);
    }
}

TEST(Lettering, saysWhatItCannotWrite) {
    LetteringOptions empty;
    empty.text = std::string(1, ' ');
    EXPECT_THAT(letterText(empty).message, HasSubstr("nothing to write"));
    empty.text = std::string(100001, 'a');
    EXPECT_THAT(letterText(empty).message, HasSubstr("longer than 100,000 bytes"));
    LetteringOptions options;
    options.text = "\xff";
    EXPECT_THAT(letterText(options).message, HasSubstr("not UTF-8"));
    options.text = "word";
    options.hand = "left";
    options.singleStroke = true;
    EXPECT_THAT(letterText(options).message, HasSubstr("no hand"));
    options.font = "Sans:fat";
    options.singleStroke = false;
    EXPECT_THAT(letterText(options).message, HasSubstr("no style"));
}

} // namespace
} // namespace orbel
