#include "media/MediaReader.h"

#include "media/MediaError.h"
#include "media/MediaWriter.h"
#include "tests/media/MediaFixtures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orbel {
namespace {

using testing::HasSubstr;

void makeMedia(const std::string& path, long first, long count) {
    TestRaster raster(RF_RGBA8, 48, 32, RowOrder::Tight);
    WriterSpec spec;
    spec.width = 48;
    spec.height = 32;
    writeNoise(path, raster, spec, first, count);
}

MediaError errorOf(const std::string& path, long index) {
    try {
        (void)openMedia(path, 1)->readFrame(index);
    } catch (const MediaError& error) {
        return error;
    }
    ADD_FAILURE() << path << " was read";
    return {"", "", "", ""};
}

TEST(MediaReader, AStillServesEveryIndexWithoutDecodingAgain) {
    const TestFolder folder;
    makeMedia(folder / "still.png", 0, 1);
    const auto reader = openMedia(folder / "still.png", 1);
    EXPECT_EQ(reader->properties().kind, MediaKind::Still);
    EXPECT_FALSE(reader->properties().frameRate.has_value());
    EXPECT_FALSE(reader->properties().frameCount.has_value());
    EXPECT_EQ(reader->readFrame(0), reader->readFrame(1'000'000));
}

TEST(MediaReader, FrameZeroOfASequenceIsItsFirstFile) {
    const TestFolder folder;
    makeMedia(folder / "s-%04d.png", 98, 5);
    writeBytes(folder / "s-0007.png.part", "not of the sequence");
    const MediaError shifted = errorOf(folder / "s-%04d.png", 0);
    EXPECT_THAT(shifted.what(), HasSubstr("s-0001.png (frame 0): the first file of the sequence"));
    EXPECT_THAT(shifted.remedy(), HasSubstr("--first 98"));
    EXPECT_THROW((void)openMedia(folder / "s-%04d.png", 1, 97), MediaError);
    const auto reader = openMedia(folder / "s-%04d.png", 1, 98);
    EXPECT_EQ(reader->properties().frameCount, 5);
    TestRaster raster(RF_RGBA8, 48, 32, RowOrder::Tight);
    raster.fillNoise(101);
    EXPECT_LT(largestDifference(*reader->readFrame(3), raster), 0.01);
    raster.fillNoise(98);
    EXPECT_LT(largestDifference(*reader->readFrame(0), raster), 0.01);
}

TEST(MediaReader, ANameWithAPercentSignIsAFileWhereItExists) {
    const TestFolder folder;
    makeMedia(folder / "plain.png", 0, 1);
    for (const char* name : {"100%.png", "s-%04d.png"}) {
        std::filesystem::copy_file(folder / "plain.png", folder / name);
        EXPECT_EQ(openMedia(folder / name, 1)->properties().kind, MediaKind::Still) << name;
    }
}

TEST(MediaReader, SeekingGivesWhatReadingOnGives) {
    const TestFolder folder;
    for (const char* name : {"a.mp4", "a.mov", "a.mkv"}) {
        constexpr long count = 600; // several key frames, also of the film with long groups
        makeMedia(folder / name, 0, count);
        const auto sequential = openMedia(folder / name, 2);
        ASSERT_EQ(sequential->properties().frameCount, count);
        std::vector<PicturePtr> frames;
        for (long index = 0; index < count; ++index) {
            frames.push_back(sequential->readFrame(index));
        }
        const auto jumping = openMedia(folder / name, 1);
        for (const long index : {599L, 0L, 300L, 299L, 301L, 5L, 5L, 250L, 249L, 598L, 420L, 1L}) {
            const auto frame = jumping->readFrame(index);
            EXPECT_TRUE(frame->components == frames[static_cast<std::size_t>(index)]->components)
                << name << " frame " << index;
        }
    }
}

TEST(MediaReader, EndsAreErrorsThatNameTheFrames) {
    const TestFolder folder;
    makeMedia(folder / "a.mp4", 0, 12);
    makeMedia(folder / "s-%d.png", 1, 12);
    for (const char* name : {"a.mp4", "s-%d.png"}) {
        EXPECT_EQ(errorOf(folder / name, 12).place(), "frame 12") << name;
        EXPECT_EQ(errorOf(folder / name, -1).place(), "frame -1") << name;
        EXPECT_EQ(errorOf(folder / name, 9'000'000'000'000L).file(), folder / name);
    }
    EXPECT_THAT(errorOf(folder / "a.mp4", 12).what(),
                HasSubstr("(frame 12): the clip ends after frame 11; "));
    EXPECT_THAT(errorOf(folder / "s-%d.png", 12).what(), HasSubstr("frames 0 to 11 only; "));
    const auto reader = openMedia(folder / "a.mp4", 1);
    EXPECT_THROW((void)reader->readFrame(400), MediaError);
    EXPECT_NO_THROW((void)reader->readFrame(11));
}

TEST(MediaReader, AGapInASequenceIsNamed) {
    const TestFolder folder;
    makeMedia(folder / "s-%d.png", 1, 3);
    std::filesystem::remove(folder / "s-2.png");
    const MediaError error = errorOf(folder / "s-%d.png", 1);
    EXPECT_EQ(error.file(), folder / "s-2.png");
    EXPECT_EQ(error.place(), "frame 1");
    EXPECT_THAT(error.what(), HasSubstr("missing"));
}

/// Spoils so many bytes of a file from its middle on, or another place.
void spoil(const std::string& path, std::size_t count, double place = 0.5) {
    std::string bytes = readBytes(path);
    const auto first = static_cast<std::size_t>(place * static_cast<double>(bytes.size()));
    for (std::size_t i = 0; i < count; ++i) {
        char& byte = bytes[first + i];
        byte = static_cast<char>(byte ^ (count == 1 ? 1 : 0x55));
    }
    writeBytes(path, bytes);
}

/// Writes frames with something in them that moves: noise is coded as it is, where a coding without
/// checksums takes each byte for as good as another.
void makeMoving(const std::string& path, long count) {
    const TestRaster raster(RF_RGBA8, 128, 96, RowOrder::Tight); // smaller ones have no checksums
    const auto writer = openWriter(path, specFor(raster));
    for (long frame = 0; frame < count; ++frame) {
        for (int y = 0; y < 96; ++y) {
            std::uint8_t* pixel = raster.info().row(y);
            for (int x = 0; x < 128; ++x, pixel += 4) {
                pixel[0] = static_cast<std::uint8_t>(2 * x + 9 * frame);
                pixel[1] = static_cast<std::uint8_t>(2 * y);
                pixel[2] = static_cast<std::uint8_t>(x * y / 16 + 5 * frame);
                pixel[3] = 255;
            }
        }
        writer->write(raster.info(), frame);
    }
    writer->finish();
}

// Whatever threads read ahead: the frames before the damage are as they were, and it is no other
// frame that is named.
TEST(MediaReader, DamageIsAnErrorThatNamesTheFrame) {
    const struct {
        const char* name;
        const char* damaged; ///< the file itself, if empty
        /// A single one is found by a checksum alone. H.264 has none, and noise is coded as it is:
        /// all of a frame, where each byte is as good as another.
        std::size_t bytes;
    } cases[] = {
        {"a.mkv", "", 1},
        {"s-%d.png", "s-5.png", 1},
        {"s-%d.tif", "s-5.tif", 9000},
        {"s-%d.exr", "s-5.exr", 40},
        {"a.mov", "", 300},
        {"a.mp4", "", 300},
    };
    for (const auto& c : cases) {
        const TestFolder folder;
        makeMoving(folder / c.name, 10);
        std::vector<Picture> whole;
        for (long index = 0; index < 10; ++index) {
            whole.push_back(*openMedia(folder / c.name, 1)->readFrame(index));
        }
        spoil(folder / (*c.damaged == '\0' ? c.name : c.damaged), c.bytes);
        for (const int threads : {1, 3}) {
            const auto reader = openMedia(folder / c.name, threads);
            long index = 0;
            try {
                for (; index < 10; ++index) {
                    const PicturePtr picture = reader->readFrame(index);
                    EXPECT_TRUE(picture->components ==
                                whole[static_cast<std::size_t>(index)].components)
                        << c.name << " " << index << " of " << threads;
                }
                ADD_FAILURE() << "the damage went unnoticed: " << c.name;
            } catch (const MediaError& error) {
                EXPECT_TRUE(index > 0 && index < 8) << c.name << " " << index;
                EXPECT_EQ(error.place(), framePlace(index)) << c.name;
                EXPECT_THAT(error.what(), HasSubstr(" is damaged ")) << c.name;
            }
        }
    }
}

/// The pictures of a clip up to the first error, and its words.
std::pair<std::vector<PicturePtr>, std::string> shownBy(const std::string& path, int threads) {
    std::vector<PicturePtr> pictures;
    try {
        const auto reader = openMedia(path, threads);
        for (long index = 0; index < 30; ++index) {
            pictures.push_back(reader->readFrame(index));
        }
    } catch (const MediaError& error) {
        return {pictures, error.place() + " " + error.message().substr(0, 24)};
    }
    return {pictures, ""};
}

// H.264 has no checksums: what makes no sense may come to light late, and in several frames at
// once.
TEST(MediaReader, SeveralThreadsSeeTheDamageThatOneSees) {
    const TestFolder folder;
    makeMoving(folder / "whole.mp4", 30);
    for (int place = 25; place < 98; place += 6) {
        for (const std::size_t bytes : {2U, 40U}) {
            SCOPED_TRACE(std::to_string(bytes) + " at " + std::to_string(place));
            std::filesystem::copy_file(folder / "whole.mp4", folder / "a.mp4",
                                       std::filesystem::copy_options::overwrite_existing);
            spoil(folder / "a.mp4", bytes, place / 100.0);
            const auto [alone, words] = shownBy(folder / "a.mp4", 1);
            const auto [together, same] = shownBy(folder / "a.mp4", 4);
            EXPECT_EQ(same, words);
            ASSERT_EQ(together.size(), alone.size());
            for (std::size_t i = 0; i < alone.size(); ++i) {
                EXPECT_TRUE(together[i]->components == alone[i]->components) << i;
            }
        }
    }
}

TEST(MediaReader, SaysWhatCannotBeOpened) {
    const TestFolder folder;
    writeBytes(folder / "text.png", "This is no picture.\nIt only says so.\n");
    writeBytes(folder / "text.txt", std::string(4000, 'x'));
    writeBytes(folder / "empty.png", "");
    writeBytes(folder / "zeros.png", std::string(5000, '\0'));
    writeBytes(folder / "zeros.mp4", std::string(5000, '\0'));
    writeBytes(folder / "list.ffconcat", "ffconcat version 1.0\nfile other.mp4\n");
    writeBytes(folder / "list.m3u8", "#EXTM3U\n#EXT-X-TARGETDURATION:1\n#EXTINF:1,\na.ts\n");
    const struct {
        const char* name;
        const char* words;
    } cases[] = {
        {"none.png", "there is no such file"},
        {"s-%04d.png", "no file of this sequence exists"},
        {"no/folder/s-%04d.png", "no file of this sequence exists"},
        {"s-%x.png", "is no frame number"},
        {"", "is a folder"},
        {"empty.png", "empty"},
        {"text.png", "; "},
        {"text.txt", "; "},
        {"zeros.png", "; "},
        {"zeros.mp4", "; "},
        {"list.ffconcat", "; "},
        {"list.m3u8", "; "},
    };
    for (const auto& c : cases) {
        EXPECT_THAT(errorOf(folder / c.name, 0).what(), HasSubstr(c.words)) << c.name;
    }
}

TEST(MediaReader, PicturesCutShortAreErrors) {
    const TestFolder folder;
    for (const std::string ending : {".png", ".tif", ".exr"}) {
        makeMedia(folder / ("whole" + ending), 0, 1);
        const std::string whole = readBytes(folder / ("whole" + ending));
        for (const std::size_t tenths : {1U, 3U, 5U, 7U, 9U}) {
            writeBytes(folder / ("cut" + ending), whole.substr(0, whole.size() * tenths / 10));
            EXPECT_FALSE(errorOf(folder / ("cut" + ending), 0).message().empty());
        }
    }
}

TEST(MediaReader, NoDamageCrashesIt) {
    const TestFolder folder;
    for (const std::string name : {"a.png", "a.tif", "a.exr", "a.mp4", "a.mov", "a.mkv"}) {
        makeMedia(folder / name, 0, name.size() == 5 && name[2] == 'm' ? 8 : 1);
        const std::string whole = readBytes(folder / name);
        for (unsigned round = 0; round < 25; ++round) {
            std::string damaged = whole;
            for (unsigned i = 0; i <= round % 5; ++i) {
                damaged[(round * 7919U + i * 104729U) % damaged.size()] ^=
                    static_cast<char>(1U << (round + i) % 8U);
            }
            if (round % 3 == 0) {
                damaged.resize(damaged.size() * (round + 1) / 30);
            }
            writeBytes(folder / ("damaged-" + name), damaged);
            try {
                const auto reader = openMedia(folder / ("damaged-" + name), 1);
                for (const long index : {0L, 7L, 3L}) {
                    const auto picture = reader->readFrame(index);
                    EXPECT_GT(picture->width, 0);
                }
            } catch (const MediaError& error) {
                EXPECT_FALSE(error.message().empty());
            }
        }
    }
}

TEST(MediaReader, AClipCutShortEndsWithAnError) {
    const TestFolder folder;
    makeMedia(folder / "whole.mkv", 0, 30);
    const std::string whole = readBytes(folder / "whole.mkv");
    writeBytes(folder / "cut.mkv", whole.substr(0, whole.size() / 2));
    const auto reader = openMedia(folder / "cut.mkv", 1);
    const long count = reader->properties().frameCount.value_or(0);
    EXPECT_GT(count, 5);
    EXPECT_LT(count, 25);
    EXPECT_NO_THROW((void)reader->readFrame(count - 2));
    EXPECT_THROW((void)reader->readFrame(29), MediaError);
}

} // namespace
} // namespace orbel
