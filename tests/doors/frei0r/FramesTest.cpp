#include "params/ParameterTable.h"
#include "tests/doors/frei0r/CorePixels.h"

#include <gtest/gtest.h>

#include <limits>

namespace orbel::frei0r {
namespace {

using test::CoreFrame;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

constexpr unsigned width = 48;
constexpr unsigned height = 27;

const char* const movingStar = R"({"orbel": 1, "fps": 25, "parameters": {
    "Presets": "Basic Star", "Thickness": 4, "Color": [1, 0.5, 0.25], "Transfer Mode": "Normal",
    "End": {"keys": [[0, 10], [40, 90]]}}})";

CoreFrame movingStarInCore(double frame) {
    CoreFrame scene;
    scene.parameters.set(PARAM_PRESETS, 3);
    scene.parameters.set(PARAM_THICKNESS, 4);
    scene.parameters.set(PARAM_COLOR, {1, 0.5, 0.25});
    scene.parameters.set(PARAM_TRANSFER_MODE, 1);
    scene.parameters.setKeys(PARAM_END, {{0, {10}, Easing::Linear}, {40, {90}, Easing::Linear}});
    scene.time = frame;
    return scene;
}

Pixels movingStarFrame(double frame, unsigned frameWidth = width, unsigned frameHeight = height) {
    CoreFrame scene = movingStarInCore(frame);
    return coreFrame(scene, frameWidth, frameHeight, testPicture(frameWidth, frameHeight));
}

TEST(Frei0rFrames, ofControlsAreTheCoresOwn) {
    Effect effect(width, height);
    effect.set("Presets", 3.0 / 40);
    effect.set("Thickness", (4.0 - 1) / 49);
    effect.set("Color", f0r_param_color_t{1.0F, 128 / 255.0F, 64 / 255.0F});
    effect.set("Transform/Z Rotation", 0.5 + 30.0 / 7200);
    effect.set("Transform/XY Position", f0r_param_position_t{0.4, 0.7});
    effect.set("Taper/Enable Taper", 1.0);
    effect.set("Transfer Mode", 2.0 / 17);
    CoreFrame scene;
    scene.parameters.set(PARAM_PRESETS, 3);
    scene.parameters.set(PARAM_THICKNESS, 4);
    scene.parameters.set(PARAM_COLOR, {1, 128 / 255.0, 64 / 255.0});
    scene.parameters.set(PARAM_ROTATION_Z, -3600 + (0.5 + 30.0 / 7200) * 7200);
    scene.parameters.set(PARAM_POSITION_XY, ParameterValue{0.4, 0.7});
    scene.parameters.set(PARAM_ENABLE_TAPER, 1);
    scene.parameters.set(PARAM_TRANSFER_MODE, 2);
    const Pixels input = testPicture(width, height);
    const Pixels expected = coreFrame(scene, width, height, input);
    EXPECT_EQ(effect.update(0.0, input), expected);
    EXPECT_NE(expected, input);
}

// A slider in a host shows seven digits of where it stands; that is no choice of the user's.
TEST(Frei0rFrames, followTheSceneWhereNoControlWasMoved) {
    Effect effect(width, height);
    effect.set("Scene", movingStar);
    effect.set("Thickness", 0.1836735);
    effect.set("Presets", 0.0);
    const Pixels input = testPicture(width, height);
    EXPECT_EQ(effect.update(0.4, input), movingStarFrame(10));
    effect.set("Thickness", (9.0 - 1) / 49);
    CoreFrame moved = movingStarInCore(10);
    moved.parameters.set(PARAM_THICKNESS, 9);
    EXPECT_EQ(effect.update(0.4, input), coreFrame(moved, width, height, input));
}

struct TimeCase {
    double unit;
    const char* rate;
    double time;
    double frame;
};

TEST(Frei0rFrames, comeAtTheTimeThatTheHostMeans) {
    const Pixels input = testPicture(width, height);
    for (const TimeCase& at :
         {TimeCase{0.0, "", 0.4, 10}, TimeCase{0.5, "", 0.4, 10}, TimeCase{1.0, "", 400, 10},
          TimeCase{0.0, "50", 0.4, 20}, TimeCase{1.0, "30000/1001", 334, 10},
          TimeCase{1.0, "29.97", 333, 10}, TimeCase{0.0, "", 0.42, 10.5}, TimeCase{0.0, "", nan, 0},
          TimeCase{0.0, "", -infinity, 0}, TimeCase{0.0, "", infinity, 40}}) {
        Effect effect(width, height);
        effect.set("Scene", movingStar);
        effect.set("Time Unit", at.unit);
        effect.set("Frame Rate", at.rate);
        EXPECT_EQ(effect.update(at.time, input), movingStarFrame(at.frame))
            << at.time << " at " << at.rate;
    }
}

TEST(Frei0rFrames, mayHaveAnySize) {
    for (const auto& [w, h] : {std::pair{1U, 1U}, {1U, 50U}, {33U, 17U}, {47U, 3U}, {200U, 1U}}) {
        Effect effect(w, h);
        effect.set("Scene", movingStar);
        EXPECT_EQ(effect.update(0.4, testPicture(w, h)), movingStarFrame(10, w, h))
            << w << " x " << h;
    }
    const Effect none(0, 0);
    EXPECT_EQ(none.update(0.0, {}), Pixels());
    const Effect wide(40000, 1);
    EXPECT_EQ(wide.update(0.0, testPicture(40000, 1)), testPicture(40000, 1));
}

TEST(Frei0rFrames, mayBeDrawnInPlaceAndFromNothing) {
    Effect effect(width, height);
    effect.set("Scene", movingStar);
    Pixels picture = testPicture(width, height);
    plugin().update(effect.instance(), 0.4, picture.data(), picture.data());
    EXPECT_EQ(picture, movingStarFrame(10));
    plugin().update(effect.instance(), 0.4, nullptr, picture.data());
    CoreFrame scene = movingStarInCore(10);
    EXPECT_EQ(picture, coreFrame(scene, width, height, Pixels(picture.size())));
    plugin().update(effect.instance(), 0.4, picture.data(), nullptr);
    plugin().update(nullptr, 0.4, picture.data(), picture.data());
}

TEST(Frei0rFrames, surviveEveryNumberInEveryControl) {
    const Pixels input = testPicture(16, 9);
    for (const double number : {nan, infinity, -infinity, -1.0, 2.0, 1e308, -1e308, 1e-320, 1.0}) {
        Effect effect(16, 9);
        effect.set("Presets", 3.0 / 40);
        for (int i = 0; i < plugin().info().num_params; ++i) {
            const f0r_param_info_t control = plugin().control(i);
            const auto single = static_cast<float>(number);
            if (control.type == F0R_PARAM_COLOR) {
                effect.set(control.name, f0r_param_color_t{single, single, single});
            } else if (control.type == F0R_PARAM_POSITION) {
                effect.set(control.name, f0r_param_position_t{number, number});
            } else if (control.type != F0R_PARAM_STRING) {
                effect.set(control.name, number);
            }
            // All at once is the last of these; none may be needed for another to be safe.
            static_cast<void>(effect.update(number, input));
        }
    }
}

// A number that is none stands for where the control was at first.
TEST(Frei0rFrames, countOutsideNumbersAsTheEndsOfTheScale) {
    const Pixels input = testPicture(width, height);
    for (const auto& [given, meant] : {std::pair{-7.0, 0.0}, {1e300, 1.0}, {nan, 9.0 / 49}}) {
        Effect outside(width, height);
        Effect inside(width, height);
        for (const auto& [effect, value] : {std::pair{&outside, given}, {&inside, meant}}) {
            effect->set("Scene", movingStar);
            effect->set("Transform/Bend", 0.25);
            effect->set("Thickness", value);
        }
        EXPECT_EQ(outside.update(0.4, input), inside.update(0.4, input)) << given;
    }
}

// One host closes the plug-in before the instances that it still has.
TEST(Frei0rFrames, areDrawnAfterTheHostHasTakenItsLeave) {
    Effect effect(width, height);
    effect.set("Scene", movingStar);
    plugin().deinit();
    EXPECT_EQ(effect.update(0.4, testPicture(width, height)), movingStarFrame(10));
    EXPECT_NE(plugin().init(), 0);
}

} // namespace
} // namespace orbel::frei0r
