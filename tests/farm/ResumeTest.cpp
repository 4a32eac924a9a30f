#include "farm/Chunk.h"
#include "media/PendingFile.h"
#include "scene/Diagnostics.h"
#include "scene/SceneReader.h"
#include "scene/SceneWriter.h"
#include "tests/media/MediaFixtures.h"
#include "tests/support/Process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <thread>

namespace orbel {
namespace {

using test::Arguments;
using testing::ElementsAre;
using testing::HasSubstr;
namespace fs = std::filesystem;

/// A scene of 25 frames over a clip, and what the program says of it.
class ResumeTest : public testing::Test {
protected:
    ResumeTest() {
        const TestRaster raster(RF_RGBA8, 64, 64, RowOrder::Tight);
        writeNoise(m_folder / "clip.mkv", raster, specFor(raster), 0, 25);
        writeScene(40);
    }

    void writeScene(int thickness) const {
        writeBytes(m_folder / "scene.json",
                   R"({"orbel": 1, "size": [160, 96], "input": {"file": "clip.mkv"},
                       "parameters": {"Presets": "Basic Star", "Transfer Mode": "Normal",
                       "End": {"keys": [[0, 0, "ease"], [24, 100]]}, "Motion Blur": "On",
                       "Thickness": )" +
                       std::to_string(thickness) + "}}");
    }

    [[nodiscard]] test::Process start(const Arguments& more) const {
        Arguments all{ORBEL_PROGRAM, "render", m_folder / "scene.json", "-q"};
        all.insert(all.end(), more.begin(), more.end());
        return {std::move(all), m_folder / "log"};
    }
    int run(const Arguments& more) {
        const int code = start(more).wait();
        m_log = readBytes(m_folder / "log");
        return code;
    }
    int resume(const std::string& film) { return run({"--resume", "--chunk", "4", "-o", film}); }

    /// Renders every chunk, and finds the film in other hands.
    void leaveUnjoined(const std::string& film) {
        const PendingFile sign(film);
        EXPECT_EQ(resume(film), EXIT_TRY_AGAIN);
        EXPECT_THAT(m_log, HasSubstr("25 of 25 frames are kept in "));
    }

    TestFolder m_folder;
    std::string m_log;
};

TEST_F(ResumeTest, givesTheFilmThatIsMadeInOneGo) {
    for (const char* ending : {".mp4", ".mov", ".mkv"}) {
        for (const char* format : {"rgba8", "argb16", "rgba32f"}) {
            const std::string one = m_folder / (std::string("one") + ending);
            const std::string two = m_folder / (std::string("two") + ending);
            EXPECT_EQ(run({"--format", format, "-o", one}), EXIT_DONE);
            EXPECT_EQ(run({"--format", format, "-o", two, "--resume", "--chunk", "7"}), EXIT_DONE);
            EXPECT_TRUE(readBytes(one) == readBytes(two)) << ending << " " << format;
            EXPECT_FALSE(fs::exists(two + ".orbel"));
        }
    }
    // Of an odd size, which H.264 does not know.
    const Arguments odd{"--size", "61x35", "-o"};
    EXPECT_EQ(run(test::words(odd, "", {m_folder / "odd.mp4"})), EXIT_DONE) << m_log;
    EXPECT_EQ(run(test::words(odd, "", {m_folder / "parts.mp4", "--resume", "--chunk", "7"})),
              EXIT_DONE);
    EXPECT_TRUE(readBytes(m_folder / "odd.mp4") == readBytes(m_folder / "parts.mp4"));
    // A shape that is converted first, once for all chunks.
    writeBytes(m_folder / "drawing.svg",
               "<svg viewBox='0 0 99 99'><g transform='rotate(20)'><rect x='30' y='9' width='50' "
               "height='40' rx='5'/></g></svg>");
    const Arguments drawing{"--import", "--shape", m_folder / "drawing.svg", "-o"};
    EXPECT_EQ(run(test::words(drawing, "", {m_folder / "one.mov"})), EXIT_DONE) << m_log;
    EXPECT_EQ(run(test::words(drawing, "", {m_folder / "two.mov", "--resume"})), EXIT_DONE);
    EXPECT_TRUE(readBytes(m_folder / "one.mov") == readBytes(m_folder / "two.mov"));
    EXPECT_EQ(run({"--resume", "--chunk", "7", "-o", m_folder / "s-%04d.png"}), EXIT_DONE);
    EXPECT_EQ(run({"-o", m_folder / "t-%04d.png"}), EXIT_DONE);
    for (long frame = 0; frame < 25; ++frame) {
        const std::string name = "-00" + std::string(frame < 10 ? "0" : "") + std::to_string(frame);
        EXPECT_TRUE(readBytes(m_folder / ("s" + name + ".png")) ==
                    readBytes(m_folder / ("t" + name + ".png")));
    }
}

TEST_F(ResumeTest, survivesBeingKilledAtAnyMoment) {
    const std::string one = m_folder / "one.mp4";
    const std::string two = m_folder / "two.mp4";
    EXPECT_EQ(run({"-o", one}), EXIT_DONE);
    std::mt19937 random(7); // NOLINT(cert-msc51-cpp): the same moments in every run
    for (int i = 0; i < 100; ++i) {
        const test::Process program = start({"--resume", "--chunk", "1", "-o", two});
        std::this_thread::sleep_for(std::chrono::milliseconds(5 + random() % 120));
        program.signal(SIGKILL);
        if (program.wait() == EXIT_DONE) {
            fs::remove(two); // and once more from the beginning
        }
    }
    EXPECT_EQ(run({"--resume", "--chunk", "1", "-o", two}), EXIT_DONE) << m_log;
    EXPECT_TRUE(readBytes(one) == readBytes(two));
    EXPECT_THAT(m_folder.fileNames(),
                ElementsAre("clip.mkv", "log", "one.mp4", "scene.json", "two.mp4"));
}

TEST_F(ResumeTest, rendersDamagedAndMissingChunksAgain) {
    const std::string one = m_folder / "one.mov";
    const std::string two = m_folder / "two.mov";
    EXPECT_EQ(run({"-o", one}), EXIT_DONE);
    leaveUnjoined(two);
    std::string bytes = readBytes(two + ".orbel/chunks/000/000001.mov");
    bytes[bytes.size() / 2] = static_cast<char>(bytes[bytes.size() / 2] ^ 4);
    writeBytes(two + ".orbel/chunks/000/000001.mov", bytes);
    fs::remove(two + ".orbel/chunks/000/000002.mov");
    EXPECT_EQ(resume(two), EXIT_DONE) << m_log;
    EXPECT_TRUE(readBytes(one) == readBytes(two));
}

TEST_F(ResumeTest, tellsWhatIsNotAsItWas) {
    const std::string film = m_folder / "film.mov";
    leaveUnjoined(film);
    writeScene(41);
    EXPECT_EQ(resume(film), EXIT_BAD_INPUT);
    EXPECT_THAT(m_log, HasSubstr("begun with something else: the scene; put that back, or begin "
                                 "anew with --restart"));
    writeScene(40);
    const TestRaster raster(RF_RGBA8, 64, 64, RowOrder::Tight);
    const std::string before = readBytes(m_folder / "clip.mkv");
    writeNoise(m_folder / "clip.mkv", raster, specFor(raster), 1, 25);
    EXPECT_EQ(resume(film), EXIT_BAD_INPUT);
    EXPECT_THAT(m_log, HasSubstr("the file "));
    EXPECT_FALSE(fs::exists(film));
    writeBytes(m_folder / "clip.mkv", before);
    EXPECT_EQ(resume(film), EXIT_DONE) << m_log;
    writeScene(41);
    EXPECT_EQ(run({"-o", m_folder / "other.mov"}), EXIT_DONE);
    EXPECT_EQ(run({"--restart", "-o", film}), EXIT_DONE);
    EXPECT_TRUE(readBytes(film) == readBytes(m_folder / "other.mov"));
}

// Thousands of tasks share one folder of pictures: each looks at those that it needs.
TEST_F(ResumeTest, looksAtThePicturesOfItsFramesAlone) {
    const TestRaster raster(RF_RGBA8, 32, 32, RowOrder::Tight);
    writeNoise(m_folder / "in-%02d.png", raster, specFor(raster), 1, 9);
    Problems problems;
    Scene scene;
    scene.input = MediaInput{m_folder / "in-%02d.png"};
    scene.frames = FrameRange{0, 8};
    FilmRequest request;
    request.outputs.file = m_folder / "film.mov";
    const std::optional<ScenePlan> plan = planFilm(scene, request, &problems);
    ASSERT_TRUE(plan);
    fs::create_directories(jobFolderOf(request.outputs));
    writeJob(makeJob(scene, *plan, request.outputs, 3));
    const Job job = readJob(jobFolderOf(request.outputs));
    writeBytes(m_folder / "in-05.png", "another"); // of frame 4
    fs::remove(m_folder / "in-09.png");
    EXPECT_THAT(changesSince(job, {0, 3}), testing::IsEmpty());
    EXPECT_THAT(changesSince(job, {3, 5}), ElementsAre(HasSubstr("in-05.png")));
    EXPECT_THAT(changesSince(job, job.frames),
                ElementsAre(HasSubstr("in-05.png"), HasSubstr("in-09.png, which is gone")));
}

// Nothing is rendered on a machine that somebody only submits from, unless they say so.
TEST_F(ResumeTest, namesTheWayWithoutACluster) {
    const struct {
        const char* scontrol;
        int code;
        const char* words;
    } cases[] = {
        {"", EXIT_BAD_INPUT, "(scontrol): there is no such command on this machine; "},
        {"echo 'Slurmctld(primary) at head is DOWN'; exit 1", EXIT_TRY_AGAIN,
         "it refuses: Slurmctld(primary) at head is DOWN; look at the cluster "},
    };
    for (const auto& c : cases) {
        if (*c.scontrol != '\0') {
            writeBytes(m_folder / "scontrol", std::string("#!/bin/sh\n") + c.scontrol + "\n");
            fs::permissions(m_folder / "scontrol", fs::perms::owner_all);
        }
        const Arguments submit{"/usr/bin/env", "PATH=" + m_folder.path().string(),
                               ORBEL_PROGRAM,  "farm",
                               "submit",       m_folder / "scene.json",
                               "-o",           m_folder / "film.mov"};
        EXPECT_EQ(test::Process(submit, m_folder / "log").wait(), c.code);
        EXPECT_THAT(readBytes(m_folder / "log"),
                    testing::AllOf(HasSubstr(c.words), HasSubstr("--engine local")));
    }
}

TEST(SceneText, readsBackAsTheSameScene) {
    const char* const text = R"({"orbel": 1, "size": [64, 36], "frames": [3, 9], "fps": 29.97,
        "format": "argb16", "pixelAspect": 1.1, "renderScale": [0.5, 0.25],
        "input": {"file": "/a/s-%04d.png", "first": 7}, "shape": "/b/x.svg",
        "parameters": {"Presets": 3, "Color": [0.1, 0.2, 0.3], "Loop": true, "Motion Blur": "On",
        "End": {"keys": [[0, 0.1, "ease"], [9.5, 99.9, "hold"], [11, 3]]},
        "Transform/XY Position": {"keys": [[0, [0.5, -1]], [3, [1, 2]]]}}})";
    Problems problems;
    const std::optional<Scene> scene = readScene(text, "/scene.json", &problems);
    ASSERT_TRUE(scene && problems.empty());
    const std::string written = sceneText(*scene);
    const std::optional<Scene> again = readScene(written, "/scene.json", &problems);
    ASSERT_TRUE(again && problems.empty()) << written;
    EXPECT_EQ(sceneText(*again), written);
    EXPECT_EQ(again->parameters.size(), scene->parameters.size());
    for (const auto& [id, keys] : scene->parameters) {
        ASSERT_EQ(again->parameters.at(id).size(), keys.size());
        for (std::size_t i = 0; i < keys.size(); ++i) {
            EXPECT_EQ(again->parameters.at(id)[i].frame, keys[i].frame);
            EXPECT_EQ(again->parameters.at(id)[i].value, keys[i].value);
            EXPECT_EQ(again->parameters.at(id)[i].easing, keys[i].easing);
        }
    }
    EXPECT_EQ(again->frames, scene->frames);
    EXPECT_EQ(again->framesPerSecond, scene->framesPerSecond);
    EXPECT_EQ(std::get<MediaInput>(again->input).first, 7);
    EXPECT_EQ(again->renderScaleY, 0.25);
}

} // namespace
} // namespace orbel
