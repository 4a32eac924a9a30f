#include "media/FilmParts.h"
#include "media/MediaError.h"
#include "media/MediaReader.h"
#include "media/MediaWriter.h"
#include "tests/media/MediaFixtures.h"

#include <gtest/gtest.h>

namespace orbel {
namespace {

/// Three frames: red, half transparent green, nothing.
void writeColours(MediaWriter& writer, const TestRaster& raster, long first = 0) {
    constexpr double colours[3][4] = {{1, 0, 0, 1}, {0, 1, 0, 0.6}, {0, 0, 0, 0}};
    for (const auto& c : colours) {
        raster.fillColour(c[0], c[1], c[2], c[3]);
        writer.write(raster.info(), first++);
    }
}

std::size_t countOf(const std::string& bytes, const std::string& word) {
    std::size_t count = 0;
    for (std::size_t at = bytes.find(word); at != std::string::npos;
         at = bytes.find(word, at + word.size())) {
        ++count;
    }
    return count;
}

int number24(const std::string& bytes, std::size_t at) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(bytes.at(at + i)); };
    return byte(0) | byte(1) << 8 | byte(2) << 16;
}

TEST(AnimatedPictures, apngIsLosslessInEightBits) {
    const TestFolder folder;
    for (const RasterFormat format : sixFormats) {
        TestRaster raster(format, 33, 17, RowOrder::BottomUp);
        writeNoise(folder / "a.apng", raster, specFor(raster), 0, 3);
        const auto reader = openMedia(folder / "a.apng", 1);
        EXPECT_EQ(reader->properties().frameCount, 3);
        EXPECT_EQ(reader->properties().frameRate, (FrameRate{24, 1}));
        for (long frame = 0; frame < 3; ++frame) {
            raster.fillNoise(static_cast<unsigned>(frame));
            EXPECT_LE(largestDifference(*reader->readFrame(frame), raster), 0.501 / 255.0);
        }
    }
}

TEST(AnimatedPictures, gifKeepsColoursAndHoles) {
    const TestFolder folder;
    TestRaster raster(RF_ARGB32F, 40, 30, RowOrder::Padded);
    const auto writer = openWriter(folder / "a.gif", specFor(raster));
    writeColours(*writer, raster);
    writer->finish();
    EXPECT_EQ(folder.fileCount(), 1U) << "the frames are gone";
    const auto reader = openMedia(folder / "a.gif", 1);
    constexpr double expected[3][4] = {{1, 0, 0, 1}, {0, 1, 0, 1}, {0, 0, 0, 0}};
    for (long frame = 0; frame < 3; ++frame) {
        const PicturePtr picture = reader->readFrame(frame);
        for (int channel = 0; channel < 4; ++channel) {
            const double share = channel == 3 ? 1.0 : componentOf(*picture, 20, 15, 3);
            EXPECT_NEAR(share * componentOf(*picture, 20, 15, channel), expected[frame][channel],
                        0.03)
                << frame;
        }
    }
}

// Browsers take a hundredth of a second for ten of them.
TEST(AnimatedPictures, gifShowsNoMoreThanFiftyFramesASecond) {
    const struct {
        FrameRate rate;
        long frames;
        long shown;
    } cases[] = {{{25, 1}, 6, 6}, {{50, 1}, 6, 6}, {{60, 1}, 7, 4}, {{120, 1}, 7, 3}};
    for (const auto& c : cases) {
        const TestFolder folder;
        TestRaster raster(RF_RGBA8, 8, 8, RowOrder::Tight);
        WriterSpec spec = specFor(raster);
        spec.frameRate = c.rate;
        writeNoise(folder / "a.gif", raster, spec, 0, c.frames);
        const std::string bytes = readBytes(folder / "a.gif");
        std::size_t at = 0;
        long shown = 0;
        const std::string control("\x21\xF9\x04", 3); // before every frame: flags, delay
        while ((at = bytes.find(control, at)) != std::string::npos) {
            EXPECT_GE(static_cast<unsigned char>(bytes.at(at + 4)), 2) << c.rate.perSecond();
            at += control.size();
            ++shown;
        }
        EXPECT_EQ(shown, c.shown) << c.rate.perSecond();
    }
}

// The media libraries write animated WebP and cannot read it.
TEST(AnimatedPictures, webpHoldsEveryFrameWithItsTime) {
    const TestFolder folder;
    TestRaster raster(RF_RGBA16, 40, 31, RowOrder::BottomUp);
    writeNoise(folder / "a.webp", raster, specFor(raster), 0, 5);
    const std::string bytes = readBytes(folder / "a.webp");
    const std::size_t canvas = bytes.find("VP8X");
    ASSERT_NE(canvas, std::string::npos);
    EXPECT_EQ(bytes.at(canvas + 8) & 0x12, 0x12) << "animated, with alpha";
    EXPECT_EQ(number24(bytes, canvas + 12) + 1, 40);
    EXPECT_EQ(number24(bytes, canvas + 15) + 1, 31);
    const std::size_t animation = bytes.find("ANIM");
    EXPECT_EQ(bytes.substr(animation + 12, 2), std::string(2, '\0')) << "begins again and again";
    EXPECT_EQ(countOf(bytes, "ANMF"), 5U);
    const std::size_t frame = bytes.find("ANMF");
    EXPECT_NEAR(number24(bytes, frame + 8 + 12), 1000.0 / 24.0, 1.0);
}

TEST(AnimatedPictures, comeOutOfPartsAsTheyDoAtOnce) {
    for (const char* const ending : {".gif", ".webp", ".apng"}) {
        const TestFolder folder;
        const std::string whole = folder / (std::string("whole") + ending);
        const std::string joined = folder / (std::string("joined") + ending);
        TestRaster raster(RF_RGBA16, 33, 21, RowOrder::Tight);
        const WriterSpec spec = specFor(raster);
        const auto writer = openWriter(whole, spec);
        FilmAssembly assembly(joined, spec);
        for (long part = 0; part < 2; ++part) {
            writeColours(*writer, raster, 3 * part);
            const std::string file = folder / (std::string("part") + partEnding(targetOf(joined)));
            const auto piece = openPart(file, spec, targetOf(joined));
            writeColours(*piece, raster, 3 * part);
            piece->finish();
            assembly.append(file, 3);
        }
        writer->finish();
        assembly.finish();
        EXPECT_EQ(readBytes(joined), readBytes(whole)) << ending;
    }
}

TEST(AnimatedPictures, leaveNothingOfAnAbandonedFilm) {
    for (const char* const ending : {".gif", ".webp", ".apng"}) {
        const TestFolder folder;
        TestRaster raster(RF_RGBA8, 8, 8, RowOrder::Tight);
        auto writer = openWriter(folder / (std::string("a") + ending), specFor(raster));
        writeColours(*writer, raster);
        writer->abandon();
        writer.reset();
        EXPECT_EQ(folder.fileCount(), 0U) << ending;
    }
}

} // namespace
} // namespace orbel
