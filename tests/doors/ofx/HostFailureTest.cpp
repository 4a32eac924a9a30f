#include "doors/ofx/platform/OfxNames.h"
#include "params/ParameterTable.h"
#include "tests/doors/ofx/RenderFixture.h"

#include <cstring>
#include <functional>

namespace orbel::ofxtest {
namespace {

using testing::IsEmpty;

// A host that keeps a part of what it should give.
class OfxFailure : public OfxRender {
protected:
    // Nothing is written, everything goes back.
    static void expectNothing(Stage& stage, OfxStatus status) {
        EXPECT_EQ(stage.render(), status);
        EXPECT_TRUE(stage.output.intactOutside({}));
        EXPECT_THAT(stage.instance.effect().faults(), IsEmpty());
    }
};

TEST_F(OfxFailure, aSourceThatFailsIsTransparent) {
    Shot shot;
    const MemoryImage nothing(shot.width(), shot.height(), shot.format, RowLayout{});
    const MemoryImage expected = shot.rendered(nothing);
    const std::function<void(Stage&)> failures[] = {
        [](Stage& stage) { stage.instance.clip("Source").image = nullptr; },
        [](Stage& stage) {
            stage.source.properties.set(ofx::PROP_IMAGE_DATA, {static_cast<void*>(nullptr)});
        },
        [](Stage& stage) {
            stage.source.properties.set(ofx::PROP_IMAGE_BOUNDS, {3, 3, 3, 9});
        },
        [](Stage& stage) { stage.source.properties.values.erase(ofx::PROP_IMAGE_BOUNDS); },
        [](Stage& stage) { stage.source.properties.silent = true; }};
    for (const auto& fail : failures) {
        Stage stage(&m_plugin, shot, Layouts(shot));
        fail(stage);
        EXPECT_EQ(stageRender(stage, shot, expected), ofx::STAT_OK);
    }
}

TEST_F(OfxFailure, anOutputThatCannotBeWrittenIsLeftAlone) {
    const auto lacking = [](const char* name, const std::vector<PropertyValue>& value) {
        return [name, value](Stage& stage) { stage.output.properties.set(name, value); };
    };
    struct Row {
        std::function<void(Stage&)> fail;
        OfxStatus status;
    };
    const std::string half = "OfxBitDepthHalf";
    const std::string rgb = "OfxImageComponentRGB";
    const Row rows[] = {
        {[](Stage& stage) { stage.instance.clip("Output").image = nullptr; }, ofx::STAT_FAILED},
        {lacking(ofx::PROP_IMAGE_DATA, {static_cast<void*>(nullptr)}), ofx::STAT_FAILED},
        {lacking(ofx::PROP_IMAGE_DATA, {}), ofx::STAT_FAILED},
        {lacking(ofx::PROP_IMAGE_BOUNDS, {0, 0, 1 << 30, 1 << 30}), ofx::STAT_FAILED},
        {lacking(ofx::PROP_IMAGE_BOUNDS, {-2147483647 - 1, 0, 2147483647, 9}), ofx::STAT_FAILED},
        {lacking(ofx::PROP_IMAGE_BOUNDS, {2147483600, 0, 2147483640, 9}), ofx::STAT_FAILED},
        {lacking(ofx::PROP_IMAGE_ROW_BYTES, {}), ofx::STAT_ERR_IMAGE_FORMAT},
        {lacking(ofx::PROP_IMAGE_ROW_BYTES, {207}), ofx::STAT_ERR_IMAGE_FORMAT},
        {lacking(ofx::PROP_PIXEL_DEPTH, {half}), ofx::STAT_ERR_IMAGE_FORMAT},
        {lacking(ofx::PROP_PIXEL_DEPTH, {}), ofx::STAT_ERR_IMAGE_FORMAT},
        {lacking(ofx::PROP_COMPONENTS, {rgb}), ofx::STAT_ERR_IMAGE_FORMAT},
        {lacking(ofx::PROP_PIXEL_DEPTH, {std::string(ofx::DEPTH_SHORT)}),
         ofx::STAT_ERR_IMAGE_FORMAT},
        {[](Stage& stage) { stage.output.properties.silent = true; }, ofx::STAT_FAILED}};
    for (const Row& row : rows) {
        Shot shot;
        Stage stage(&m_plugin, shot, Layouts(shot));
        row.fail(stage);
        expectNothing(stage, row.status);
    }
}

// The frame is found by whatever still says how large it is.
TEST_F(OfxFailure, regionsMayBeMissingOrEndless) {
    const int low = -2147483647 - 1;
    const int high = 2147483647;
    for (const std::vector<PropertyValue>& region :
         {std::vector<PropertyValue>{}, {0, 0, 0, 0}, {low, low, high, high}, {9, 9, 3, 3}}) {
        for (const bool project : {true, false}) {
            Shot shot;
            Stage stage(&m_plugin, shot, Layouts(shot));
            stage.output.properties.set(ofx::PROP_IMAGE_REGION, region);
            stage.source.properties.set(ofx::PROP_IMAGE_REGION, region);
            stage.instance.clip("Source").region = {};
            if (project) {
                stage.instance.effect().properties.set(
                    ofx::PROP_PROJECT_SIZE,
                    {static_cast<double>(shot.width()), static_cast<double>(shot.height())});
            }
            stage.arguments.values.erase(ofx::PROP_RENDER_WINDOW);
            expectFrame(stage, shot);
        }
    }
}

TEST_F(OfxFailure, clipsAnswerForTheirImages) {
    Shot shot;
    shot.alpha = {SourceAlpha::Straight, OutputAlpha::Straight};
    Stage stage(&m_plugin, shot, Layouts(shot));
    for (const auto& [name, picture] :
         {std::pair{"Source", &stage.source}, {"Output", &stage.output}}) {
        PropertySet& clip = stage.instance.clip(name).properties;
        for (const char* const property : {ofx::PROP_PIXEL_DEPTH, ofx::PROP_COMPONENTS,
                                           ofx::PROP_PREMULTIPLICATION, ofx::PROP_PIXEL_ASPECT}) {
            clip.set(property, picture->properties.values.at(property));
            picture->properties.values.erase(property);
        }
    }
    expectFrame(stage, shot);
}

TEST_F(OfxFailure, parametersThatCannotBeReadHaveTheirDefaults) {
    for (const OfxStatus status : {ofx::STAT_ERR_MISSING_HOST_FEATURE, ofx::STAT_OK}) {
        Shot shot;
        shot.parameters = {};
        Stage stage(&m_plugin, shot, Layouts(shot));
        for (auto& [name, param] : stage.instance.effect().params) {
            param->status = status;
            param->silent = true;
        }
        expectFrame(stage, shot);
    }
}

// Some hosts write a value and call it an error; a toggle is on when its number is 1.
TEST_F(OfxFailure, whatAHostWritesCountsWhateverItAnswers) {
    for (const double toggle : {0.0, 1.0, 2.0, -1.0}) {
        Shot shot;
        shot.set(PARAM_ENABLE_REPEATER, toggle == 1.0 ? 1 : 0).set(PARAM_INSTANCES, 3);
        shot.set(PARAM_REPEATER_ROTATION_Z, 40);
        Stage stage(&m_plugin, shot, Layouts(shot));
        for (auto& [name, param] : stage.instance.effect().params) {
            param->status = ofx::STAT_ERR_UNKNOWN;
        }
        stage.instance.param("repeaterEnable").value = [toggle](OfxTime) {
            return std::array<double, 3>{toggle};
        };
        expectFrame(stage, shot);
    }
}

// No parameter can even be found: the instance lives, and draws what the defaults say.
TEST_F(OfxFailure, anInstanceWithoutHandlesStillRenders) {
    Shot shot;
    shot.parameters = {};
    Stage stage(&m_plugin, shot, Layouts(shot));
    Effect& effect = stage.instance.effect();
    m_plugin.call(ofx::ACTION_DESTROY_INSTANCE, &effect);
    effect.noParams = true;
    EXPECT_EQ(m_plugin.call(ofx::ACTION_CREATE_INSTANCE, &effect), ofx::STAT_OK);
    expectFrame(stage, shot);
}

TEST_F(OfxFailure, afterDestructionThereIsNoInstance) {
    Shot shot;
    Stage stage(&m_plugin, shot, Layouts(shot));
    Effect& effect = stage.instance.effect();
    EXPECT_EQ(m_plugin.call(ofx::ACTION_DESTROY_INSTANCE, &effect), ofx::STAT_OK);
    EXPECT_EQ(stage.render(), ofx::STAT_ERR_BAD_HANDLE);
    EXPECT_EQ(m_plugin.call(ofx::ACTION_DESTROY_INSTANCE, &effect), ofx::STAT_OK);
}

TEST_F(OfxFailure, aFrameThatIsGivenUpEndsSoon) {
    Shot shot;
    shot.frame = {0, 0, 320, 240};
    shot.set(PARAM_THICKNESS, 40).set(PARAM_ADJUST_STEP, 1).set(PARAM_ENABLE_REPEATER, 1);
    shot.set(PARAM_INSTANCES, 1000).set(PARAM_DISPLACE_Z, 0);
    Stage stage(&m_plugin, shot, Layouts(shot));
    stage.instance.effect().abortAt = 3;
    EXPECT_EQ(stage.render(), ofx::STAT_OK);
    EXPECT_THAT(stage.instance.effect().faults(), IsEmpty());
    EXPECT_GE(stage.instance.effect().abortCalls, 3);
    EXPECT_LE(stage.instance.effect().abortCalls, 8);
}

} // namespace
} // namespace orbel::ofxtest
