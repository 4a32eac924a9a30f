#include "media/SequencePattern.h"

#include "media/MediaError.h"

#include <gtest/gtest.h>

namespace orbel {
namespace {

TEST(SequencePattern, ExpandsLikeThePrintedNumber) {
    const struct {
        const char* pattern;
        long number;
        const char* path;
    } cases[] = {
        {"a/b-%04d.png", 7, "a/b-0007.png"},
        {"a/b-%04d.png", 123456, "a/b-123456.png"},
        {"%d.png", 0, "0.png"},
        {"%3d.png", 5, "  5.png"},
        {"%04d.png", -12, "-012.png"},
        {"%4d.png", -12, " -12.png"},
        {"100%%-%02d.png", 3, "100%-03.png"},
        {"50%/%02d.png", 3, "50%/03.png"},
        {"%s/%n/still.png", 9, "%s/%n/still.png"},
        {"all%%.png", 9, "all%.png"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(SequencePattern(c.pattern).pathOf(c.number), c.path) << c.pattern;
    }
}

TEST(SequencePattern, RefusesEverythingElse) {
    for (const char* pattern :
         {"%s.png", "%n.png", "%04x.png", "%*d.png", "%-4d.png", "%+d.png", "%ld.png", "a%",
          "%04d-%04d.png", "%99999999999999999999d.png", "%.3d.png", "%19d.png"}) {
        EXPECT_THROW(SequencePattern{pattern}, MediaError) << pattern;
    }
}

TEST(SequencePattern, RecognisesOnlyTheNamesThatItMakes) {
    const SequencePattern pattern("x/shot-%04d.png");
    EXPECT_EQ(pattern.numberOf("shot-0012.png"), 12);
    EXPECT_EQ(pattern.numberOf("shot-12345.png"), 12345);
    EXPECT_EQ(pattern.numberOf("shot--001.png"), -1);
    for (const char* name : {"shot-12.png", "shot-0012.png.part", "shot-.png", "shot-00a2.png",
                             "hot-0012.png", "shot-99999999999999999999.png", ""}) {
        EXPECT_EQ(pattern.numberOf(name), std::nullopt) << name;
    }
    EXPECT_EQ(SequencePattern("%3d").numberOf("  5"), 5);
    EXPECT_EQ(SequencePattern("still.png").numberOf("still.png"), std::nullopt);
}

} // namespace
} // namespace orbel
