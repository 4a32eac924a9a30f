#include "studio/Json.h"

#include <gtest/gtest.h>

namespace orbel::studio {
namespace {

/// What is wrong with a request, or nothing.
template<typename Read>
std::string refusalOf(const Read& read) {
    try {
        static_cast<void>(read());
        return "";
    } catch (const Refusal& refusal) {
        EXPECT_EQ(refusal.status, 400);
        EXPECT_EQ(refusal.remedy, "reload the page");
        return refusal.error;
    }
}

TEST(StudioJson, takesWholeNumbersWithinTheirRange) {
    const std::string wrong = "the request's \"n\" must be a whole number from -2 to 5";
    const std::pair<const char*, bool> rows[] = {{R"({"n": -2})", true},
                                                 {R"({"n": 5})", true},
                                                 {R"({"n": 3.0})", true},
                                                 {R"({"n": -3})", false},
                                                 {R"({"n": 6})", false},
                                                 {R"({"n": 2.5})", false},
                                                 {R"({"n": "1"})", false},
                                                 {R"({"n": true})", false},
                                                 {R"({"n": 1e300})", false},
                                                 {R"({"n": null})", false},
                                                 {"{}", false}};
    for (const auto& [text, right] : rows) {
        const json body = json::parse(text);
        EXPECT_EQ(refusalOf([&] { return numberMember(body, "n", -2, 5); }), right ? "" : wrong)
            << text;
        EXPECT_EQ(refusalOf([&] { return numberMember(body, "n", -2, 5, 4); }),
                  right || !hasMember(body, "n") ? "" : wrong)
            << text;
    }
    EXPECT_EQ(numberMember({{"n", -2}}, "n", -2, 5), -2);
    EXPECT_EQ(numberMember({{"n", 5}}, "n", -2, 5, 4), 5);
    EXPECT_EQ(numberMember({{"n", nullptr}}, "n", -2, 5, 4), 4);
}

TEST(StudioJson, takesTextsAndFlags) {
    const json body{{"text", "a"}, {"none", nullptr}, {"flag", true}, {"off", false}, {"n", 1}};
    EXPECT_EQ(textMember(body, "text"), "a");
    EXPECT_EQ(textMember(body, "text", "b"), "a");
    EXPECT_EQ(textMember(body, "none", "b"), "b");
    EXPECT_EQ(textMember(body, "other", "b"), "b");
    EXPECT_TRUE(flagMember(body, "flag"));
    EXPECT_FALSE(flagMember(body, "off"));
    EXPECT_FALSE(flagMember(body, "none"));
    for (const char* const name : {"n", "none", "other"}) {
        EXPECT_EQ(refusalOf([&] { return textMember(body, name); }),
                  std::string("the request's \"") + name + "\" must be a text");
    }
    EXPECT_NE(refusalOf([&] { return textMember(body, "n", "b"); }), "");
    EXPECT_EQ(refusalOf([&] { return flagMember(body, "n"); }),
              "the request's \"n\" must be true or false");
    EXPECT_EQ(textOf({{"a", "\xff"}}), "{\"a\":\"\xef\xbf\xbd\"}");
}

} // namespace
} // namespace orbel::studio
