#include "media/MediaError.h"
#include "media/MediaReader.h"
#include "media/MediaWriter.h"
#include "media/VideoDecoder.h"
#include "tests/media/MediaFixtures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <stdexcept>
#include <sys/resource.h>

namespace orbel {
namespace {

using testing::HasSubstr;

/// Writes one frame and reads it back.
PicturePtr roundTrip(const std::string& path, const TestRaster& raster) {
    const auto writer = openWriter(path, specFor(raster));
    writer->write(raster.info(), 0);
    writer->finish();
    return openMedia(path, 1)->readFrame(0);
}

struct Size {
    int width;
    int height;
};

/// How far a lossless file may be from the raster: half a step of its depth, for the division.
double tolerance(const std::string& ending, RasterFormat format) {
    if (ending == ".exr") {
        return 2e-6;
    }
    return format == RF_ARGB8 || format == RF_RGBA8 ? 0.5001 / 255.0 : 0.501 / 65535.0;
}

class LosslessRoundTrip : public testing::TestWithParam<const char*> {};

TEST_P(LosslessRoundTrip, KeepsEveryFormatAndSize) {
    const std::string ending = GetParam();
    const bool film = ending == ".mkv";
    const TestFolder folder;
    for (const RasterFormat format : sixFormats) {
        for (const Size size : {Size{1, 1}, Size{3, 2}, Size{33, 17}, Size{129, 65}}) {
            SCOPED_TRACE(ending + " layout " + std::to_string(format) + " " +
                         std::to_string(size.width) + " x " + std::to_string(size.height));
            TestRaster raster(format, size.width, size.height, RowOrder::BottomUp);
            const std::string path = folder / ((film ? "film" : "a-%04d") + ending);
            writeNoise(path, raster, specFor(raster), 0, 3);
            const auto reader = openMedia(path, 1);
            EXPECT_EQ(reader->properties().kind, film ? MediaKind::Clip : MediaKind::Sequence);
            EXPECT_EQ(reader->properties().frameCount, 3);
            EXPECT_TRUE(reader->properties().hasAlpha);
            for (long frame = 0; frame < 3; ++frame) {
                raster.fillNoise(static_cast<unsigned>(frame));
                EXPECT_LE(largestDifference(*reader->readFrame(frame), raster),
                          tolerance(ending, format));
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Endings, LosslessRoundTrip,
                         testing::Values(".png", ".tif", ".tiff", ".exr", ".mkv"));

TEST(MediaWriter, DepthFollowsTheLayout) {
    const TestFolder folder;
    const struct {
        const char* name;
        RasterFormat format;
        PictureDepth depth;
    } cases[] = {
        {"a.png", RF_ARGB8, PictureDepth::U8},    {"b.png", RF_RGBA16, PictureDepth::U16},
        {"c.png", RF_RGBA32F, PictureDepth::U16}, {"a.tif", RF_RGBA8, PictureDepth::U8},
        {"b.tif", RF_ARGB16, PictureDepth::U16},  {"a.exr", RF_RGBA8, PictureDepth::F32},
        {"a.mkv", RF_RGBA8, PictureDepth::U8},    {"b.mkv", RF_ARGB32F, PictureDepth::U16},
        {"a.mov", RF_RGBA8, PictureDepth::U16},   {"a.mp4", RF_RGBA16, PictureDepth::U8},
    };
    for (const auto& c : cases) {
        TestRaster raster(c.format, 16, 16, RowOrder::Tight);
        writeNoise(folder / c.name, raster, specFor(raster), 0, 1);
        EXPECT_EQ(openMedia(folder / c.name, 1)->properties().depth, c.depth) << c.name;
    }
}

TEST(MediaWriter, ExrKeepsFloatsBeyondOne) {
    const TestFolder folder;
    TestRaster raster(RF_RGBA32F, 5, 3, RowOrder::Tight);
    raster.fillColour(400.0, -2.0, 0.25, 0.5);
    const auto picture = roundTrip(folder / "a.exr", raster);
    EXPECT_EQ(componentOf(*picture, 4, 2, 0), 400.0);
    EXPECT_EQ(componentOf(*picture, 4, 2, 1), -2.0);
    EXPECT_EQ(componentOf(*picture, 4, 2, 2), 0.25);
    EXPECT_EQ(componentOf(*picture, 4, 2, 3), 0.5);
}

TEST(MediaWriter, FilmsKeepLengthRateSizeAndColour) {
    const TestFolder folder;
    const FrameRate rates[] = {{24, 1}, {25, 1}, {30, 1}, {60, 1}, {24000, 1001}, {30000, 1001}};
    for (const char* ending : {".mp4", ".mov", ".mkv"}) {
        for (const Size size : {Size{64, 48}, Size{35, 21}, Size{1, 1}}) {
            for (const FrameRate rate : rates) {
                const std::string path = folder / (std::string("film") + ending);
                SCOPED_TRACE(path + " " + std::to_string(size.width) + " at " +
                             std::to_string(rate.perSecond()));
                TestRaster raster(RF_RGBA8, size.width, size.height, RowOrder::Padded);
                raster.fillColour(0.8, 0.4, 0.2, 1.0);
                WriterSpec spec = specFor(raster);
                spec.frameRate = rate;
                const auto writer = openWriter(path, spec);
                for (long frame = 10; frame < 17; ++frame) {
                    writer->write(raster.info(), frame);
                }
                writer->finish();
                const auto reader = openMedia(path, 1);
                EXPECT_EQ(reader->properties().frameCount, 7);
                EXPECT_EQ(reader->properties().frameRate, rate);
                EXPECT_EQ(reader->properties().pixelAspect, 1.0);
                EXPECT_EQ(reader->properties().hasAlpha, ending != std::string(".mp4"));
                // Players know H.264 of even sizes only.
                const int unit = ending == std::string(".mp4") ? 2 : 1;
                TestRaster shown(RF_RGBA8, (size.width + unit - 1) / unit * unit,
                                 (size.height + unit - 1) / unit * unit, RowOrder::Padded);
                shown.fillColour(0.8, 0.4, 0.2, 1.0);
                EXPECT_LE(largestDifference(*reader->readFrame(6), shown), 3.0 / 255.0);
                EXPECT_THROW((void)reader->readFrame(7), MediaError);
            }
        }
    }
}

TEST(MediaWriter, ColoursAreRightInEveryFilm) {
    const TestFolder folder;
    const double colours[][3] = {{1, 0, 0}, {0, 1, 0},       {0, 0, 1}, {1, 1, 1},
                                 {0, 0, 0}, {0.5, 0.5, 0.5}, {1, 1, 0}};
    for (const char* name : {"a.mp4", "a.mov", "a.mkv"}) {
        for (const RasterFormat format : {RF_RGBA8, RF_RGBA16, RF_ARGB32F}) {
            for (const auto& c : colours) {
                TestRaster raster(format, 32, 32, RowOrder::Tight);
                raster.fillColour(c[0], c[1], c[2], 1.0);
                const auto picture = roundTrip(folder / name, raster);
                EXPECT_LE(largestDifference(*picture, raster), 3.0 / 255.0)
                    << name << " " << c[0] << c[1] << c[2];
            }
        }
    }
}

// What a player is told, as ffprobe shows it; GIF, WebP and TIFF have no place for any of it.
TEST(MediaWriter, EveryFilmSaysWhatItsColoursMean) {
    const struct {
        const char* name;
        AVColorRange range;
        AVColorSpace matrix;
        AVChromaLocation chroma;
    } films[] = {
        {"a.mp4", AVCOL_RANGE_MPEG, AVCOL_SPC_BT709, AVCHROMA_LOC_CENTER},
        {"a.mov", AVCOL_RANGE_MPEG, AVCOL_SPC_BT709, AVCHROMA_LOC_UNSPECIFIED},
        {"a.mkv", AVCOL_RANGE_JPEG, AVCOL_SPC_RGB, AVCHROMA_LOC_UNSPECIFIED},
    };
    const TestFolder folder;
    for (const RasterFormat format : {RF_RGBA8, RF_ARGB32F}) {
        for (const auto& film : films) {
            const TestRaster raster(format, 64, 48, RowOrder::Tight);
            writeNoise(folder / film.name, raster, specFor(raster), 0, 2);
            const VideoDecoder decoder(folder / film.name, 1);
            const AVCodecParameters& told = *decoder.stream().codecpar;
            EXPECT_EQ(told.color_range, film.range) << film.name;
            EXPECT_EQ(told.color_space, film.matrix) << film.name;
            EXPECT_EQ(told.color_primaries, AVCOL_PRI_BT709) << film.name;
            EXPECT_EQ(told.color_trc, AVCOL_TRC_BT709) << film.name;
            EXPECT_EQ(told.chroma_location, film.chroma) << film.name;
        }
        for (const char* name : {"a.png", "a.apng"}) {
            const TestRaster raster(format, 64, 48, RowOrder::Tight);
            writeNoise(folder / name, raster, specFor(raster), 0, 1);
            EXPECT_THAT(readBytes(folder / name), HasSubstr("sRGB")) << name;
        }
    }
}

TEST(MediaWriter, ProResCarriesStraightAlphaAndOpaqueStaysOpaque) {
    const TestFolder folder;
    for (const double alpha : {1.0, 0.5, 0.1, 0.0}) {
        TestRaster raster(RF_ARGB16, 48, 32, RowOrder::BottomUp);
        raster.fillColour(1.0, 0.5, 0.25, alpha);
        const auto picture = roundTrip(folder / "a.mov", raster);
        EXPECT_NEAR(componentOf(*picture, 20, 20, 3), alpha, alpha == 1.0 ? 0.0 : 0.001);
        EXPECT_LE(largestDifference(*picture, raster), 0.006) << alpha;
    }
}

TEST(MediaWriter, H264IsCompositedOverBlack) {
    const TestFolder folder;
    TestRaster raster(RF_RGBA8, 32, 32, RowOrder::Tight);
    raster.fillColour(1.0, 1.0, 1.0, 0.5);
    const auto picture = roundTrip(folder / "a.mp4", raster);
    EXPECT_NEAR(componentOf(*picture, 9, 9, 1), 0.5, 3.0 / 255.0);
    EXPECT_EQ(componentOf(*picture, 9, 9, 3), 1.0);
}

TEST(MediaWriter, PixelAspectIsKept) {
    const TestFolder folder;
    for (const char* name : {"a.mov", "a.mp4", "a.mkv"}) {
        TestRaster raster(RF_RGBA8, 720, 480, RowOrder::Tight);
        WriterSpec spec = specFor(raster);
        spec.pixelAspect = 32.0 / 27.0;
        writeNoise(folder / name, raster, spec, 0, 1);
        EXPECT_NEAR(openMedia(folder / name, 1)->properties().pixelAspect, 32.0 / 27.0, 1e-3)
            << name;
    }
}

TEST(MediaWriter, SequenceFilesCarryTheFrameNumber) {
    const TestFolder folder;
    TestRaster raster(RF_RGBA8, 4, 4, RowOrder::Tight);
    const auto writer = openWriter(folder / "s-%03d.png", specFor(raster));
    for (const long frame : {-1L, 8L, 1234L}) {
        raster.fillNoise(static_cast<unsigned>(frame + 1));
        writer->write(raster.info(), frame);
    }
    writer->finish();
    EXPECT_THROW(writer->write(raster.info(), 0), std::logic_error);
    EXPECT_EQ(folder.fileCount(), 3U);
    raster.fillNoise(9);
    const auto still = openMedia(folder / "s-008.png", 1);
    EXPECT_EQ(still->properties().kind, MediaKind::Still);
    EXPECT_LT(largestDifference(*still->readFrame(0), raster), 0.01);
    EXPECT_TRUE(std::filesystem::exists(folder / "s--01.png"));
    EXPECT_TRUE(std::filesystem::exists(folder / "s-1234.png"));
}

TEST(MediaWriter, WhatWasWrittenPlaysWithoutFinish) {
    const TestFolder folder;
    for (const char* name : {"a.mp4", "a.mov", "a.mkv", "a-%d.png"}) {
        TestRaster raster(RF_RGBA8, 32, 16, RowOrder::Tight);
        {
            const auto writer = openWriter(folder / name, specFor(raster));
            for (long frame = 0; frame < 5; ++frame) {
                raster.fillNoise(static_cast<unsigned>(frame));
                writer->write(raster.info(), frame);
            }
        }
        EXPECT_EQ(openMedia(folder / name, 1)->properties().frameCount, 5) << name;
    }
}

/// The names of the boxes that an MP4 or MOV consists of.
std::string boxesOf(const std::string& path) {
    const std::string bytes = readBytes(path);
    std::string names;
    for (std::size_t at = 0; at + 16 <= bytes.size();) {
        std::uint64_t size = 0;
        const bool large = bytes.substr(at, 4) == std::string("\0\0\0\1", 4);
        for (std::size_t i = large ? 8 : 0; i < (large ? 16U : 4U); ++i) {
            size = size << 8U | static_cast<std::uint8_t>(bytes[at + i]);
        }
        names += bytes.substr(at + 4, 4) + " ";
        at += std::max<std::uint64_t>(size, 8);
    }
    return names;
}

// What a killed program leaves plays but for its last second; a film that is complete has nothing
// of the fragments that it was written in.
TEST(MediaWriter, FilmsAreReadableWhileTheyAreWritten) {
    const struct {
        const char* ending;
        const char* boxes; ///< of the complete film
    } cases[] = {
        {".mkv", nullptr},
        {".mov", "ftyp mdat moov "},
        {".mp4", "ftyp moov free mdat "},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.ending);
        const TestFolder folder;
        const std::string film = folder / (std::string("a") + c.ending);
        const std::string crashed = folder / (std::string("crashed") + c.ending);
        TestRaster raster(RF_RGBA16, 256, 128, RowOrder::Tight);
        WriterSpec spec = specFor(raster);
        spec.frameRate = {12, 1};
        const auto writer = openWriter(film, spec);
        for (long frame = 0; frame < 60; ++frame) {
            raster.fillNoise(static_cast<unsigned>(frame));
            writer->write(raster.info(), frame);
        }
        std::filesystem::copy_file(film + ".part", crashed);
        writer->finish();
        const auto reader = openMedia(crashed, 1);
        ASSERT_GE(reader->properties().frameCount.value_or(0), 24);
        const auto whole = openMedia(film, 1);
        EXPECT_EQ(whole->properties().frameCount, 60);
        for (const long frame : {0L, 19L}) {
            EXPECT_TRUE(reader->readFrame(frame)->components ==
                        whole->readFrame(frame)->components);
        }
        EXPECT_EQ(folder.fileCount(), 2U);
        if (c.boxes != nullptr) {
            EXPECT_THAT(boxesOf(crashed), testing::StartsWith("ftyp moov moof mdat moof mdat "));
            EXPECT_EQ(boxesOf(film), c.boxes);
        }
    }
}

TEST(MediaWriter, AFilmWithoutFramesLeavesNothing) {
    const TestFolder folder;
    const TestRaster raster(RF_RGBA8, 32, 16, RowOrder::Tight);
    (void)openWriter(folder / "a.mp4", specFor(raster));
    EXPECT_EQ(folder.fileCount(), 0U);
}

TEST(MediaWriter, RefusesFramesOfAnotherSize) {
    const TestFolder folder;
    const TestRaster raster(RF_RGBA8, 32, 16, RowOrder::Tight);
    const TestRaster other(RF_RGBA8, 16, 16, RowOrder::Tight);
    const auto writer = openWriter(folder / "a.png", specFor(raster));
    EXPECT_THROW(writer->write(other.info(), 0), std::invalid_argument);
}

TEST(MediaWriter, SaysWhenASizeCannotBeCoded) {
    const TestFolder folder;
    WriterSpec spec = specFor(TestRaster(RF_RGBA8, 1, 1, RowOrder::Tight));
    spec.width = 32766;
    spec.height = 16;
    try {
        (void)openWriter(folder / "wide.mp4", spec);
        FAIL();
    } catch (const MediaError& error) {
        EXPECT_THAT(error.what(), HasSubstr("32766 x 16 cannot be coded"));
    }
    EXPECT_EQ(folder.fileCount(), 0U);
}

/// Lets no file of the process grow beyond a size, as a full disk would.
class FullDisk {
public:
    explicit FullDisk(rlim_t bytes) {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;
    ~FullDisk() {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, SIG_DFL);
    }

private:
    rlimit m_before{};
};

TEST(MediaWriter, AFullDiskIsReportedWithFileAndFrame) {
    struct Row {
        std::string name;
        long frames;
        rlim_t room;
    };
    for (const auto& [name, frames, room] :
         {Row{"a.mkv", 200, 300000}, Row{"a.mov", 200, 300000}, Row{"a.mp4", 200, 300000},
          Row{"a-%03d.png", 200, 1000}, Row{"one.mkv", 1, 4000}}) {
        const TestFolder folder;
        TestRaster raster(RF_RGBA16, 128, 128, RowOrder::Tight);
        std::string place;
        {
            const FullDisk full(room);
            try {
                writeNoise(folder / name, raster, specFor(raster), 0, frames);
            } catch (const MediaError& error) {
                place = error.place();
                EXPECT_THAT(error.what(), HasSubstr("cannot be written"));
                EXPECT_FALSE(error.remedy().empty());
            }
        }
        EXPECT_THAT(place, HasSubstr("frame ")) << name;
        if (name.starts_with("a.m")) {
            const auto kept = openMedia(folder / name, 1);
            const long count = kept->properties().frameCount.value_or(0);
            EXPECT_GE(count, 1) << name;
            EXPECT_NO_THROW((void)kept->readFrame(count - 1)) << name;
        }
        if (name == "a-%03d.png") {
            EXPECT_EQ(folder.fileCount(), 0U);
        }
    }
}

} // namespace
} // namespace orbel
