#include "drawing/Lettering.h"

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

TEST(Lettering, saysWhatItCannotWrite) {
    const auto messageFor = [](const auto& change) {
        LetteringOptions options;
        options.text = "a";
        change(&options);
        return letterText(options).message;
    };
    EXPECT_THAT(messageFor([](auto* o) { o->text = " "; }), HasSubstr("nothing to write"));
    EXPECT_THAT(messageFor([](auto* o) { o->text = "\xff"; }), HasSubstr("not UTF-8"));
    EXPECT_THAT(messageFor([](auto* o) { o->font = "Sans:fat"; }), HasSubstr("no style"));
    EXPECT_THAT(messageFor([](auto* o) {
                    o->singleStroke = true;
                    o->hand = "left";
                }),
                HasSubstr("no hand"));
}

} // namespace
} // namespace orbel
