#include "shapes/FormatText.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

namespace orbel {
namespace {

std::string expanded(const std::string& format, std::size_t size) {
    std::vector<char> out(size + 8, '#');
    expandFormatText(out.data(), size, format.c_str());
    EXPECT_EQ(std::string(out.end() - 8, out.end()), "########");
    return out.data();
}

TEST(FormatText, directivesExpandToNothing) {
    const std::pair<const char*, const char*> cases[] = {
        {"", ""},
        {"/shapes/star.svg", "/shapes/star.svg"},
        {"100%%.svg", "100%.svg"},
        {"%%%%", "%%"},
        {"a%sb", "ab"},
        {"a%nb", "ab"},
        {"a%-+ #0'12.34lldb", "ab"},
        {"a%*.*fb", "ab"},
        {"a%.3Lfb", "ab"},
        {"50% off.svg", "50ff.svg"},
        {"%d%%%s", "%"},
        {"a%", "a"},
        {"a%12", "a"},
        {"a%.", "a"},
        {"a%ll", "a"},
    };
    for (const auto& [format, text] : cases) {
        EXPECT_EQ(expanded(format, 1024), text) << format;
    }
}

TEST(FormatText, isCutToTheBuffer) {
    EXPECT_EQ(expanded(std::string(5000, 'x'), 1024), std::string(1023, 'x'));
    EXPECT_EQ(expanded("a%%b", 3), "a%");
    EXPECT_EQ(expanded("abc", 1), "");
    char untouched = '#';
    expandFormatText(&untouched, 0, "abc");
    EXPECT_EQ(untouched, '#');
}

} // namespace
} // namespace orbel
