#include "app/Progress.h"

#include "scene/NearestName.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

namespace orbel::app {
namespace {

using testing::HasSubstr;

std::string toldAfter(ProgressStyle style, long total, std::chrono::milliseconds perFrame) {
    std::ostringstream out;
    Progress progress(out, style, total);
    Progress::Clock::time_point now = Progress::Clock::now();
    for (long i = 0; i < total; ++i) {
        now += perFrame;
        progress.frameDone(now);
    }
    progress.finish();
    EXPECT_EQ(progress.done(), total);
    return out.str();
}

TEST(Progress, saysNothingWhenSilent) {
    EXPECT_EQ(toldAfter(ProgressStyle::Silent, 100, std::chrono::seconds(1)), "");
}

TEST(Progress, writesAFewLines) {
    const std::string text = toldAfter(ProgressStyle::Lines, 1000, std::chrono::milliseconds(10));
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 9);
    EXPECT_THAT(text, HasSubstr("frame 100 of 1000, "));
    EXPECT_THAT(text, HasSubstr(" frames/s, 0:09 left\n"));
    EXPECT_EQ(text.find('\r'), std::string::npos);
}

TEST(Progress, drawsABarOnOneLine) {
    const std::string text = toldAfter(ProgressStyle::Bar, 60, std::chrono::seconds(2));
    EXPECT_THAT(text,
                HasSubstr("\r[###############...............] 30/60, 0.5 frames/s, 1:00 left"));
    EXPECT_THAT(text, HasSubstr("] 60/60, 0.5 frames/s, 0:00 left"));
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1);
}

TEST(NearestName, countsLettersAndHardlyCase) {
    const std::vector<std::string> names{"size", "fps", "frames", "shape", "Opacity"};
    const std::pair<const char*, const char*> cases[] = {
        {"sise", "size"},    {"FPS", "fps"},         {"frame", "frames"},
        {"shapes", "shape"}, {"opaciti", "Opacity"}, {"opac", "Opacity"}};
    for (const auto& [text, nearest] : cases) {
        EXPECT_EQ(nearestName(text, names), nearest);
    }
    EXPECT_FALSE(nearestName(std::string(1'000'000, 'x'), names).empty());
}

} // namespace
} // namespace orbel::app
