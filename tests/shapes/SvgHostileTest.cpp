#include "tests/shapes/SvgText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace orbel {
namespace {

using test::Notices;
using test::outlinesOf;
using test::readSvg;

std::string repeated(const std::string& text, std::size_t count) {
    std::string result;
    result.reserve(text.size() * count);
    for (std::size_t i = 0; i != count; ++i) {
        result += text;
    }
    return result;
}

SvgIssue lastIssue(const std::string& text) {
    Notices notices;
    readSvg(text, &notices);
    EXPECT_FALSE(notices.all.empty());
    return notices.all.empty() ? SvgIssue::FileNotRead : notices.all.back().issue;
}

TEST(HostileSvg, deepNestingIsReadAndVeryDeepNestingEnds) {
    const std::string deep = repeated("<g>", 100000) + "<line/>" + repeated("</g>", 100000);
    EXPECT_EQ(readSvg(deep, nullptr).outlines().size(), 1U);
    EXPECT_EQ(lastIssue(repeated("<g>", 1100000)), SvgIssue::LimitReached);
}

TEST(HostileSvg, entitiesDoNotMultiplyWithoutBound) {
    std::string laughs = "<!DOCTYPE svg [<!ENTITY a0 'ha'>";
    for (int i = 1; i != 30; ++i) {
        const std::string inner = "&a" + std::to_string(i - 1) + ";";
        laughs += "<!ENTITY a" + std::to_string(i) + " '" + repeated(inner, 10) + "'>";
    }
    EXPECT_EQ(lastIssue(laughs + "]><svg><title>&a29;</title></svg>"), SvgIssue::XmlError);
    EXPECT_EQ(lastIssue(laughs + "]><svg><path d='&a29;'/></svg>"), SvgIssue::XmlError);
    EXPECT_EQ(lastIssue("<!DOCTYPE s [<!ENTITY a '&b;'><!ENTITY b '&a;'>]><s>&a;</s>"),
              SvgIssue::XmlError);
}

TEST(HostileSvg, aLongChainOfEntitiesIsFollowedOrRefused) {
    std::string chain = "<!DOCTYPE svg [<!ENTITY a0 '<line/>'>";
    for (int i = 1; i != 20000; ++i) {
        chain += "<!ENTITY a" + std::to_string(i) + " '&a" + std::to_string(i - 1) + ";'>";
    }
    EXPECT_LE(readSvg(chain + "]><svg>&a19999;</svg>", nullptr).outlines().size(), 1U);
}

TEST(HostileSvg, externalEntitiesAreNotOpened) {
    Notices notices;
    readSvg("<!DOCTYPE svg [<!ENTITY e SYSTEM 'file:///etc/passwd'>]><svg><title>&e;</title></svg>",
            &notices);
    EXPECT_TRUE(notices.all.empty());
}

TEST(HostileSvg, defaultAttributesDoNotMultiplyWithoutBound) {
    const std::string text = "<!DOCTYPE svg [<!ATTLIST line x1 CDATA '1" +
                             std::string(1 << 20, '\t') + "'>]><svg>" + repeated("<line/>", 1000);
    EXPECT_EQ(lastIssue(text), SvgIssue::LimitReached);
}

TEST(HostileSvg, megabyteAttributesAreReadOnce) {
    const std::string blank(1 << 20, ' ');
    const std::string noise = repeated("matrix", 1 << 18);
    EXPECT_EQ(outlinesOf("<line x2='" + blank + "1'/>")[0].vertices[1].x, 1);
    for (const char* name : {"transform", "style", "d", "points", "x1", "fill", "unknown"}) {
        for (const std::string& value : {blank, noise, repeated("transform:rotate;", 1 << 16),
                                         std::string(1 << 20, '+'), std::string(1 << 20, '-')}) {
            const auto outlines =
                outlinesOf("<path " + std::string(name) + "='" + value + "'/><line/>");
            EXPECT_EQ(outlines.size(), 2U) << name;
        }
    }
}

// A reader that starts such a token anew with every few bytes of it never ends.
TEST(HostileSvg, oneTokenMayFillTheFile) {
    const std::string blank((60U << 20), ' ');
    for (const std::string& token :
         {"<line x2='" + blank + "1'/>", "<!--" + blank + "--><line x2='1'/>"}) {
        const auto outlines = outlinesOf(token);
        ASSERT_EQ(outlines.size(), 1U);
        EXPECT_EQ(outlines[0].vertices[1].x, 1);
    }
}

TEST(HostileSvg, verticesAndOutlinesAreBounded) {
    for (const std::string& many :
         {"<path d='h" + repeated("1 ", 3 << 19) + "'/>",
          "<polygon points='" + repeated("1 ", 3 << 20) + "'/>", repeated("<path/>", 3 << 19)}) {
        Notices notices;
        const auto shape = readSvg("<svg><line/>" + many + "</svg>", &notices);
        EXPECT_LE(shape.outlines().size(), path_renderer::maxParts);
        ASSERT_FALSE(notices.all.empty());
        EXPECT_EQ(notices.all.back().issue, SvgIssue::LimitReached);
        EXPECT_EQ(shape.outlines()[0].vertices.size(), 2U);
    }
}

TEST(HostileSvg, numbersThatAreNoneReachTheVerticesAsTheyAre) {
    auto shape = readSvg("<svg><circle r='nan'/><rect width='inf' height='1e999'/>"
                         "<path d='M 1e999 0 L -1e999 0 l 1e999 0'/></svg>",
                         nullptr);
    ASSERT_EQ(shape.outlines().size(), 3U);
    EXPECT_TRUE(std::isnan(shape.outlines()[0].vertices[0].x));
    EXPECT_TRUE(std::isinf(shape.outlines()[1].vertices[1].x));
    EXPECT_TRUE(std::isnan(shape.outlines()[2].vertices[1].tanOutX));
    shape.normalize();
}

TEST(SvgCorpus, everyFileIsReadWithoutHarm) {
    const std::filesystem::path folder = ORBEL_SOURCE_DIR "/fuzz/corpus/svg";
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        std::ifstream file(entry.path(), std::ios::binary);
        const std::string text{std::istreambuf_iterator<char>(file), {}};
        Notices notices;
        auto shape = readSvg(text, &notices);
        shape.normalize();
        ++count;
    }
    EXPECT_GE(count, 10);
}

} // namespace
} // namespace orbel
