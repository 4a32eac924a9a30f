#include "app/CommandLine.h"
#include "scene/Diagnostics.h"
#include "tests/media/MediaFixtures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

namespace orbel::app {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class ConversionCommandsTest : public testing::Test {
protected:
    int run(std::vector<std::string> words) {
        words.insert(words.begin(), "orbel");
        std::vector<const char*> argv;
        for (const std::string& word : words) {
            argv.push_back(word.c_str());
        }
        m_out.str("");
        m_err.str("");
        return runCommandLine(static_cast<int>(argv.size()), argv.data(), m_out, m_err);
    }

    TestFolder m_folder;
    std::ostringstream m_out;
    std::ostringstream m_err;
    const std::string m_drawing = R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 9 9">)"
                                  "\n<circle r='4'/>\n<circle r='2'/></svg>";
};

TEST_F(ConversionCommandsTest, importWritesWhatCheckHasNothingToSayAbout) {
    const std::string in = m_folder / "in.svg";
    const std::string out = m_folder / "out.svg";
    writeBytes(in, m_drawing);
    EXPECT_EQ(run({"check", in}), EXIT_DONE);
    EXPECT_THAT(m_out.str(), AllOf(HasSubstr("(line 2): element \"circle\" becomes an oval"),
                                   HasSubstr("(2 times)"), HasSubstr("orbel import")));
    EXPECT_EQ(run({"import", in, "-o", out}), EXIT_DONE);
    EXPECT_THAT(m_out.str(), HasSubstr("2 outlines, 9 x 9 pixels"));
    EXPECT_EQ(run({"check", out}), EXIT_DONE);
    EXPECT_THAT(m_out.str(), HasSubstr("represents it exactly"));
    EXPECT_EQ(run({"import", in, "-o", in}), EXIT_BAD_INPUT);
    EXPECT_EQ(readBytes(in), m_drawing);
}

TEST_F(ConversionCommandsTest, importTakesAFolderAndLeavesNothingOfWhatIsBad) {
    writeBytes(m_folder / "a.svg", m_drawing);
    writeBytes(m_folder / "b.svg", "<svg");
    EXPECT_EQ(run({"import", m_folder / "", "-o", m_folder / "made", "--json"}), EXIT_BAD_INPUT);
    EXPECT_THAT(m_err.str(), HasSubstr("b.svg: this is no readable SVG"));
    EXPECT_THAT(m_out.str(), HasSubstr("\"segments\""));
    EXPECT_EQ(m_folder.fileCount(), 3U); // the two, and the folder
    EXPECT_THAT(readBytes(m_folder / "made/a.svg"), HasSubstr("<path"));
    EXPECT_EQ(readBytes(m_folder / "made/b.svg"), "");
}

TEST_F(ConversionCommandsTest, textWritesAWord) {
    const std::string out = m_folder / "out.svg";
    EXPECT_EQ(run({"text", "i\\nl", "-o", out, "--align", "center"}), EXIT_DONE);
    EXPECT_THAT(m_out.str(), HasSubstr("3 outlines"));
    EXPECT_EQ(run({"check", out}), EXIT_DONE);
    EXPECT_EQ(run({"text", "a", "-o", m_folder / "b.svg", "--hand", "x", "--single-stroke"}),
              EXIT_BAD_INPUT);
    EXPECT_EQ(m_folder.fileCount(), 1U);
}

TEST_F(ConversionCommandsTest, aSceneTakesADrawing) {
    writeBytes(m_folder / "in.svg", m_drawing);
    writeBytes(m_folder / "scene.json",
               R"({"orbel": 1, "size": [32, 18], "shape": {"file": "in.svg", "import": {}}})");
    EXPECT_EQ(run({"render", m_folder / "scene.json", "-o", m_folder / "a.png", "-q"}), EXIT_DONE);
    EXPECT_EQ(run({"render", "--shape", m_folder / "in.svg", "--import", "--size", "32x18", "-o",
                   m_folder / "b.png", "-q"}),
              EXIT_DONE);
    EXPECT_EQ(readBytes(m_folder / "a.png"), readBytes(m_folder / "b.png"));
    EXPECT_EQ(run({"render", "--shape", m_folder / "in.svg", "--size", "32x18", "-o",
                   m_folder / "c.png"}),
              EXIT_DONE);
    EXPECT_THAT(m_err.str(), HasSubstr("becomes an oval"));
    EXPECT_NE(readBytes(m_folder / "c.png"), readBytes(m_folder / "b.png"));
}

} // namespace
} // namespace orbel::app
