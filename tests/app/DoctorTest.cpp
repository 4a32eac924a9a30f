#include "app/DoctorCommand.h"

#include "app/PluginFolders.h"
#include "scene/Diagnostics.h"
#include "tests/media/MediaFixtures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <optional>
#include <sstream>

namespace orbel::app {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;

/// Another value for an environment variable, for as long as it lives.
class Setting {
public:
    Setting(const char* name, const std::string& value) : m_name(name) {
        if (const char* const before = std::getenv(name)) {
            m_before = before;
        }
        setenv(name, value.c_str(), 1);
    }
    ~Setting() {
        if (m_before) {
            setenv(m_name, m_before->c_str(), 1);
        } else {
            unsetenv(m_name);
        }
    }
    Setting(const Setting&) = delete;
    Setting& operator=(const Setting&) = delete;

private:
    const char* m_name;
    std::optional<std::string> m_before;
};

class Doctor : public testing::Test {
protected:
    Doctor() {
        fs::create_directories(m_folder / "f");
        fs::create_directories(fs::path(ofxBinary(m_folder / "o")).parent_path());
        fs::create_directories(m_folder / "o/Orbel.ofx.bundle/Contents/Resources/Tessaly/SVG");
    }

    /// Puts a file where hosts look for a plug-in.
    void putOfx(const std::string& file) const {
        fs::copy_file(file, ofxBinary(m_folder / "o"), fs::copy_options::overwrite_existing);
    }
    void putFrei0r(const std::string& file) const {
        fs::copy_file(file, m_folder / "f/orbel.so", fs::copy_options::overwrite_existing);
    }

    int examine() {
        std::ostringstream out;
        const int code = doctorCommand(out);
        m_words = out.str();
        return code;
    }

    TestFolder m_folder;
    Setting m_home{"HOME", m_folder / "home"};
    Setting m_frei0r{"FREI0R_PATH", "/nowhere::" + (m_folder / "f")};
    Setting m_ofx{"OFX_PLUGIN_PATH", m_folder / "o"};
    std::string m_words;
};

#ifdef ORBEL_FREI0R_PLUGIN
TEST_F(Doctor, isContentWhenEveryHostFindsWhatWorks) {
    const Setting shapes("QUARVEX_ORBEL_SVG_DIR", ORBEL_SOURCE_DIR "/resources/Tessaly/SVG");
    putOfx(ORBEL_OFX_STAND_IN);
    putFrei0r(ORBEL_FREI0R_PLUGIN);
    EXPECT_EQ(examine(), EXIT_DONE) << m_words;
    EXPECT_THAT(m_words, HasSubstr("(test.stand-in 3.14)"));
    EXPECT_THAT(m_words, HasSubstr("ffmpeg: " + (m_folder / "f/orbel.so") +
                                   " (Orbel " ORBEL_SHORT_VERSION ", "));
    EXPECT_THAT(m_words, Not(HasSubstr("PROBLEM")));
}

TEST_F(Doctor, noticesAPlugInThatFindsNoShapes) {
    const Setting shapes("QUARVEX_ORBEL_SVG_DIR", "/nowhere");
    putFrei0r(ORBEL_FREI0R_PLUGIN);
    EXPECT_EQ(examine(), 1);
    EXPECT_THAT(m_words, HasSubstr("it loads, but does not find the built-in shapes"));
}
#endif

TEST_F(Doctor, tellsWhereItLookedAndWhatToDo) {
    EXPECT_EQ(examine(), 1);
    EXPECT_THAT(m_words, HasSubstr("PROBLEM  ffmpeg: no orbel.so in any of\n"
                                   "             /nowhere\n             " +
                                   (m_folder / "f") + "\n             " +
                                   (m_folder / "home/.frei0r-1/lib") + "\n"));
    EXPECT_THAT(m_words, HasSubstr("set FREI0R_PATH to the folder that holds it"));
    EXPECT_THAT(m_words, HasSubstr("set OFX_PLUGIN_PATH to the folder that holds it"));
}

TEST_F(Doctor, survivesWhateverLiesThere) {
    writeBytes(m_folder / "text", "this is no plug-in");
    const std::map<std::string, std::string> cases{
        {m_folder / "text", "file too short"},
        {ORBEL_CRASHING_PLUGIN, "it crashes"},
        {ORBEL_OFX_STAND_IN, "it has no function f0r_init"}};
    for (const auto& [file, words] : cases) {
        putFrei0r(file);
        EXPECT_EQ(examine(), 1);
        EXPECT_THAT(m_words, HasSubstr(words));
    }
    putOfx(ORBEL_CRASHING_PLUGIN);
    EXPECT_EQ(examine(), 1);
    EXPECT_THAT(m_words, HasSubstr("Orbel.ofx does not work\n             it crashes\n"));
}

TEST_F(Doctor, noticesABundleWithoutItsShapes) {
    putOfx(ORBEL_OFX_STAND_IN);
    fs::remove_all(m_folder / "o/Orbel.ofx.bundle/Contents/Resources");
    EXPECT_EQ(examine(), 1);
    EXPECT_THAT(m_words, HasSubstr("its built-in shapes are missing"));
}

// One host goes on after the environment's folders, the others look nowhere else.
TEST(PluginFolders, followEachHostsRules) {
    const Setting home("HOME", "/home/someone");
    const Setting folders("FREI0R_PATH", "/one:/two");
    for (const PluginHostFolders& host : frei0rHosts()) {
        ASSERT_GE(host.folders.size(), 2U);
        EXPECT_EQ(host.folders[0], "/one");
        EXPECT_EQ(host.folders[1], "/two");
        EXPECT_EQ(host.folders.size() > 2, host.host == "ffmpeg") << host.host;
    }
    unsetenv("FREI0R_PATH");
    for (const PluginHostFolders& host : frei0rHosts()) {
        EXPECT_THAT(host.folders,
                    testing::IsSupersetOf({"/home/someone/.frei0r-1/lib", "/usr/lib/frei0r-1",
                                           "/usr/local/lib/frei0r-1"}));
    }
}

} // namespace
} // namespace orbel::app
