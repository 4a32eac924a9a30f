#include "media/OutputTarget.h"

#include "media/MediaError.h"
#include "tests/media/MediaFixtures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orbel {
namespace {

using testing::HasSubstr;

std::string complaint(const std::string& path, long frames) {
    try {
        (void)checkOutput(path, frames);
    } catch (const MediaError& error) {
        EXPECT_EQ(error.file(), path);
        EXPECT_FALSE(error.remedy().empty());
        return error.what();
    }
    return "";
}

TEST(CheckOutput, KnowsItsEndings) {
    const TestFolder folder;
    const struct {
        const char* name;
        OutputKind kind;
        bool film;
        bool sequence;
    } cases[] = {
        {"a.png", OutputKind::Png, false, false},     {"a-%04d.png", OutputKind::Png, false, true},
        {"a.TIF", OutputKind::Tiff, false, false},    {"a%d.tiff", OutputKind::Tiff, false, true},
        {"a.b.exr", OutputKind::Exr, false, false},   {"a.mp4", OutputKind::Mp4, true, false},
        {"a.Mov", OutputKind::Mov, true, false},      {"100%.mkv", OutputKind::Mkv, true, false},
        {"100%%.png", OutputKind::Png, false, false},
    };
    for (const auto& c : cases) {
        const OutputTarget target = checkOutput(folder / c.name, 1);
        EXPECT_EQ(target.kind, c.kind) << c.name;
        EXPECT_EQ(target.isFilm, c.film) << c.name;
        EXPECT_EQ(target.isSequence, c.sequence) << c.name;
    }
    EXPECT_EQ(folder.fileCount(), 0U);
}

TEST(CheckOutput, SaysWhatIsWrong) {
    const TestFolder folder;
    writeBytes(folder / "file", "x");
    std::filesystem::create_directory(folder / "made.png");
    const struct {
        std::string name;
        long frames;
        const char* words;
    } cases[] = {
        {"a.avi", 1,
         "\".avi\" is not known; use .png, .tif, .tiff, .exr, .mp4, .mov, .mkv, .gif, .webp or "
         ".apng"},
        {"a", 1, "has no ending"},
        {"", 1, "has no ending"},
        {"a.png", 2, "cannot hold 2 frames; give a numbered name such as a-%04d.png"},
        {"a-%04d-%d.png", 2, "more than one place"},
        {"a-%s.png", 2, "\"%s\" in the file name is no frame number"},
        {"a-%n%04d.tif", 2, "\"%n\" in the file name"},
        {"missing/a.png", 1, "does not exist"},
        {"missing/a-%04d.exr", 9, "does not exist"},
        {"file/a.mp4", 1, "does not exist"},
        {"made.png", 1, "is a folder"},
    };
    for (const auto& c : cases) {
        EXPECT_THAT(complaint(folder / c.name, c.frames), HasSubstr(c.words)) << c.name;
    }
    EXPECT_EQ(folder.fileCount(), 2U);
}

TEST(CheckOutput, TriesTheFolder) {
    EXPECT_THAT(complaint("/proc/a.png", 1), HasSubstr("cannot be written"));
}

} // namespace
} // namespace orbel
