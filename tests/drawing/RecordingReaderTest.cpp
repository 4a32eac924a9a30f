#include "drawing/RecordingReader.h"

#include <gtest/gtest.h>

#include <string>

namespace orbel {
namespace {

std::string page(const std::string& body) {
    return "%!CairoScript\n<< /content //COLOR_ALPHA >> surface context\n" + body + "pop\n";
}

TEST(RecordingReader, keepsPathsWithTheirColoursInOrder) {
    const auto painted = readRecording(page("0 0.5 1 rgb set-source\n"
                                            "n 1 2 m 3 4 l 5 6 7 8 9 10 c h 1 2 m\nfill+\n"
                                            "0.25 g set-source\n2 set-line-width\nstroke+\n"
                                            "0.3 a set-source\nfill+\n"));
    ASSERT_EQ(painted.size(), 3U);
    EXPECT_EQ(painted[0].kind, PaintedPath::Kind::Fill);
    EXPECT_EQ((*painted[0].colour), (std::array<double, 4>{0, 0.5, 1, 1}));
    ASSERT_EQ(painted[0].curves.size(), 2U);
    const OutlineCurve& curve = painted[0].curves.front();
    EXPECT_TRUE(curve.closed);
    EXPECT_EQ(curve.start, (PlanePoint{1, 2}));
    ASSERT_EQ(curve.segments.size(), 2U);
    EXPECT_TRUE(curve.segments[0].straight);
    EXPECT_EQ(curve.segments[1].control2, (PlanePoint{7, 8}));
    EXPECT_EQ(painted[1].kind, PaintedPath::Kind::Stroke);
    EXPECT_EQ(painted[1].curves, painted[0].curves);
    EXPECT_EQ((*painted[1].colour)[2], 0.25);
    EXPECT_EQ((*painted[2].colour), (std::array<double, 4>{0, 0, 0, 0.3}));
}

TEST(RecordingReader, passesOverTilesAndPictures) {
    const auto painted = readRecording(
        page("//COLOR_ALPHA [0 0 9 9] record\ndup /s7 exch def dup context\n"
             "n 0 0 5 5 rectangle\nfill+\npop pattern\n [1 0 0 1 0 0] set-matrix set-source\n"
             "<< /source <~ 87cURD]i,\"Ebo80~> >> image set-source\nn 1 1 2 3 rectangle\nfill+\n"));
    ASSERT_EQ(painted.size(), 1U);
    EXPECT_FALSE(painted[0].colour);
    EXPECT_EQ(painted[0].curves.front().end(), (PlanePoint{1, 4}));
}

TEST(RecordingReader, leavesOutPathsThatItCannotRead) {
    for (const char* const broken :
         {"n 1 m 2 2 l fill+\n", "n 3 3 l fill+\n", "n nan 2 m 3 3 l fill+\n",
          "n 1 1 m 2 2 3 3 c stroke+\n", "fill+\n", "n 1 1 m 2 inf l fill+\n"}) {
        EXPECT_TRUE(readRecording(page(broken)).empty()) << broken;
    }
}

} // namespace
} // namespace orbel
