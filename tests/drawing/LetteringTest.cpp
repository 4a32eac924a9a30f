#include "drawing/Lettering.h"
#include "drawing/SingleStrokes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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

TEST(Lettering, saysWhatItCannotWrite) {
    LetteringOptions empty;
    empty.text = std::string(1, ' ');
    EXPECT_THAT(letterText(empty).message, HasSubstr("nothing to write"));
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
