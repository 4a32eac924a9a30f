#include "tests/studio/StudioFixture.h"
#include "tests/support/Process.h"

#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace orbel::studio {
namespace {

class StudioExport : public testing::Test {
protected:
    [[nodiscard]] Reply order(const std::string& name, json more = json::object()) const {
        more.merge_patch({{"name", name}});
        if (!more.contains("text")) {
            more["text"] = sceneText();
        }
        return m_studio.post("/api/export", more);
    }
    [[nodiscard]] json job(const json& number) const {
        const json all = m_studio.get("/api/jobs").document();
        for (const json& one : all["jobs"]) {
            if (one["job"] == number) {
                return one;
            }
        }
        return nullptr;
    }
    /// Waits for its end.
    [[nodiscard]] json ended(const json& number) const {
        json one;
        EXPECT_TRUE(eventually(
            [&] {
                one = job(number);
                return one["state"] != "waiting" && one["state"] != "running";
            },
            60));
        return one;
    }

    RunningStudio m_studio;
};

TEST_F(StudioExport, makesTheBytesOfTheCommandLine) {
    test::writeBytes(m_studio.folder / "scene.json", sceneText());
    for (const char* name : {"film.mp4", "film.mov", "still-%02d.png"}) {
        const json number = order(name, {{"from", 2}, {"to", 5}}).document()["job"];
        const json done = ended(number);
        EXPECT_EQ(done["state"], "done") << done;
        EXPECT_EQ(done["done"], 4);
        const std::string same = m_studio.folder / ("same-" + std::string(name));
        const test::Process program({ORBEL_PROGRAM, "render", m_studio.folder / "scene.json", "-q",
                                     "--frames", "2-5", "-o", same},
                                    m_studio.folder / "log");
        EXPECT_EQ(program.wait(), 0);
        const bool film = name[0] == 'f';
        EXPECT_TRUE(test::readBytes(m_studio.folder / (film ? name : "still-05.png")) ==
                    test::readBytes(film ? same : m_studio.folder / "same-still-05.png"))
            << name;
    }
}

TEST_F(StudioExport, writesOverNothingUnasked) {
    test::writeBytes(m_studio.folder / "film.mkv", "old");
    test::writeBytes(m_studio.folder / "still-03.png", "old");
    EXPECT_EQ(order("film.mkv").status, 409);
    EXPECT_EQ(order("still-%02d.png").status, 409);
    EXPECT_EQ(order("still-%02d.png", {{"from", 4}, {"to", 5}}).status, 200);
    const json number = order("film.mkv", {{"overwrite", true}}).document()["job"];
    EXPECT_EQ(ended(number)["state"], "done");
    EXPECT_NE(test::readBytes(m_studio.folder / "film.mkv"), "old");
}

TEST_F(StudioExport, cancelsAndLeavesNothingHalf) {
    test::writeBytes(m_studio.folder / "film.mkv", "old");
    const std::string slow = sceneText(
        {{"size", {640, 480}}, {"frames", {0, 99999}}, {"parameters", {{"Feather", 90}}}});
    const json running = order("film.mkv", {{"text", slow}, {"overwrite", true}}).document()["job"];
    const json waiting = order("other.mkv", {{"text", slow}}).document()["job"];
    EXPECT_TRUE(eventually([&] { return job(running)["done"] > 2; }, 60));
    EXPECT_GT(job(running)["secondsLeft"], 0);
    EXPECT_EQ(job(waiting)["state"], "waiting");
    EXPECT_EQ(m_studio.post("/api/cancel", {{"job", waiting}}).status, 200);
    EXPECT_EQ(m_studio.post("/api/cancel", {{"job", running}}).status, 200);
    EXPECT_EQ(m_studio.post("/api/cancel", {{"job", 99}}).status, 404);
    EXPECT_EQ(ended(running)["state"], "cancelled");
    EXPECT_EQ(ended(waiting)["state"], "cancelled");
    EXPECT_EQ(test::readBytes(m_studio.folder / "film.mkv"), "old");
    EXPECT_EQ(m_studio.folder.fileCount(), 1U);
}

TEST_F(StudioExport, givesWayToAPictureThatIsWaitedFor) {
    const json number = order("slow.mkv", {{"text", endlessScene()}}).document()["job"];
    EXPECT_TRUE(eventually([&] { return job(number)["state"] == "running"; }));
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    EXPECT_EQ(m_studio.post("/api/frame", {{"text", sceneText()}}).status, 200); // else in minutes
    EXPECT_EQ(m_studio.post("/api/cancel", {{"job", number}}).status, 200);
    EXPECT_EQ(ended(number)["state"], "cancelled");
    EXPECT_EQ(m_studio.folder.fileCount(), 0U);
}

TEST_F(StudioExport, getsOnBesideAHandThatNeverRests) {
    std::atomic<bool> rests = false;
    std::thread hand([&] {
        while (!rests) {
            static_cast<void>(m_studio.post("/api/frame", {{"text", sceneText()}}));
        }
    });
    const json number = order("film.mkv", {{"from", 0}, {"to", 5}}).document()["job"];
    EXPECT_TRUE(eventually([&] { return job(number)["state"] == "done"; }, 30));
    rests = true;
    hand.join();
}

TEST_F(StudioExport, showsWhatIsDone) {
    const json number = order("film.mkv").document()["job"];
    EXPECT_EQ(m_studio.post("/api/ticket", {{"job", 99}}).status, 404);
    ASSERT_EQ(ended(number)["state"], "done");
    const std::string path =
        "/result/" +
        m_studio.post("/api/ticket", {{"job", number}}).document()["ticket"].get<std::string>();
    const std::string film = test::readBytes(m_studio.folder / "film.mkv");
    const auto part = [&](const std::string& range) {
        // As an element of the page asks: without the token.
        return m_studio.exchange(
            RunningStudio::request("GET", path, {{"Host", m_studio.host()}, {"Range", range}}, ""));
    };
    EXPECT_TRUE(m_studio.get(path).body == film);
    EXPECT_TRUE(part("bytes=10-19").body == film.substr(10, 10));
    EXPECT_TRUE(part("bytes=-7").body == film.substr(film.size() - 7));
    const std::string size = std::to_string(film.size());
    EXPECT_EQ(part("bytes=5-").headers.at("content-range"),
              "bytes 5-" + std::to_string(film.size() - 1) + "/" + size);
    EXPECT_EQ(part("bytes=" + size + "-").status, 416);
    EXPECT_EQ(part("bytes=18446744073709551616-").status, 200);
    std::filesystem::remove(m_studio.folder / "film.mkv");
    EXPECT_EQ(m_studio.get(path).status, 404);
}

TEST_F(StudioExport, saysWhatIsWrongWithAnOrder) {
    for (const char* name : {"film.txt", "film", "still.png"}) {
        EXPECT_EQ(order(name).status, 422) << name;
    }
    EXPECT_EQ(order("../film.mkv").status, 404);
    EXPECT_EQ(order("film.mkv", {{"from", 5}, {"to", 2}}).status, 400);
    EXPECT_EQ(order("film.mkv", {{"text", "{"}}).status, 422);
    EXPECT_EQ(m_studio.folder.fileCount(), 0U);
}

} // namespace
} // namespace orbel::studio
