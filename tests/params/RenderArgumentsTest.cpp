#include "params/RenderArguments.h"

#include "params/ParameterTable.h"
#include "tests/support/TestHosts.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
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

TEST(RenderArguments, areReadThroughTheHostsOwnReader) {
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
}

/// Answers nothing, and notes which getter was asked for what, and when.
class AskedHost final : public test::BareHost {
public:
    std::map<std::string, std::set<int>> asked;
    std::set<double> times;

    int GetFloatValue(int id, int, const TimeObject& at, double&) override {
        return note("float", id, at);
    }
    int GetAngleValue(int id, int, const TimeObject& at, double&) override {
        return note("angle", id, at);
    }
    int GetIntValue(int id, int, const TimeObject& at, int&) override {
        return note("menu", id, at);
    }
    int GetBoolValue(int id, int, const TimeObject& at, bool&) override {
        return note("toggle", id, at);
    }
    int GetPoint2DValue(int id, int, const TimeObject& at, double&, double&) override {
        return note("point", id, at);
    }
    int GetColorValue(int id, int, const TimeObject& at, double&, double&, double&) override {
        return note("color", id, at);
    }

private:
    int note(const char* getter, int id, const TimeObject& at) {
        asked[getter].insert(id);
        times.insert(at.getTime());
        return 1;
    }
};

// Radians are made degrees by `GetAngleValue` alone, so that no angle may be read as a number.
TEST(RenderArguments, eachParameterIsReadByTheGetterOfItsKind) {
    AskedHost first;
    RenderArguments args;
    ParamsRetrieveValues(&first, &args);
    EXPECT_EQ(first.asked["angle"], (std::set{9, 10, 11, 22, 23, 24, 56, 57, 58, 76}));
    EXPECT_EQ(first.asked["menu"], (std::set{12, 35, 41, 60, 79}));
    EXPECT_EQ(first.asked["toggle"], (std::set{15, 16, 36, 39, 52, 62, 66, 67, 78}));
    EXPECT_EQ(first.asked["point"], (std::set{7, 53}));
    EXPECT_EQ(first.asked["color"], std::set{3});
    EXPECT_EQ(first.asked["float"].size(), std::size(ROWS) - 27);

    AskedHost again;
    HostParameterReader reader(&again, {1234, 100, 0});
    readSampledArguments(reader, &args);
    EXPECT_EQ(again.asked["angle"], (std::set{9, 10, 11, 22, 23, 24, 76}));
    EXPECT_EQ(again.asked["point"], std::set{7});
    EXPECT_EQ(again.asked["color"], std::set{3});
    EXPECT_EQ(again.asked["float"],
              (std::set{4,  5,  8,  17, 18, 19, 20, 21, 27, 28, 30, 31, 32, 34,
                        37, 38, 50, 51, 61, 63, 64, 68, 69, 70, 71, 72, 73, 75}));
    EXPECT_EQ(again.asked["menu"].size() + again.asked["toggle"].size(), 0U);
    EXPECT_EQ(again.times, std::set{1234.0});
}

TEST(RenderArguments, fieldsThatCannotBeReadKeepWhatTheyHeld) {
    AskedHost mute;
    RenderArguments args;
    for (const Row& row : ROWS) {
        for (const Field& field : row.fields) {
            std::visit([&](auto member) { args.*member = true; }, field);
        }
    }
    EXPECT_EQ(ParamsRetrieveValues(&mute, &args), 1);
    for (const Row& row : ROWS) {
        for (const Field& field : row.fields) {
            EXPECT_EQ(valueOf(args, field), 1.0) << row.param;
        }
    }
    EXPECT_EQ(GetMBlurValue(&mute), 1U);
}

TEST(RenderArguments, areReadAtTheCurrentTime) {
    test::BareHost host({.frame = 2.567});
    EXPECT_EQ(host.getCurrentTime(), 256);
    const std::vector<Keyframe> steps{{0, {0}, Easing::Hold}, {2.56, {1}, Easing::Hold}};
    host.parameters.setKeys(PARAM_MOTION_BLUR, steps);
    host.parameters.setKeys(PARAM_ROTATION_Z, steps);
    RenderArguments args;
    ParamsRetrieveValues(&host, &args);
    EXPECT_EQ(args.rotationZ, 1.0);
    EXPECT_EQ(args.motionBlur, 1);
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
