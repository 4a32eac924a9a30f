#include "app/CommandLine.h"
#include "app/Completions.h"
#include "app/ManPage.h"
#include "app/OptionTree.h"
#include "tests/media/MediaFixtures.h"
#include "tests/support/Process.h"

#include <CLI/CLI.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orbel::app {
namespace {

TEST(ManPage, holdsWhatEveryHelpSays) {
    describeCommands([](const CLI::App& program) {
        std::string page = manPage(program, "1.2.3");
        const auto says = [&page](const std::string& text) {
            return page.find(text) != std::string::npos;
        };
        EXPECT_TRUE(says(".TH ORBEL 1 \"\" \"orbel 1.2.3\""));
        EXPECT_TRUE(says("\n\\en starts a new line.")) << "text, not a request";
        EXPECT_TRUE(says("\\-\\-output")) << "no hyphens";
        for (std::size_t at = 0; (at = page.find("\\-", at)) != std::string::npos;) {
            page.erase(at, 1);
        }
        for (const CalledCommand& called : allCommands(program)) {
            for (const CLI::Option* const option : namedOptions(*called.command)) {
                EXPECT_TRUE(says(option->get_description())) << option->get_description();
            }
        }
        EXPECT_TRUE(says("\\fINAME=FRAME:VALUE[:EASING],...\\fR"));
        EXPECT_TRUE(says("\\fIkeep|all|none\\fR\n")) << "the word, without its check";
        EXPECT_FALSE(says("supervise")) << "meant for people";
    });
}

class Completion : public testing::Test {
protected:
    /// What bash offers when the last of these words is completed, a line each.
    std::string offered(const std::string& words) {
        writeBytes(m_folder / "run", "source " + (m_folder / "orbel.bash") + "\nCOMP_WORDS=(" +
                                         words +
                                         ")\nCOMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n"
                                         "_orbel\nprintf '%s\\n' \"${COMPREPLY[@]}\"\n");
        EXPECT_EQ(test::Process({"bash", m_folder / "run"}, m_folder / "said").wait(), 0);
        return readBytes(m_folder / "said");
    }

    TestFolder m_folder;
};

TEST_F(Completion, offersWhatTheProgramTakes) {
    describeCommands([this](const CLI::App& program) {
        writeBytes(m_folder / "orbel.bash", bashCompletion(program));
        writeBytes(m_folder / "_orbel", zshCompletion(program));
    });
    const std::vector<std::pair<std::string, std::string>> cases{
        {"orbel re", "render\n"},
        {"orbel farm s", "submit\nstatus\n"},
        {"orbel render --pro", "--progress\n--profile\n"},
        {"orbel render --progress ''", "text\njson\n"},
        {"orbel import --closed n", "none\n"},
        {"orbel render --set Camera/Zo", "Camera/Zoom=\n"},
        {"orbel render --shape Basic\\\\\\ St", "Basic\\ Star\n"},
        {"orbel render --shape '\"Basic St'", "Basic Star\n"},
        {"orbel render -o re", "\n"}, // a file
    };
    for (const auto& [words, expected] : cases) {
        EXPECT_EQ(offered(words), expected) << words;
    }
}

} // namespace
} // namespace orbel::app
