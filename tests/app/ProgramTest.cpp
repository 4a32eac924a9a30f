#include "media/MediaReader.h"
#include "scene/Diagnostics.h"
#include "tests/media/MediaFixtures.h"
#include "tests/support/Process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>
#include <functional>
#include <set>
#include <sstream>
#include <thread>

namespace orbel::app {
namespace {

using test::Arguments;
using test::words;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class ProgramTest : public testing::Test {
protected:
    [[nodiscard]] test::Process start(Arguments arguments) const {
        arguments.insert(arguments.begin(), ORBEL_PROGRAM);
        return {std::move(arguments), m_folder / "log"};
    }
    int run(const Arguments& arguments) {
        const int code = start(arguments).wait();
        m_log = readBytes(m_folder / "log");
        return code;
    }

    /// A rendering that takes longer than any test, once it has begun to write.
    [[nodiscard]] test::Process startLong(const std::string& film) const {
        test::Process program = start(words({}, "render --size 640x360 --frames 0-100000",
                                            {"--shape", "Basic Star", "-o", film}));
        const std::string partial = film + ".part";
        waitFor([&] {
            return std::filesystem::exists(partial) &&
                   std::filesystem::file_size(partial) >= 20'000;
        });
        return program;
    }
    static void waitFor(const std::function<bool()>& event) {
        const auto patience = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        while (std::chrono::steady_clock::now() < patience && !event()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
    }

    /// Whether there is anything beside the log.
    [[nodiscard]] bool wroteNothing() const { return m_folder.fileCount() == 1; }

    TestFolder m_folder;
    std::string m_log;
};

// Whoever makes a film again, on whatever machine, gets the same file.
TEST_F(ProgramTest, makesTheDemoTheSameFileWithAnyNumberOfThreads) {
    const std::string scene = ORBEL_SOURCE_DIR "/resources/scenes/demo.json";
    for (const std::string name :
         {"a-%03d.png", "a-%03d.tif", "a-%03d.exr", "a.mp4", "a.mov", "a.mkv"}) {
        for (const char* format : {"rgba8", "argb16"}) {
            std::vector<std::string> first;
            for (const char* threads : {"1", "5"}) {
                const TestFolder made;
                ASSERT_EQ(run(words({}, "render --size 128x72 --frames 50-65 -q",
                                    {scene, "--format", format, "--threads", threads, "-o",
                                     made / name})),
                          EXIT_DONE)
                    << m_log;
                std::vector<std::string> files;
                for (const auto& entry : std::filesystem::directory_iterator(made.path())) {
                    files.push_back(entry.path().filename().string() + readBytes(entry.path()));
                }
                std::sort(files.begin(), files.end());
                EXPECT_EQ(files.size(), name.find('%') == std::string::npos ? 1U : 16U);
                first = first.empty() ? files : first;
                EXPECT_TRUE(files == first) << name << " " << format << " " << threads;
            }
        }
    }
}

TEST_F(ProgramTest, namesItsBuildAndTheLibrariesOfItsCodecs) {
    ASSERT_EQ(run({"--version"}), EXIT_DONE);
    for (const char* part : {"orbel ", "commit ", "compiler ", "acceleration level ", "libavcodec ",
                             "libavformat ", "x264 core ", "zlib "}) {
        EXPECT_THAT(m_log, HasSubstr(part));
    }
}

TEST_F(ProgramTest, rendersTheSameFilmFromASceneAndFromOptions) {
    writeBytes(m_folder / "scene.json",
               R"({"orbel": 1, "size": [64, 36], "frames": [0, 3], "fps": 25, "parameters": {
                   "Presets": "Basic Star", "Thickness": 5, "Color": [1, 0.5, 0],
                   "End": {"keys": [[0, 0], [3, 100]]}}})");
    EXPECT_EQ(run({"render", m_folder / "scene.json", "--raw", m_folder / "a"}), EXIT_DONE);
    EXPECT_THAT(m_log, AllOf(HasSubstr("4 frames in "), Not(HasSubstr("note: "))));
    EXPECT_EQ(
        run(words({},
                  "render --size 64x36 --fps 25 --frames 0-3 --set Thickness=5 --set "
                  "Color=1/0.5/0 --animate End=0:0,3:100 -q --threads 1",
                  {"--shape", "Basic Star", "--raw", m_folder / "b", "-o", m_folder / "film.mkv"})),
        EXIT_DONE);
    EXPECT_EQ(m_log, "");
    for (int i = 0; i < 4; ++i) {
        const std::string name = "/frame-00000" + std::to_string(i) + ".raw";
        const std::string frame = readBytes((m_folder / "a") + name);
        EXPECT_EQ(frame.size(), 64U * 36 * 4);
        EXPECT_EQ(frame, readBytes((m_folder / "b") + name));
    }
    const auto film = openMedia(m_folder / "film.mkv", 1);
    EXPECT_EQ(film->properties().frameCount, 4);
    EXPECT_EQ(film->properties().frameRate, (FrameRate{25, 1}));
}

TEST_F(ProgramTest, writesWhatTheEndingSays) {
    for (const char* name : {"a.png", "a.tif", "a.exr", "a.mp4", "a.mov", "a.mkv", "s-%04d.png"}) {
        EXPECT_EQ(run({"render", "--shape", "Basic Circle", "--size", "64x36", "--frames", "7",
                       "-o", m_folder / name}),
                  EXIT_DONE)
            << m_log;
    }
    for (const char* name : {"a.png", "a.tif", "a.exr", "a.mp4", "a.mov", "a.mkv", "s-0007.png"}) {
        EXPECT_EQ(openMedia(m_folder / name, 1)->properties().width, 64) << name;
    }
}

TEST_F(ProgramTest, tellsWhereTheTimeWent) {
    EXPECT_EQ(run({"render", "--shape", "Basic Circle", "--size", "64x36", "--frames", "0-4", "-o",
                   m_folder / "film.mkv", "--quiet", "--profile"}),
              EXIT_DONE);
    for (const char* stage : {"reading ", "rendering ", "writing ", "finishing "}) {
        EXPECT_THAT(m_log, HasSubstr(stage));
    }
    EXPECT_THAT(m_log, Not(HasSubstr("5 frames in ")));
}

TEST_F(ProgramTest, tellsProgramsOneEventALine) {
    EXPECT_EQ(run(words({}, "render --size 16x8 --frames 5-7 --progress json",
                        {"-o", m_folder / "film.mkv"})),
              EXIT_DONE);
    std::istringstream lines(m_log);
    std::string told;
    for (std::string line; std::getline(lines, line);) {
        const auto event = nlohmann::json::parse(line);
        told += event["event"].get<std::string>() + " ";
        if (event["event"] == "frame") {
            told += std::to_string(event["frame"].get<long>()) + " ";
        }
    }
    EXPECT_EQ(told, "start frame 5 frame 6 frame 7 end ");
    EXPECT_EQ(run(words({}, "render --size 0x8 --progress json", {"-o", m_folder / "film.mkv"})),
              EXIT_BAD_INPUT);
    EXPECT_THAT(m_log, HasSubstr(R"("event":"problem")"));
    EXPECT_THAT(m_log, HasSubstr(R"("state":"refused")"));
}

TEST_F(ProgramTest, writesNothingForBadInput) {
    struct Case {
        std::vector<std::string> arguments;
        std::string message;
    };
    const std::string out = m_folder / "out.png";
    const std::vector<Case> cases{
        {{"render", "none.json", "-o", out}, "none.json: the scene file does not exist"},
        {{"render", "--size", "4x4", "-o", m_folder / "out.avi"}, "\".avi\" is not known"},
        {{"render", "--size", "4x4", "-o", m_folder / "none/out.png"}, "does not exist; make it"},
        {{"render", "--size", "4x4", "--raw", m_folder / "none/raw"}, "does not exist; make it"},
        {{"render", "--size", "4x4", "--frames", "0-1", "-o", out}, "out-%04d.png"},
        {{"render", "--size", "4x4", "--set", "Thickness=0", "--raw", m_folder / "raw"},
         "(--set Thickness): 0 is outside"},
        {{"render", "--size", "4x4", "--shape", "none.svg", "-o", out}, "(--shape): \"none.svg\""},
        {{"render", "--input", m_folder / "none.mp4", "-o", out}, "no such file"},
        {{"render", "--size", "4x32768", "-o", out}, "(--size): the size 4 x 32768"},
    };
    for (const Case& bad : cases) {
        EXPECT_EQ(run(bad.arguments), EXIT_BAD_INPUT);
        EXPECT_THAT(m_log, HasSubstr(bad.message));
        EXPECT_TRUE(wroteNothing());
    }
}

TEST_F(ProgramTest, neverWritesOverItsInput) {
    const std::string clip = m_folder / "clip.mkv";
    EXPECT_EQ(run({"render", "--size", "16x8", "--frames", "0-2", "-o", clip}), EXIT_DONE);
    const std::string before = readBytes(clip);
    EXPECT_EQ(run({"render", "--input", clip, "-o", (m_folder / "") + "./clip.mkv"}),
              EXIT_BAD_INPUT);
    EXPECT_THAT(m_log, HasSubstr("the output is also the input"));
    EXPECT_EQ(readBytes(clip), before);
}

TEST_F(ProgramTest, keepsWhatWasFinishedWhenTheClipEnds) {
    const std::string clip = m_folder / "clip.mkv";
    const std::string film = m_folder / "film.mp4";
    EXPECT_EQ(run({"render", "--size", "16x8", "--frames", "0-5", "-o", clip}), EXIT_DONE);
    EXPECT_EQ(run({"render", "--input", clip, "--frames", "0-9", "-o", film}),
              EXIT_RENDERING_FAILED);
    EXPECT_THAT(m_log, HasSubstr("(frame 6): "));
    EXPECT_THAT(m_log, HasSubstr("frames 0 to 5 are finished and readable"));
    EXPECT_EQ(openMedia(film, 1)->properties().frameCount, 6);
}

TEST_F(ProgramTest, finishesTheFilmWhenInterrupted) {
    const std::string film = m_folder / "film.mkv";
    for (const auto& [signal, code] :
         {std::pair{SIGINT, EXIT_INTERRUPTED}, std::pair{SIGTERM, EXIT_TERMINATED}}) {
        const test::Process program = startLong(film);
        EXPECT_FALSE(std::filesystem::exists(film));
        program.signal(signal);
        EXPECT_EQ(program.wait(), code);
        EXPECT_THAT(readBytes(m_folder / "log"), HasSubstr("interrupted: frames 0 to "));
        const auto reader = openMedia(film, 1);
        ASSERT_TRUE(reader->properties().frameCount);
        EXPECT_GT(*reader->properties().frameCount, 0);
        EXPECT_NO_THROW(static_cast<void>(reader->readFrame(*reader->properties().frameCount - 1)));
        std::filesystem::remove(film);
    }
}

// Ahead of the first frame, although only the last is long; and it can be ended in its middle.
TEST_F(ProgramTest, saysThatFramesTakeLongBeforeTheyDo) {
    const std::string film = m_folder / "film.mkv";
    const test::Process program =
        start(words({}, "render --size 64x36 --frames 0-2 --set Thickness=0.2",
                    {"--set", "Adjust Step=1", "--set", "Enable Repeater=On", "--animate",
                     "Instances=0:0,1:0,2:1000", "--shape", "Lots of Circles", "-o", film}));
    waitFor([&] { return readBytes(m_folder / "log").ends_with("fewer\n"); });
    EXPECT_EQ(readBytes(m_folder / "log"),
              "note: a frame may take about 3 min: it has some 931 million stamps; a larger "
              "\"Adjust Step\" takes fewer\n");
    waitFor([&] { return std::filesystem::exists(film + ".part"); });
    program.signal(SIGINT);
    EXPECT_EQ(program.wait(), EXIT_INTERRUPTED);
}

TEST_F(ProgramTest, sharesNoOutputAndLeavesNoHalfFilm) {
    const std::string film = m_folder / "film.mkv";
    const Arguments second = words({}, "render --size 64x36 --frames 0-2", {"-o", film});
    writeBytes(film, "an older film");
    const test::Process first = startLong(film);
    std::filesystem::rename(m_folder / "log", m_folder / "first");
    EXPECT_EQ(run(second), EXIT_TRY_AGAIN);
    EXPECT_THAT(m_log, HasSubstr("film.mkv: another program is writing this output; "));
    first.signal(SIGKILL);
    EXPECT_EQ(first.wait(), -SIGKILL);
    EXPECT_EQ(readBytes(film), "an older film");
    EXPECT_EQ(run(second), EXIT_DONE);
    EXPECT_EQ(openMedia(film, 1)->properties().frameCount, 3);
    EXPECT_FALSE(std::filesystem::exists(film + ".part"));
}

TEST_F(ProgramTest, makesOneFilmWithAnyNumberOfThreads) {
    for (const char* ending : {"mp4", "mov", "mkv"}) {
        std::set<std::string> films;
        for (const char* threads : {"1", "2", "7"}) {
            const std::string film = m_folder / (std::string("film.") + ending);
            EXPECT_EQ(run(words({}, "render --size 320x200 --frames 0-29",
                                {"--shape", "Basic Star", "--animate", "End=0:0,29:100",
                                 "--threads", threads, "-o", film})),
                      EXIT_DONE);
            films.insert(readBytes(film));
        }
        EXPECT_EQ(films.size(), 1U) << ending;
    }
}

TEST_F(ProgramTest, rendersHostileShapesAsNoStroke) {
    const std::vector<std::string> shapes{"",
                                          "<svg",
                                          "<svg><path d='M 1e999 nan'/></svg>",
                                          "<svg><circle r='0'/></svg>",
                                          "<svg><g transform='rotate(1)'/></svg>",
                                          std::string(100'000, '<')};
    for (const std::string& shape : shapes) {
        writeBytes(m_folder / "shape.svg", shape);
        EXPECT_EQ(run({"render", "--shape", m_folder / "shape.svg", "--size", "32x32", "-o",
                       m_folder / "out.png", "-q"}),
                  EXIT_DONE);
        EXPECT_EQ(m_log, "");
    }
}

} // namespace
} // namespace orbel::app
