#include "tests/consumer/project/SmallestDoor.h"
#include "tests/support/HostContract.h"
#include "tests/support/Scene.h"
#include "tests/support/TestHosts.h"

#include <gtest/gtest.h>

namespace orbel {
namespace {

using test::PlainHost;
using Time = PluginHost_API::TimeObject;

/// The doors over plain memory: ours, and the one that the guide to writing one builds.
struct MemoryDoor {
    MemoryDoor(const RasterInfo& input, const RasterInfo& output, double frame)
        : door(input, output, &parameters, settingsAt(frame)) {}
    static MemoryHostSettings settingsAt(double frame) {
        MemoryHostSettings settings;
        settings.frame = frame;
        return settings;
    }
    PluginHost_API& host() { return door; }
    void settle() {}

    ParameterStore parameters;
    PluginHost_MEMORY_Impl door;
};
struct PlainDoor {
    PlainDoor(const RasterInfo& input, const RasterInfo& output, double frame)
        : door(effect, frame, {input, output, {}}) {}
    PluginHost_API& host() { return door; }
    void settle() {}

    Effect effect;
    SmallestDoor door;
};

} // namespace

namespace test {
INSTANTIATE_TYPED_TEST_SUITE_P(Memory, HostContract, MemoryDoor);
INSTANTIATE_TYPED_TEST_SUITE_P(Plain, HostContract, PlainDoor);
} // namespace test

namespace {

class MemoryHost : public testing::Test {
protected:
    test::Scene m_scene{test::CIRCLE};
    test::Frame m_frame{m_scene};
    PlainHost m_host{&m_scene, m_frame};
    const Time m_now{0, 100, 0};
};

TEST_F(MemoryHost, togglesAreTrueOnlyAtExactlyOne) {
    for (const double value : {0.0, 1.0, 2.0, -1.0, 1e300}) {
        m_scene.set(PARAM_LOOP, value);
        bool on = false;
        EXPECT_EQ(m_host.GetBoolValue(PARAM_LOOP, 0, m_now, on), 0);
        EXPECT_EQ(on, value == 1.0) << value;
    }
}

TEST_F(MemoryHost, readsAtTheTimeAsked) {
    m_scene.animate(PARAM_CAMERA_XY, {0, 1}, {1, 0});
    double x = 0.0;
    double y = 0.0;
    m_host.GetPoint2DValue(PARAM_CAMERA_XY, 0, Time(250, 100, 0), x, y);
    EXPECT_EQ(x, 0.25);
    EXPECT_EQ(y, 0.75);
    m_host.GetPoint2DValue(PARAM_CAMERA_XY, 0, Time(125, 50, 0), x, y);
    EXPECT_EQ(x, 0.25);
    m_host.GetFixedFloatValue(PARAM_CAMERA_XY, 0, Time(125, 50, 0), y);
    EXPECT_EQ(y, 0.25);
}

TEST_F(MemoryHost, updatesAreConstantsOfTheStore) {
    PluginUpdate_API* const update = m_host.makeUpdateApi();
    ASSERT_TRUE(update->isValid());
    update->setFloatValue(PARAM_THICKNESS, 0, 3.5);
    update->setAngleValue(PARAM_ROTATION_Z, 0, 90.0);
    update->setIntValue(PARAM_PRESETS, 0, 7);
    update->setBoolValue(PARAM_LOOP, 0, true);
    update->setEnumValue(PARAM_VIEW, 0, 6);
    update->setPoint2DValue(PARAM_POSITION_XY, 0, 0.1, 0.9);
    update->setColorValue(PARAM_COLOR, 0, 0.1, 0.2, 0.3);
    const std::pair<int, ParameterValue> expected[] = {{PARAM_THICKNESS, {3.5}},
                                                       {PARAM_ROTATION_Z, {90.0}},
                                                       {PARAM_PRESETS, {7}},
                                                       {PARAM_LOOP, {1}},
                                                       {PARAM_VIEW, {6}},
                                                       {PARAM_POSITION_XY, {0.1, 0.9}},
                                                       {PARAM_COLOR, {0.1, 0.2, 0.3}}};
    for (const auto& [param, value] : expected) {
        ParameterValue read{};
        m_scene.parameters.evaluate(param, 0.0, read);
        EXPECT_EQ(read, value) << param;
    }
}

TEST_F(MemoryHost, answersFromItsSettings) {
    m_scene.settings = {2.5, 0.5, 0.25, false, 600, 20, true};
    PlainHost host(&m_scene, m_frame);
    EXPECT_EQ(host.getCurrentTime(), 50);
    EXPECT_EQ(host.getTimeScale(), 600);
    EXPECT_EQ(host.getTimeStep(), 20);
    EXPECT_EQ(host.getScaleX(), 0.5);
    EXPECT_EQ(host.getScaleY(), 0.25);
    EXPECT_FALSE(host.isQualityHigh());
    EXPECT_TRUE(host.ignoreNormalComposite());
}

} // namespace
} // namespace orbel
