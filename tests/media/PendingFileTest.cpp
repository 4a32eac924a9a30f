#include "media/PendingFile.h"

#include "media/MediaError.h"
#include "tests/support/TestFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <optional>

#include <sys/stat.h>

namespace orbel {
namespace {

using test::readBytes;
using test::TestFolder;
using test::writeBytes;
namespace fs = std::filesystem;

constexpr Writers bothKinds[] = {Writers::One, Writers::Any};

int codeOf(PendingFile* file, Existing existing) {
    try {
        file->complete(existing);
        return 0;
    } catch (const MediaError& error) {
        return error.code();
    }
}

TEST(PendingFile, ComesIntoBeingAsAWhole) {
    for (const Writers writers : bothKinds) {
        const TestFolder folder;
        writeBytes(folder / "old", "before");
        fs::permissions(folder / "old", fs::perms(0640));
        fs::create_symlink("old", folder / "link");
        {
            PendingFile file(folder / "link", writers);
            file.write("half of ");
            EXPECT_EQ(readBytes(folder / "old"), "before");
            file.write("it");
            file.complete();
        }
        EXPECT_EQ(readBytes(folder / "old"), "half of it");
        EXPECT_EQ(fs::status(folder / "old").permissions(), fs::perms(0640));
        EXPECT_TRUE(fs::is_symlink(folder / "link"));
        PendingFile(folder / "old", writers).write("never completed");
        EXPECT_EQ(readBytes(folder / "old"), "half of it");
        EXPECT_EQ(folder.fileCount(), 2U);
    }
}

TEST(PendingFile, KeepsWhatCameThereInTheMeantimeWhenAsked) {
    for (const Writers writers : bothKinds) {
        const TestFolder folder;
        {
            PendingFile file(folder / "new", writers);
            file.write("mine");
            writeBytes(folder / "new", "somebody else's");
            EXPECT_EQ(codeOf(&file, Existing::Kept), EEXIST);
        }
        EXPECT_EQ(readBytes(folder / "new"), "somebody else's");
        PendingFile file(folder / "other", writers);
        file.write("mine");
        EXPECT_EQ(codeOf(&file, Existing::Kept), 0);
        EXPECT_EQ(readBytes(folder / "other"), "mine");
        EXPECT_EQ(folder.fileCount(), 2U);
    }
}

TEST(PendingFile, OneWriterOrAny) {
    const TestFolder folder;
    writeBytes(folder / "film.part", "what a killed program has left, longer than the rest");
    {
        PendingFile first(folder / "film");
        EXPECT_THROW(PendingFile(folder / "film").release(), MediaError);
        first.write("first");
        first.complete();
        PendingFile second(folder / "film"); // the first has ended its work
        second.write("second");
        second.complete();
    }
    EXPECT_EQ(readBytes(folder / "film"), "second");
    PendingFile a(folder / "text", Writers::Any);
    PendingFile b(folder / "text", Writers::Any);
    a.write("a");
    b.write("b");
    b.complete();
    a.complete();
    EXPECT_EQ(readBytes(folder / "text"), "a");
    EXPECT_EQ(folder.fileCount(), 2U);
}

TEST(PendingFile, WritesToWhatIsNoFileAsItIs) {
    for (const Writers writers : bothKinds) {
        PendingFile file("/dev/null", writers);
        file.write("nothing");
        file.complete();
        EXPECT_TRUE(fs::is_character_file("/dev/null"));
    }
}

TEST(PendingFile, SaysWhatCannotBeWritten) {
    for (const Writers writers : bothKinds) {
        const TestFolder folder;
        std::optional<MediaError> error;
        try {
            const PendingFile file(folder / "none/film", writers);
        } catch (const MediaError& thrown) {
            error = thrown;
        }
        ASSERT_TRUE(error);
        EXPECT_EQ(error->file(), folder / "none/film");
        EXPECT_EQ(error->code(), ENOENT);
        EXPECT_TRUE(error->isPassing());
    }
    EXPECT_THROW(writeWholeFile("/dev/full", "too much"), MediaError);
}

} // namespace
} // namespace orbel
