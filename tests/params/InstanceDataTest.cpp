#include "params/InstanceData.h"

#include "params/ParameterTable.h"
#include "shapes/ShapeTable.h"
#include "tests/support/TestHosts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

namespace orbel {
namespace {

static_assert(sizeof(Orbel_UserData) == 1024, "the path and nothing else");

class InstanceData : public testing::Test {
protected:
    InstanceData() {
        buildStaticSVGShapeInfo("/shapes");
        setUserDataPath(&m_slot, "/home/mine.svg");
        m_host.setUserData(&m_slot);
    }

    std::string read() {
        Orbel_UserData data;
        EXPECT_EQ(getUserData(&m_host, &data), 0);
        return data.path;
    }

    test::BareHost m_host{{.frame = 3}};
    Orbel_UserData m_slot;
};

TEST_F(InstanceData, aPresetWinsOverAFileAndOtherIndicesFallBack) {
    for (const int preset : {0, -1, 41, 1000}) {
        m_host.parameters.set(PARAM_PRESETS, preset);
        EXPECT_EQ(read(), "/home/mine.svg") << preset;
    }
    for (const int preset : {1, 5, 40}) {
        m_host.parameters.set(PARAM_PRESETS, preset);
        EXPECT_EQ(read(), g_svgShapes[preset].file) << preset;
    }
    EXPECT_STREQ(m_slot.path, "/home/mine.svg");
    m_host.parameters.setKeys(PARAM_PRESETS, {{2, {5}, Easing::Hold}, {3, {6}, Easing::Hold}});
    EXPECT_EQ(read(), g_svgShapes[6].file);
}

TEST_F(InstanceData, aPresetsPathIsReadAsFormatTextButAFilesIsNot) {
    const char* const former = g_svgShapes[3].file;
    g_svgShapes[3].file = "/a%%b/50%d/star.svg";
    m_host.parameters.set(PARAM_PRESETS, 3);
    EXPECT_EQ(read(), "/a%b/50/star.svg");
    g_svgShapes[3].file = former;
    m_host.parameters.set(PARAM_PRESETS, 0);
    setUserDataPath(&m_slot, "/a%%b/50%n.svg");
    EXPECT_EQ(read(), "/a%%b/50%n.svg");
}

TEST_F(InstanceData, choosingAFileSwitchesThePresetOff) {
    m_host.parameters.set(PARAM_PRESETS, 5);
    Orbel_UserData chosen;
    setUserDataPath(&chosen, "/home/other.svg");
    EXPECT_EQ(setUserData(&m_host, &chosen), 0);
    EXPECT_EQ(read(), "/home/other.svg");
    setUserDataPath(&chosen, "");
    EXPECT_EQ(setUserData(&m_host, &chosen), 0);
    EXPECT_EQ(read(), "");
}

TEST_F(InstanceData, withoutASlotNothingIsReadOrWritten) {
    m_host.setUserData(nullptr);
    m_host.parameters.set(PARAM_PRESETS, 5);
    Orbel_UserData data;
    setUserDataPath(&data, "kept");
    EXPECT_EQ(getUserData(&m_host, &data), 1);
    EXPECT_EQ(setUserData(&m_host, &data), 1);
    EXPECT_STREQ(data.path, "kept");
    ParameterValue preset{};
    m_host.parameters.evaluate(PARAM_PRESETS, 0.0, preset);
    EXPECT_EQ(preset[0], 5.0);
}

TEST_F(InstanceData, aHostRecordAnswersInsteadOfTheSlot) {
    struct Host final : test::BareHost {
        test::FakeFxPlugHost record;
        FXPLUGHost* getFXPLUGHost() override { return &record; }
    } host;
    host.setUserData(&m_slot);
    Orbel_UserData data;
    setUserDataPath(&data, "/project.svg");
    EXPECT_EQ(setUserData(&host, &data), 0);
    EXPECT_EQ(host.record.path, "/project.svg");
    EXPECT_STREQ(m_slot.path, "/home/mine.svg");
    host.record.path = "/other.svg";
    EXPECT_EQ(getUserData(&host, &data), 0);
    EXPECT_STREQ(data.path, "/other.svg");
    host.record.preset = 2;
    EXPECT_EQ(getUserData(&host, &data), 0);
    EXPECT_STREQ(data.path, g_svgShapes[2].file);
}

TEST_F(InstanceData, pathsAreCutAndTheRestOfTheBufferIsZero) {
    const std::unique_ptr<Orbel_UserData, decltype(&freeUserData)> data(allocUserData(),
                                                                        &freeUserData);
    EXPECT_EQ(data->path[0], '\0');
    setUserDataPath(data.get(), std::string(3000, 'x').c_str());
    EXPECT_EQ(std::string(data->path), std::string(1023, 'x'));
    setUserDataPath(data.get(), "ab");
    EXPECT_TRUE(std::all_of(data->path + 2, std::end(data->path), [](char c) { return c == 0; }));
}

} // namespace
} // namespace orbel
