#include "farm/Job.h"

#include "film/Film.h"
#include "scene/SceneReader.h"
#include "tests/media/MediaFixtures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <functional>

namespace orbel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
namespace fs = std::filesystem;

/// A job of ten frames in chunks of four, over two pictures and a shape.
class JobTest : public testing::Test {
protected:
    JobTest() {
        for (const char* const name : {"in-2.raw", "in-10.raw", "in-x.raw", "shape.svg"}) {
            writeBytes(m_folder / name, name);
        }
        Problems problems;
        Scene scene =
            *readScene(R"({"orbel": 1, "size": [8, 6]})", m_folder / "scene.json", &problems);
        scene.input = MediaInput{m_folder / "in-%d.raw"};
        scene.shape = m_folder / "shape.svg";
        ScenePlan plan;
        plan.frames = {3, 12};
        plan.size = {8, 6};
        FilmOutputs outputs;
        outputs.file = m_folder / "a/../film.mkv";
        m_job = makeJob(scene, plan, outputs, 4);
        fs::create_directory(m_job.folder);
    }
    [[nodiscard]] std::string description() const { return m_job.folder + "/job.json"; }

    TestFolder m_folder;
    Job m_job;
};

TEST_F(JobTest, knowsItsFilesAndChunks) {
    EXPECT_EQ(m_job.folder, m_folder / "film.mkv.orbel");
    EXPECT_EQ(*m_job.outputs.file, m_folder / "film.mkv");
    EXPECT_EQ(m_job.chunkCount(), 3);
    EXPECT_EQ(m_job.chunkRange(0), (FrameRange{3, 6}));
    EXPECT_EQ(m_job.chunkRange(2), (FrameRange{11, 12}));
    std::vector<std::string> names;
    for (const JobFile& file : m_job.files) {
        names.push_back(fs::path(file.path).filename());
        EXPECT_EQ(file.bytes, names.back().size());
        EXPECT_EQ(file.hash.size(), 64U);
    }
    EXPECT_THAT(names, ElementsAre("in-2.raw", "in-10.raw", "shape.svg"));
    FilmOutputs raw;
    raw.rawFolder = m_folder / "frames//";
    EXPECT_EQ(jobFolderOf(raw), m_folder / "frames.orbel");
}

TEST_F(JobTest, readsBackWhatItWrote) {
    m_job.shapeText = "<svg/>";
    writeJob(m_job);
    const Job again = readJob(m_job.folder);
    EXPECT_THAT(differences(m_job, again), IsEmpty());
    EXPECT_EQ(again.folder, m_job.folder);
    EXPECT_EQ(again.files[1].modified, m_job.files[1].modified);
    EXPECT_EQ(sceneOf(again).frames, m_job.frames);
    const std::string text = readBytes(description());
    const std::pair<const char*, const char*> damages[] = {
        {"\"orbel-job\": 1", "\"orbel-job\": 2"},
        {"\"chunk\": 4", "\"chunk\": 0"},
        {"\"chunk\": 4", "\"chunk\": \"x\""},
        {"{", ""},
        {"\"frames\": [\n    3", "\"frames\": [\n    30"},
        {"\"scene\"", "\"scenes\""}};
    for (const auto& [from, to] : damages) {
        std::string damaged = text;
        ASSERT_NE(damaged.find(from), std::string::npos) << from << text;
        writeBytes(description(), damaged.replace(damaged.find(from), std::strlen(from), to));
        try {
            static_cast<void>(readJob(m_job.folder));
            ADD_FAILURE() << from;
        } catch (const MediaError& error) {
            EXPECT_THAT(error.what(), HasSubstr("begin anew with --restart"));
            EXPECT_EQ(error.message(), std::string(to).ends_with("2")
                                           ? "the job was made by another version of this program"
                                           : "the job is damaged");
        }
    }
}

TEST_F(JobTest, saysWhatTwoJobsDifferIn) {
    const std::pair<std::function<void(Job&)>, const char*> rows[] = {
        {[](Job& job) { job.scene += " "; }, "the scene"},
        {[](Job& job) { job.shapeText = "x"; }, "the shape"},
        {[](Job& job) { job.frames.last = 20; }, "the frames (3 to 12, now 3 to 20)"},
        {[](Job& job) { job.size.width = 1; }, "the size"},
        {[](Job& job) { job.chunkFrames = 5; }, "the frames of a chunk (4)"},
        {[](Job& job) { job.build = "b"; }, "the program (a)"},
        {[](Job& job) { job.outputs.file = "b"; }, "the output"},
        {[](Job& job) { job.outputs.rawFolder = "b"; }, "the raw folder"},
        {[](Job& job) { job.files.pop_back(); }, "the number of files that the scene reads"},
    };
    m_job.build = "a";
    for (const auto& [change, words] : rows) {
        Job other = m_job;
        change(other);
        EXPECT_THAT(differences(m_job, other), ElementsAre(words));
    }
    Job other = m_job;
    other.files[1].hash = "x";
    other.files[0].modified = 0;
    EXPECT_THAT(differences(m_job, other), ElementsAre("the file " + (m_folder / "in-10.raw")));
}

TEST_F(JobTest, looksWhetherItsFilesHaveChanged) {
    EXPECT_THAT(changesSince(m_job, m_job.frames), IsEmpty());
    const std::string picture = m_folder / "in-10.raw";
    const auto later = [&] {
        fs::last_write_time(picture, fs::file_time_type::clock::now() + std::chrono::hours(1));
    };
    later();
    EXPECT_THAT(changesSince(m_job, m_job.frames), IsEmpty()); // the same bytes again
    writeBytes(picture, "IN-10.raw");
    later();
    fs::remove(m_folder / "shape.svg");
    m_job.build = "a";
    EXPECT_THAT(changesSince(m_job, m_job.frames),
                ElementsAre("the program (a)", "the file " + picture,
                            "the file " + (m_folder / "shape.svg") + ", which is gone"));
    writeBytes(picture, "other");
    EXPECT_THAT(changesSince(m_job, m_job.frames)[1], "the file " + picture);
}

TEST_F(JobTest, trustsWhatIsKnownOfAFileOfTheSameSizeAndTime) {
    Job known = m_job;
    known.files[0].hash = "remembered";
    known.files[1].hash = "of another time";
    known.files[1].modified += 1;
    known.files[2].hash = "of another size";
    known.files[2].bytes += 1;
    ScenePlan plan;
    plan.frames = m_job.frames;
    const Job again = makeJob(sceneOf(m_job), plan, m_job.outputs, 4, &known);
    EXPECT_EQ(again.files[0].hash, "remembered");
    EXPECT_EQ(again.files[1].hash, m_job.files[1].hash);
    EXPECT_EQ(again.files[2].hash, m_job.files[2].hash);
}

} // namespace
} // namespace orbel
