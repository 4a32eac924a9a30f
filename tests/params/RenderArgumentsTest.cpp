#include "params/RenderArguments.h"

#include "params/ParameterTable.h"
#include "tests/support/TestHosts.h"

#include <gtest/gtest.h>

#include <map>
#include <variant>

namespace orbel {
namespace {

using Field =
    std::variant<double RenderArguments::*, int RenderArguments::*, bool RenderArguments::*>;
using R = RenderArguments;

struct Row {
    int param;
    std::vector<Field> fields;
};

// In reading order, which is the order of the declaration list.
// clang-format off
const Row ROWS[] = {
    {81, {&R::scaleX}}, {82, {&R::scaleY}}, {36, {&R::strokeSequentially}},
    {3, {&R::colorRed, &R::colorGreen, &R::colorBlue}}, {4, {&R::thickness}}, {5, {&R::feather}},
    {37, {&R::start}}, {38, {&R::end}}, {75, {&R::offset}}, {78, {&R::loop}},
    {66, {&R::enableTaper}}, {67, {&R::compressToFit}}, {68, {&R::startThickness}},
    {69, {&R::endThickness}}, {70, {&R::taperStart}}, {71, {&R::taperEnd}}, {72, {&R::startShape}},
    {73, {&R::endShape}}, {79, {&R::stepAdjustMethod}}, {61, {&R::bend}}, {76, {&R::bendAxis}},
    {62, {&R::bendAroundCenter}}, {7, {&R::positionX, &R::positionY}}, {8, {&R::positionZ}},
    {9, {&R::rotationX}}, {10, {&R::rotationY}}, {11, {&R::rotationZ}}, {12, {&R::order}},
    {15, {&R::enableRepeater}}, {16, {&R::symmetricDoubler}}, {17, {&R::instances}},
    {64, {&R::repeaterOpacity}}, {18, {&R::repeaterScale}}, {63, {&R::repeaterFactor}},
    {19, {&R::displaceX}}, {20, {&R::displaceY}}, {21, {&R::displaceZ}},
    {22, {&R::repeaterRotationX}}, {23, {&R::repeaterRotationY}}, {24, {&R::repeaterRotationZ}},
    {27, {&R::adjustStep}}, {39, {&R::exactStepMatch}}, {28, {&R::internalOpacity}},
    {30, {&R::lowAlphaSatBoost}}, {31, {&R::lowAlphaHueRotation}}, {32, {&R::hiAlphaBrightBoost}},
    {60, {&R::view}}, {50, {&R::zClipFront}}, {51, {&R::zClipBack}}, {77, {&R::startFade}},
    {52, {&R::autoOrient}}, {53, {&R::cameraX, &R::cameraY}}, {54, {&R::cameraZ}},
    {55, {&R::zoom}}, {56, {&R::cameraRotationX}}, {57, {&R::cameraRotationY}},
    {58, {&R::cameraRotationZ}}, {41, {&R::motionBlur}}, {42, {&R::shutterAngle}},
    {43, {&R::shutterPhase}}, {44, {&R::levels}}, {34, {&R::opacity}}, {35, {&R::transferMode}},
};
// clang-format on

double valueOf(const RenderArguments& args, const Field& field) {
    return std::visit([&](auto member) { return static_cast<double>(args.*member); }, field);
}

TEST(RenderArguments, everyParameterArrivesInItsField) {
    // One parameter at a time differs from the rest, so a swapped pair shows.
    for (const Row& changed : ROWS) {
        test::BareHost host;
        for (const Row& row : ROWS) {
            host.parameters.set(row.param, ParameterValue{});
        }
        const bool flag = std::holds_alternative<bool RenderArguments::*>(changed.fields[0]);
        const double value = flag ? 1.0 : 5.0;
        host.parameters.set(changed.param, {value, value + 1, value + 2});
        RenderArguments args;
        EXPECT_EQ(ParamsRetrieveValues(&host, &args), 1);
        for (const Row& row : ROWS) {
            for (std::size_t i = 0; i < row.fields.size(); ++i) {
                const double expected =
                    row.param == changed.param ? value + static_cast<double>(i) : 0.0;
                EXPECT_EQ(valueOf(args, row.fields[i]), expected)
                    << "parameter " << row.param << ", component " << i;
            }
        }
    }
}

TEST(RenderArguments, areReadInDeclaredOrderThroughTheHostsOwnReader) {
    struct Host final : test::BareHost {
        test::FakeFxPlugHost record;
        FXPLUGHost* getFXPLUGHost() override { return &record; }
    } host;
    RenderArguments args;
    EXPECT_EQ(ParamsRetrieveValues(&host, &args), 1);
    std::vector<int> expected;
    for (const Row& row : ROWS) {
        expected.push_back(row.param);
    }
    EXPECT_EQ(host.record.asked, expected);
    EXPECT_EQ(args.zoom, 55.0);
    EXPECT_EQ(args.cameraY, 53.25);
    EXPECT_EQ(args.colorBlue, 3.5);
    EXPECT_TRUE(args.loop);

    std::vector<int> declared;
    for (const ParameterRow& row : parameterTable()) {
        if (row.isParameter() && row.id != PARAM_SHAPE && row.id != PARAM_PRESETS) {
            declared.push_back(row.id);
        }
    }
    EXPECT_EQ(declared, expected);
}

class MuteHost final : public test::BareHost {
public:
    int GetFloatValue(int, int, const TimeObject&, double&) override { return 1; }
    int GetAngleValue(int, int, const TimeObject&, double&) override { return 1; }
    int GetIntValue(int, int, const TimeObject&, int&) override { return 1; }
    int GetBoolValue(int, int, const TimeObject&, bool&) override { return 1; }
    int GetPoint2DValue(int, int, const TimeObject&, double&, double&) override { return 1; }
    int GetColorValue(int, int, const TimeObject&, double&, double&, double&) override { return 1; }
};

TEST(RenderArguments, fieldsThatCannotBeReadKeepWhatTheyHeld) {
    MuteHost host;
    RenderArguments args;
    for (const Row& row : ROWS) {
        for (const Field& field : row.fields) {
            std::visit([&](auto member) { args.*member = true; }, field);
        }
    }
    EXPECT_EQ(ParamsRetrieveValues(&host, &args), 1);
    for (const Row& row : ROWS) {
        for (const Field& field : row.fields) {
            EXPECT_EQ(valueOf(args, field), 1.0) << row.param;
        }
    }
}

TEST(RenderArguments, areReadAtTheCurrentTime) {
    test::BareHost host;
    host.parameters.setKeys(PARAM_ROTATION_Z, {{-1, {90}, Easing::Hold}, {0, {45}, Easing::Hold}});
    RenderArguments args;
    ParamsRetrieveValues(&host, &args);
    EXPECT_EQ(args.rotationZ, 45.0);
}

TEST(RenderArguments, motionBlurIsOnWhenTheHostDoesNotSay) {
    MuteHost mute;
    EXPECT_EQ(GetMBlurValue(&mute), 1U);
    test::BareHost host;
    EXPECT_EQ(GetMBlurValue(&host), 0U);
    host.parameters.set(PARAM_MOTION_BLUR, 1.0);
    EXPECT_EQ(GetMBlurValue(&host), 1U);
}

TEST(RenderArguments, hooksAnswerConstants) {
    test::BareHost host;
    double red = 0.5;
    EXPECT_EQ(GetFloatColor(&host, &red, &red, &red, nullptr), 0);
    EXPECT_EQ(red, 0.5);
    EXPECT_EQ(GetMaskID(&host), 0);
    EXPECT_EQ(GetCompCameraParamValue(&host), 0);
    EXPECT_EQ(HasFixedShapeProperty(&host), 1);
}

} // namespace
} // namespace orbel
