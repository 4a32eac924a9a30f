#include "shapes/PathTokenizer.h"

#include "shapes/NumberText.h"
#include "tests/shapes/SvgText.h"

#include <gtest/gtest.h>

#include <clocale>
#include <limits>

namespace orbel {
namespace {

using Token = std::pair<char, double>;
using Tokens = std::vector<Token>;

Tokens tokensOf(const std::string& text) {
    path_tokenizer tokenizer;
    tokenizer.set_path_str(text.c_str());
    Tokens tokens;
    while (tokenizer.next()) {
        tokens.emplace_back(tokenizer.last_command(), tokenizer.last_number());
    }
    EXPECT_FALSE(tokenizer.next());
    return tokens;
}

TEST(PathTokenizer, splitsIntoCommandsAndNumbers) {
    struct Case {
        const char* text;
        Tokens tokens;
    };
    const Case cases[] = {
        {"", {}},
        {" ,\t\n\r", {}},
        {"M10,20 30", {{'M', 10}, {'M', 20}, {'M', 30}}},
        {"M10-20+30", {{'M', 10}, {'M', -20}, {'M', 30}}},
        {"l.5.5 6", {{'l', .5}, {'l', 6}}}, // dots and digits are one number, read to its end
        {"L 1e2 1E3", {{'L', 100}, {'L', 1000}}},
        {"1 2", {{'\0', 1}, {'\0', 2}}},
        {"Z", {{'Z', 0}}},
        {"L 7 Z", {{'L', 7}, {'Z', 7}}},
        {"L 7 Z \n", {{'L', 7}, {'Z', 7}}},
        {"ZM1", {{'Z', 0}, {'M', 1}}},
        {"M 1 x 2", {{'M', 1}}},
        {"M 1 \xC3\xA9 2", {{'M', 1}}},
        {"+-5", {{'\0', 0}}},
        {"--5", {{'\0', 0}}},
        {"E", {{'\0', 0}}},
        {"1e-5", {{'\0', 1}, {'\0', -5}}}, // a minus starts a number, also in an exponent
    };
    for (const Case& c : cases) {
        EXPECT_EQ(tokensOf(c.text), c.tokens) << c.text;
    }
}

TEST(PathTokenizer, aNumberHas255CharactersAtMost) {
    EXPECT_EQ(tokensOf(std::string(300, '1')).size(), 2U);
    EXPECT_EQ(tokensOf(std::string(254, '0') + "12"), (Tokens{{'\0', 1}, {'\0', 2}}));
    // Minus signs stop at a full buffer, plus signs are all taken.
    EXPECT_EQ(tokensOf(std::string(300, '-') + "5").size(), 2U);
    EXPECT_EQ(tokensOf(std::string(100000, '+') + "5"), (Tokens{{'\0', 0}, {'\0', 5}}));
}

TEST(PathTokenizer, extremeNumbersAreInfiniteOrZero) {
    EXPECT_EQ(tokensOf("1e999")[0].second, std::numeric_limits<double>::infinity());
    EXPECT_EQ(tokensOf("-1e999")[0].second, -std::numeric_limits<double>::infinity());
    EXPECT_TRUE(tokensOf("nan").empty());
}

TEST(PathTokenizer, aParameterMustBelongToItsCommand) {
    test::Notices notices;
    SvgReport report;
    report.setObserver(&notices);
    path_tokenizer tokenizer(&report);
    tokenizer.set_path_str("L 1 2 M 3 4");
    EXPECT_TRUE(tokenizer.next());
    EXPECT_TRUE(tokenizer.commandRead());
    EXPECT_EQ(tokenizer.next('L'), 2);
    EXPECT_FALSE(tokenizer.commandRead());
    EXPECT_EQ(tokenizer.next('L'), 0); // uses up the "M 3"
    EXPECT_EQ(tokenizer.next('M'), 4);
    EXPECT_EQ(tokenizer.next('M'), 0);
    EXPECT_EQ(notices.texts(),
              (std::vector<std::string>{"0: parse_path: Command L: bad or missing parameters",
                                        "0: parse_path: Command M: bad or missing parameters"}));
}

TEST(PathTokenizer, aBadCharacterIsReportedAndEndsTheText) {
    test::Notices notices;
    SvgReport report;
    report.setObserver(&notices);
    path_tokenizer tokenizer(&report);
    for (const char* text : {"M 1 # 2", "M 1 \x01 2"}) {
        tokenizer.set_path_str(text);
        EXPECT_TRUE(tokenizer.next());
        EXPECT_FALSE(tokenizer.next());
        EXPECT_FALSE(tokenizer.next());
    }
    EXPECT_EQ(notices.texts(),
              (std::vector<std::string>{"0: path_tokenizer::next : Invalid Character #",
                                        "0: path_tokenizer::next : Invalid Character \\x01"}));
}

TEST(NumberText, doesNotDependOnTheLocale) {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    for (const char* comma : {"de_DE.UTF-8", "de_DE", "fr_FR.UTF-8"}) {
        if (std::setlocale(LC_ALL, comma) != nullptr) {
            break;
        }
    }
    EXPECT_EQ(parseNumber(" 1.5px"), 1.5);
    EXPECT_EQ(parseNumber("1,5"), 1.0);
    EXPECT_EQ(parseNumber("none"), 0.0);
    EXPECT_EQ(parseNumber(""), 0.0);
    std::setlocale(LC_ALL, before.c_str());
}

} // namespace
} // namespace orbel
