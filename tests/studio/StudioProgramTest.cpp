#include "tests/studio/StudioFixture.h"
#include "tests/support/Process.h"

#include <gmock/gmock.h>

#include <cstdlib>

#include <sys/stat.h>

namespace orbel::studio {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

TEST(StudioProgram, printsItsAddressOnceAndEndsOnCtrlC) {
    const test::TestFolder folder;
    const std::string log = folder / "log";
    const test::Process program({ORBEL_PROGRAM, "studio", folder.path(), "--no-open"}, log, 60);
    EXPECT_TRUE(eventually([&] { return test::readBytes(log).find('\n') != std::string::npos; }));
    const std::string said = test::readBytes(log);
    EXPECT_THAT(said, StartsWith("http://127.0.0.1:"));
    const auto port = static_cast<std::uint16_t>(std::stoi(said.substr(17)));
    Wire page(port);
    page.send("GET / HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(port) + "\r\n\r\n");
    EXPECT_EQ(page.read().status, 200);
    program.signal(SIGINT);
    EXPECT_EQ(program.wait(), 0);
    EXPECT_EQ(test::readBytes(log), said);
    EXPECT_EQ(folder.fileCount(), 1U);
}

TEST(StudioProgram, hasTheDesktopOpenItsAddress) {
    const test::TestFolder folder;
    const std::string opener = folder / "xdg-open";
    test::writeBytes(opener, "#!/bin/sh\nprintf %s \"$*\" > '" + (folder / "told") + "'\n");
    ASSERT_EQ(chmod(opener.c_str(), 0755), 0);
    const std::string path = getenv("PATH");
    setenv("PATH", (folder.path().string() + ":" + path).c_str(), 1);
    const test::Process program({ORBEL_PROGRAM, "studio", folder.path()}, folder / "log", 60);
    setenv("PATH", path.c_str(), 1);
    const auto line = [&](const std::string& file) {
        const std::string text = test::readBytes(file);
        return text.substr(0, text.find('\n'));
    };
    EXPECT_TRUE(eventually([&] { return !line(folder / "told").empty(); }));
    EXPECT_EQ(line(folder / "told"), line(folder / "log"));
    program.signal(SIGINT);
    EXPECT_EQ(program.wait(), 0);
}

TEST(StudioProgram, saysWhyItCannotStart) {
    const test::TestFolder folder;
    const RunningStudio other;
    const std::string taken = std::to_string(other.port());
    const std::vector<std::pair<test::Arguments, std::string>> cases{
        {{folder.path(), "--port", taken}, "choose another port"},
        {{folder / "no/scene.json"}, "does not exist"},
        {{folder / "picture.png"}, "scenes end in .json"}};
    for (auto [arguments, remedy] : cases) {
        arguments.insert(arguments.begin(), {ORBEL_PROGRAM, "studio", "--no-open"});
        const test::Process program(arguments, folder / "log", 20);
        EXPECT_EQ(program.wait(), 2) << remedy;
        EXPECT_THAT(test::readBytes(folder / "log"), HasSubstr(remedy));
    }
}

} // namespace
} // namespace orbel::studio
