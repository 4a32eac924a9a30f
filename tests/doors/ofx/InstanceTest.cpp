#include "doors/ofx/ParameterNames.h"
#include "doors/ofx/PluginHost_OFX_Impl.h"
#include "doors/ofx/platform/OfxNames.h"
#include "params/ParameterRules.h"
#include "params/ParameterTable.h"
#include "tests/doors/ofx/Stage.h"
#include "tests/support/HostContract.h"

#include <gmock/gmock.h>

#include <cmath>

namespace orbel::ofxtest {
namespace {

/// The core's view of a host that knows no parameters, for what holds for every door.
class OfxDoor {
public:
    OfxDoor(const RasterInfo& input, const RasterInfo& output, double frame)
        : m_door(&m_instance, {frame}, {input, output, {}}) {}
    PluginHost_API& host() { return m_door; }
    void settle() {}

private:
    static ofx::SharedSuites suites() {
        return std::make_shared<ofx::HostSuites>(
            ofx::HostSuites{nullptr, propertySuite(), imageEffectSuite(), parameterSuite()});
    }

    Effect m_effect;
    ofx::EffectInstance m_instance{suites(), m_effect.handle()};
    PluginHost_OFX_Impl m_door;
};

} // namespace
} // namespace orbel::ofxtest

namespace orbel::test {
INSTANTIATE_TYPED_TEST_SUITE_P(Ofx, HostContract, ofxtest::OfxDoor);
} // namespace orbel::test

namespace orbel::ofxtest {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class OfxInstance : public testing::Test {
protected:
    static bool isEnabled(HostedInstance& instance, const std::string& name) {
        return instance.param(name).properties.get<int>(ofx::PARAM_PROP_ENABLED, 0, 1) != 0;
    }
    static OfxStatus change(HostedInstance& instance, const std::string& name,
                            const std::string& reason) {
        PropertySet in;
        in.set(ofx::PROP_TYPE, {std::string(ofx::TYPE_PARAMETER)});
        in.set(ofx::PROP_NAME, {name});
        in.set(ofx::PROP_CHANGE_REASON, {reason});
        in.set(ofx::PROP_TIME, {4.0});
        return instance.call(ofx::ACTION_INSTANCE_CHANGED, &in);
    }
    static void setValue(HostedInstance& instance, const std::string& name, double value) {
        instance.param(name).value = [value](OfxTime) { return std::array<double, 3>{value}; };
    }

    TestHost m_host;
    LoadedPlugin m_plugin{ORBEL_OFX_BINARY, &m_host};
    Shot m_shot;
};

TEST_F(OfxInstance, parametersAreEnabledByTheSharedRules) {
    HostedInstance instance(&m_plugin, ofx::CONTEXT_FILTER);
    for (const EnablingRule& rule : enablingRules()) {
        const char* const name = ofx::parameterName(rule.changed);
        if (name == nullptr) {
            continue; // a retired number
        }
        for (const int value : {1, 0, 1}) {
            setValue(instance, name, value);
            EXPECT_EQ(change(instance, name, "OfxChangeUserEdited"), ofx::STAT_OK);
            for (const int dependent : rule.dependents) {
                EXPECT_EQ(isEnabled(instance, ofx::parameterName(dependent)),
                          value == rule.enablingValue)
                    << name << ' ' << dependent;
            }
        }
    }
    EXPECT_THAT(instance.effect().faults(), IsEmpty());
}

// A project is loaded before the instance is made: nothing changes that could be followed.
TEST_F(OfxInstance, aLoadedProjectHasTheRightOnesEnabled) {
    HostedInstance instance(&m_plugin, ofx::CONTEXT_FILTER);
    EXPECT_FALSE(isEnabled(instance, "repeaterInstances"));
    EXPECT_FALSE(isEnabled(instance, "motionBlurLevels"));
    EXPECT_TRUE(isEnabled(instance, "strokeLoop"));
    m_plugin.call(ofx::ACTION_DESTROY_INSTANCE, &instance.effect());
    for (const char* const name : {"repeaterEnable", "motionBlur", "strokeSequentially"}) {
        setValue(instance, name, 1);
    }
    m_plugin.call(ofx::ACTION_CREATE_INSTANCE, &instance.effect());
    EXPECT_TRUE(isEnabled(instance, "repeaterInstances"));
    EXPECT_TRUE(isEnabled(instance, "motionBlurLevels"));
    EXPECT_FALSE(isEnabled(instance, "strokeLoop"));
}

TEST_F(OfxInstance, aChosenShapeTakesThePlaceOfThePreset) {
    HostedInstance instance(&m_plugin, ofx::CONTEXT_FILTER);
    setValue(instance, "shapePreset", 5);
    Param& preset = instance.param("shapePreset");
    change(instance, "shapeFile", "OfxChangeUserEdited"); // emptied
    EXPECT_THAT(preset.written, IsEmpty());
    instance.param("shapeFile").text = "/somewhere/a.svg";
    change(instance, "shapeFile", "OfxChangePluginEdited");
    change(instance, "shapeFile", "OfxChangeTime");
    EXPECT_THAT(preset.written, IsEmpty());
    change(instance, "shapeFile", "OfxChangeUserEdited");
    EXPECT_THAT(preset.written, ElementsAre(ElementsAre(0.0)));
    instance.param("shapeText").text = "<svg/>";
    change(instance, "shapeText", "OfxChangeUserEdited");
    EXPECT_EQ(preset.written.size(), 2U);
    EXPECT_EQ(change(instance, "nobody", "OfxChangeUserEdited"), ofx::STAT_REPLY_DEFAULT);
}

TEST_F(OfxInstance, identityIsWhereNothingIsDrawnOverThePicture) {
    struct Row {
        double start, end, blur, mode;
        const char* outputAlpha;
        bool identity;
    };
    const char* const same = "OfxImageAlphaPremultiplied";
    const Row rows[] = {{0, 100, 0, 1, same, false}, {50, 50, 0, 1, same, true},
                        {60, 50, 0, 9, same, true},  {50, 50, 0, 0, same, false},
                        {50, 50, 1, 1, same, false}, {50, 50, 0, 1, ofx::IMAGE_OPAQUE, false}};
    for (const Row& row : rows) {
        Shot shot;
        shot.set(PARAM_START, row.start).set(PARAM_END, row.end).set(PARAM_MOTION_BLUR, row.blur);
        shot.set(PARAM_TRANSFER_MODE, row.mode);
        Layouts layouts(shot);
        layouts.output.alpha = row.outputAlpha;
        Stage stage(&m_plugin, shot, layouts);
        PropertySet out;
        EXPECT_EQ(stage.instance.call(ofx::ACTION_IS_IDENTITY, &stage.arguments, &out),
                  row.identity ? ofx::STAT_OK : ofx::STAT_REPLY_DEFAULT);
        EXPECT_EQ(out.text(ofx::PROP_NAME), row.identity ? "Source" : "");
        EXPECT_EQ(stage.instance.clip("Source").held, 0);
    }
}

TEST_F(OfxInstance, onlyABlurOfMovingThingsVariesByItself) {
    for (const bool blur : {false, true}) {
        for (const bool moving : {false, true}) {
            Stage stage(&m_plugin, m_shot.set(PARAM_MOTION_BLUR, blur ? 1 : 0), Layouts(m_shot));
            auto& animating = stage.instance.param("strokeEnd").properties.values;
            animating[ofx::PARAM_PROP_IS_ANIMATING] = {moving ? 1 : 0};
            PropertySet out;
            EXPECT_EQ(stage.instance.call(ofx::ACTION_GET_CLIP_PREFERENCES, nullptr, &out),
                      ofx::STAT_OK);
            EXPECT_EQ(out.get<int>(ofx::PROP_FRAME_VARYING, 0, -1), blur && moving ? 1 : 0);
        }
    }
}

// Where the default would be an opaque output, a layer alone needs its alpha.
TEST_F(OfxInstance, theStrokesAlphaSurvivesAnOpaqueSource) {
    struct Row {
        SourceAlpha source;
        double mode;
        int connected;
        const char* state;
    };
    const Row rows[] = {{SourceAlpha::Opaque, 0, 1, ofx::IMAGE_PREMULTIPLIED},
                        {SourceAlpha::Opaque, 1, 1, ""},
                        {SourceAlpha::Premultiplied, 0, 1, ""},
                        {SourceAlpha::Straight, 0, 1, ""},
                        {SourceAlpha::Straight, 1, 0, ofx::IMAGE_PREMULTIPLIED}};
    for (const Row& row : rows) {
        Shot shot;
        shot.alpha.source = row.source;
        shot.set(PARAM_TRANSFER_MODE, row.mode);
        Stage stage(&m_plugin, shot, Layouts(shot), ofx::CONTEXT_GENERAL);
        stage.instance.clip("Source").properties.set(ofx::PROP_CONNECTED, {row.connected});
        PropertySet out;
        stage.instance.call(ofx::ACTION_GET_CLIP_PREFERENCES, nullptr, &out);
        EXPECT_EQ(out.text(ofx::PROP_PREMULTIPLICATION), row.state);
    }
}

TEST_F(OfxInstance, regionsAreTheSourcesOrTheProjects) {
    Stage stage(&m_plugin, m_shot, Layouts(m_shot), ofx::CONTEXT_GENERAL);
    PropertySet in;
    in.set(ofx::PROP_REGION_OF_INTEREST, {1.0, 2.0, 3.0, 4.5});
    PropertySet interest;
    EXPECT_EQ(stage.instance.call(ofx::ACTION_GET_REGIONS_OF_INTEREST, &in, &interest),
              ofx::STAT_OK);
    EXPECT_EQ(interest.values[ofx::PROP_SOURCE_REGION_OF_INTEREST],
              in.values[ofx::PROP_REGION_OF_INTEREST]);

    PropertySet out;
    const char* const action = ofx::ACTION_GET_REGION_OF_DEFINITION;
    EXPECT_EQ(stage.instance.call(action, &in, &out), ofx::STAT_REPLY_DEFAULT);
    stage.instance.clip("Source").properties.set(ofx::PROP_CONNECTED, {0});
    EXPECT_EQ(stage.instance.call(action, &in, &out), ofx::STAT_REPLY_DEFAULT); // no project
    for (const double endless : {HUGE_VAL, 1e308, 0.0}) {
        stage.instance.effect().properties.set(ofx::PROP_PROJECT_SIZE, {endless, endless});
        EXPECT_EQ(stage.instance.call(action, &in, &out), ofx::STAT_REPLY_DEFAULT);
    }
    stage.instance.effect().properties.set(ofx::PROP_PROJECT_SIZE, {64.0, 48.0});
    stage.instance.effect().properties.set(ofx::PROP_PROJECT_OFFSET, {-8.0, 4.0});
    EXPECT_EQ(stage.instance.call(action, &in, &out), ofx::STAT_OK);
    const std::vector<PropertyValue> region{-8.0, 4.0, 56.0, 52.0};
    EXPECT_EQ(out.values[ofx::PROP_REGION_OF_DEFINITION], region);
}

// Over nothing at all, where the host allows it.
TEST_F(OfxInstance, aStrokeMayStandAlone) {
    Stage stage(&m_plugin, m_shot, Layouts(m_shot), ofx::CONTEXT_GENERAL);
    stage.instance.clip("Source").properties.set(ofx::PROP_CONNECTED, {0});
    stage.instance.clip("Source").image = nullptr;
    const MemoryImage nothing(m_shot.width(), m_shot.height(), m_shot.format, RowLayout{});
    EXPECT_EQ(stage.render(), ofx::STAT_OK);
    EXPECT_TRUE(shows(stage.output, m_shot.rendered(nothing).info(), m_shot.frame, m_shot.frame));
}

} // namespace
} // namespace orbel::ofxtest
