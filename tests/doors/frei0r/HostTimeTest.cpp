#include "doors/frei0r/HostTime.h"

#include <gtest/gtest.h>

namespace orbel::frei0r {
namespace {

TEST(Frei0rHostTime, isGuessedByWhoCalls) {
    for (const char* file : {"/usr/lib/x86_64-linux-gnu/libavfilter.so.8", "libavfilter.so",
                             "/opt/static/ffmpeg", "ffplay", "/usr/bin/mpv"}) {
        EXPECT_EQ(guessTimeUnit(file), TimeUnit::Milliseconds) << file;
    }
    for (const char* file : {"/usr/lib/mlt-7/libmltfrei0r.so", "libgstfrei0r.so", "", "/",
                             "/home/ffmpeg/bin/editor", "/avfilter/libmltfrei0r.so"}) {
        EXPECT_EQ(guessTimeUnit(file), TimeUnit::Seconds) << file;
    }
}

// Containers that count in milliseconds round every time: the frame must not waver.
TEST(Frei0rHostTime, findsWholeFramesUnderRoundedTimes) {
    for (const char* rate : {"24000/1001", "25", "30000/1001", "60000/1001", "120", "12.5"}) {
        const double perSecond = readFrameRate(rate).value();
        for (int frame = 0; frame < 5000; ++frame) {
            const auto rounded = static_cast<double>(static_cast<long>(1000 * frame / perSecond));
            for (const double time : {rounded, rounded + 0.5, 1000 * frame / perSecond}) {
                if (time > 1000 * frame / perSecond - 0.5 &&
                    time < 1000 * frame / perSecond + 0.5) {
                    EXPECT_EQ(frameAt(time, TimeUnit::Milliseconds, perSecond), frame) << rate;
                }
            }
            EXPECT_EQ(frameAt(frame / perSecond, TimeUnit::Seconds, perSecond), frame) << rate;
        }
    }
}

} // namespace
} // namespace orbel::frei0r
