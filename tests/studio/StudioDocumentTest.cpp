#include "tests/studio/StudioFixture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>
#include <map>
#include <thread>

#include <sys/resource.h>

namespace orbel::studio {
namespace {

using testing::Contains;
using testing::HasSubstr;

class StudioDocument : public testing::Test {
protected:
    StudioDocument() { test::writeBytes(m_studio.folder / "scene.json", sceneText()); }

    [[nodiscard]] json scene() const { return m_studio.get("/api/scene").document(); }
    [[nodiscard]] std::string onDisk() const {
        return test::readBytes(m_studio.folder / "scene.json");
    }
    [[nodiscard]] Reply save(const std::string& text, const std::string& revision,
                             bool overwrite = false) const {
        return m_studio.post("/api/save",
                             {{"text", text}, {"revision", revision}, {"overwrite", overwrite}});
    }

    RunningStudio m_studio;
};

TEST_F(StudioDocument, startsWithSomethingToSee) {
    const RunningStudio studio("");
    const json scene = studio.get("/api/scene").document();
    EXPECT_EQ(scene["name"], "untitled.json");
    EXPECT_EQ(scene["exists"], false);
    EXPECT_EQ(scene["revision"], "");
    const json check = studio.post("/api/check", {{"text", scene["text"]}}).document();
    EXPECT_TRUE(check["problems"].empty());
    EXPECT_EQ(check["plan"]["size"], json({1280, 720}));
    EXPECT_EQ(studio.post("/api/save", {{"text", scene["text"]}, {"revision", ""}}).status, 200);
    EXPECT_EQ(studio.get("/api/scene").document()["exists"], true);
}

TEST_F(StudioDocument, savesTheVeryBytesAndNothingOverSomebodyElse) {
    const std::string text = "{ \"orbel\": 1,\t\"size\": [64, 48.0] }\n\n";
    const std::string first = scene()["revision"];
    const Reply saved = save(text, first);
    EXPECT_EQ(onDisk(), text);
    EXPECT_EQ(scene()["revision"], saved.document()["revision"]);

    test::writeBytes(m_studio.folder / "scene.json", "theirs");
    const Reply conflict = save("mine", saved.document()["revision"]);
    EXPECT_EQ(conflict.status, 409);
    EXPECT_EQ(conflict.document()["text"], "theirs");
    EXPECT_EQ(onDisk(), "theirs");
    EXPECT_EQ(save("mine", conflict.document()["revision"]).status, 200);

    std::filesystem::remove(m_studio.folder / "scene.json");
    EXPECT_EQ(save("back", "gone").document()["text"], nullptr);
    EXPECT_EQ(save("back", "gone", true).status, 200);
    EXPECT_EQ(onDisk(), "back");

    std::filesystem::create_directory(m_studio.folder / "folder.json");
    const json overFolder{{"name", "folder.json"}, {"text", "x"}, {"overwrite", true}};
    EXPECT_GE(m_studio.post("/api/save-as", overFolder).status, 400);
}

TEST_F(StudioDocument, losesNothingToAFullDisk) {
    std::signal(SIGXFSZ, SIG_IGN);
    const std::string before = onDisk();
    rlimit old{};
    getrlimit(RLIMIT_FSIZE, &old);
    const rlimit full{4096, old.rlim_max};
    setrlimit(RLIMIT_FSIZE, &full);
    const Reply saved = save(std::string(100'000, ' '), scene()["revision"]);
    const Reply kept = m_studio.post("/api/journal", {{"text", std::string(100'000, ' ')}});
    setrlimit(RLIMIT_FSIZE, &old);
    EXPECT_EQ(saved.status, 507);
    EXPECT_EQ(kept.status, 507);
    EXPECT_THAT(saved.document()["remedy"], HasSubstr("free some room"));
    EXPECT_EQ(onDisk(), before);
    EXPECT_EQ(m_studio.folder.fileCount(), 1U);
}

TEST_F(StudioDocument, keepsUnsavedWorkBesideTheScene) {
    EXPECT_EQ(scene()["journal"], nullptr);
    EXPECT_EQ(m_studio.post("/api/journal", {{"text", "unsaved"}}).status, 200);
    const RunningStudio next; // as after a crash: another server over a folder like this
    std::filesystem::copy(m_studio.folder / ".scene.json.orbel-journal", next.folder.path());
    const json journal = next.get("/api/scene").document()["journal"];
    EXPECT_EQ(journal["text"], "unsaved");
    EXPECT_THAT(journal["savedAt"].get<std::string>(), testing::EndsWith("Z"));
    EXPECT_EQ(scene()["files"].size(), 1U); // hidden

    EXPECT_EQ(m_studio.post("/api/journal", {{"clear", true}}).status, 200);
    EXPECT_EQ(scene()["journal"], nullptr);
}

TEST_F(StudioDocument, tellsWhatHappensOnTheDiskAndAtTheEnd) {
    Wire events(m_studio.port());
    events.send(RunningStudio::request("GET", "/api/events", m_studio.fields(), ""));
    EXPECT_THAT(events.readSome(1), HasSubstr("alive"));
    static_cast<void>(scene());
    test::writeBytes(m_studio.folder / "scene.json", "theirs"); // before the first look at it
    std::string told = events.readSome(1);
    const auto waitFor = [&](const char* what) {
        return eventually([&] {
            told += told.find(what) == std::string::npos ? events.readSome(1) : "";
            return told.find(what) != std::string::npos;
        });
    };
    EXPECT_TRUE(waitFor(R"("event":"disk")"));
    EXPECT_TRUE(waitFor(revisionOf("theirs").c_str()));
    test::writeBytes(m_studio.folder / "new.svg", "<svg/>");
    EXPECT_TRUE(waitFor(R"("event":"files")"));

    const auto begin = std::chrono::steady_clock::now();
    std::thread page([&] {
        EXPECT_TRUE(waitFor(R"("event":"ending")"));
        EXPECT_EQ(m_studio.post("/api/ended", json::object()).status, 200);
    });
    m_studio.studio->end();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(2500));
    page.join();
    m_studio.studio.reset(); // with the page still listening
}

TEST_F(StudioDocument, checksAScene) {
    const auto problems = [&](const std::string& text) {
        return m_studio.post("/api/check", {{"text", text}}).document()["problems"];
    };
    EXPECT_TRUE(problems(sceneText()).empty());
    const json wrong = problems(sceneText({{"parameters", {{"Thickness", 1e9}, {"Fether", 1}}}}));
    EXPECT_EQ(wrong.size(), 2U);
    EXPECT_EQ(wrong[0]["pointer"], "/parameters/Fether");
    EXPECT_THAT(wrong[0]["remedy"].get<std::string>(), HasSubstr("Feather"));
    const json syntax = problems("{\n  \"orbel\" 1}");
    EXPECT_EQ(syntax[0]["line"], 2);
    EXPECT_EQ(syntax[0]["column"], 11);
}

TEST_F(StudioDocument, takesDropsAndTellsWhatIsLost) {
    const json drop =
        m_studio
            .post("/api/drop", {{"name", "../a/logo.svg"},
                                {"text", "<svg>\n<path d='M0 0 A1 1 0 0 0 2 2 L9 9'/><path d='M0 0 "
                                         "A1 1 0 0 0 2 2 L9 9'/></svg>"}})
            .document();
    EXPECT_EQ(drop["name"], "logo.svg");
    EXPECT_EQ(drop["losses"][0]["line"], 2);
    EXPECT_EQ(drop["losses"][0]["count"], 2);
    const auto dropped = [&](const char* base64) {
        return m_studio.post("/api/drop", {{"name", "a.png"}, {"base64", base64}});
    };
    EXPECT_EQ(dropped("AAEC/w==").document()["name"], "a.png");
    EXPECT_EQ(test::readBytes(m_studio.folder / "a.png"), std::string("\0\1\2\xff", 4));
    EXPECT_EQ(dropped("AAEC/w==").document()["name"], "a.png"); // the very same
    EXPECT_EQ(dropped("AAEC").document()["name"], "a-2.png");
    for (const char* bad : {"A", "AAE", "A===", "A!==", "=AAA", "AA=A"}) {
        EXPECT_EQ(dropped(bad).status, 400) << bad;
    }
}

TEST_F(StudioDocument, importsWhatTheReaderWouldLose) {
    const std::string svg = "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 100 100'>"
                            "<g transform='rotate(90 50 50)'><rect x='10' y='40' width='80' "
                            "height='20'/></g></svg>";
    const json drop = m_studio.post("/api/drop", {{"name", "a.svg"}, {"text", svg}}).document();
    ASSERT_EQ(drop["before"]["paths"].size(), 1U) << drop;
    ASSERT_EQ(drop["after"]["paths"].size(), 1U) << drop;
    EXPECT_NE(drop["before"]["paths"], drop["after"]["paths"]);

    const auto scene = [](const json& shape) {
        return sceneText({{"shape", shape}, {"parameters", {{"Presets", nullptr}}}});
    };
    const auto picture = [&](const std::string& text) {
        return m_studio.post("/api/frame", {{"text", text}, {"frame", 9}}).body;
    };
    const std::string imported = scene({{"file", "a.svg"}, {"import", json::object()}});
    EXPECT_TRUE(m_studio.post("/api/check", {{"text", imported}}).document()["problems"].empty());
    const std::string shown = picture(imported);
    EXPECT_EQ(shown.size(), 64U * 48 * 4);
    EXPECT_NE(shown, picture(scene("a.svg")));
    EXPECT_EQ(shown, picture(imported));
    EXPECT_FALSE(m_studio.post("/api/path", {{"text", imported}}).document()["paths"].empty());
    // Another drawing under the same name.
    test::writeBytes(m_studio.folder / "a.svg",
                     "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 9 9'><circle cx='4' "
                     "cy='4' r='3'/></svg>");
    EXPECT_NE(shown, picture(imported));
}

TEST_F(StudioDocument, listsWhatASceneCanBeMadeOf) {
    for (const char* name :
         {"a.svg", "b.svgz", "film.mkv", "x.raw", "shot-008.png", "shot-010.png", "take9.png",
          "take10.png", "50%1.png", "50%2.png", ".hidden.png", "note.txt", "0"}) {
        test::writeBytes(m_studio.folder / name, "");
    }
    std::map<std::string, json> files;
    const json list = m_studio.get("/api/files").document()["files"];
    for (const json& file : list) {
        files[file["name"]] = file;
    }
    EXPECT_EQ(files["x.raw"]["kind"], "raw");
    EXPECT_EQ(files["b.svgz"]["kind"], "svg");
    EXPECT_EQ(files["shot-%03d.png"],
              json({{"name", "shot-%03d.png"}, {"kind", "sequence"}, {"first", 8}, {"count", 2}}));
    EXPECT_EQ(files["take%d.png"]["count"], 2);
    EXPECT_EQ(std::count_if(list.begin(), list.end(),
                            [](const json& file) { return file["kind"] == "sequence"; }),
              2);
    EXPECT_EQ(files.count("note.txt") + files.count(".hidden.png") + files.count("0"), 0U);
}

TEST_F(StudioDocument, tellsWhatBecomesOfAShape) {
    test::writeBytes(m_studio.folder / "a.svg",
                     "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 9 9'><image "
                     "width='3' height='3'/><circle cx='4' cy='4' r='3'/></svg>");
    const auto shape = [&](const json& stated) {
        return m_studio.post("/api/shape", {{"text", sceneText({{"shape", stated}})}}).document();
    };
    const json drawing = shape({{"file", "a.svg"}, {"import", json::object()}});
    EXPECT_EQ(drawing["before"]["paths"].size(), 1U) << drawing;
    EXPECT_EQ(drawing["after"]["paths"].size(), 1U);
    EXPECT_EQ(drawing["after"]["notes"].size(), 1U);
    EXPECT_EQ(shape({{"text", "ii"}})["after"]["paths"].size(), 4U);
    EXPECT_TRUE(shape({{"text", " "}})["after"].contains("error"));
    EXPECT_EQ(shape("a.svg"), json::object());

    const json letters = m_studio.get("/api/letters").document();
    EXPECT_THAT(letters["families"], Contains("serif"));
    EXPECT_TRUE(std::is_sorted(letters["hands"].begin(), letters["hands"].end()));
    test::writeBytes(m_studio.folder / "scene.json", "theirs");
    const json revision = m_studio.post("/api/revision", {{"name", "scene.json"}}).document();
    EXPECT_EQ(revision["revision"], revisionOf("theirs"));
}

TEST_F(StudioDocument, servesTheTableAsItIs) {
    const json table = m_studio.get("/api/table").document();
    EXPECT_EQ(table["shapes"].size(), 40U);
    std::map<std::string, json> rows;
    for (const json& row : table["rows"]) {
        EXPECT_TRUE(rows.emplace(row["name"], row).second) << row["name"];
    }
    EXPECT_EQ(rows["Repeater/Instances"]["enabledBy"], json({{"parameter", 15}, {"values", {1}}}));
    EXPECT_EQ(rows["Offset"]["min"], -100);
    EXPECT_EQ(rows["Offset"]["sliderMax"], 2000);
    EXPECT_EQ(rows["Transform/X Rotation"]["unit"], "°");
    EXPECT_EQ(rows["Transfer Mode"]["entries"][1], "Normal");
}

} // namespace
} // namespace orbel::studio
