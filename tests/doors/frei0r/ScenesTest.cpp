#include "tests/doors/frei0r/CorePixels.h"
#include "tests/support/TestFolder.h"

#include "params/ParameterTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orbel::frei0r {
namespace {

using test::CoreFrame;

using testing::HasSubstr;
using testing::StartsWith;

constexpr unsigned width = 40;
constexpr unsigned height = 30;

class Frei0rScenes : public testing::Test {
protected:
    Frei0rScenes() {
        write("shape.svg", R"(<svg viewBox="0 0 100 100"><path d="M 10 10 L 90 80"/></svg>)");
    }

    [[nodiscard]] std::string path(const std::string& name) const { return m_folder / name; }

    void write(const std::string& name, const std::string& text) const {
        test::writeBytes(path(name), text);
    }

    /// Sets a text and returns what it made the plug-in say.
    std::string say(const std::string& control, const std::string& text) {
        testing::internal::CaptureStderr();
        m_effect.set(control, text);
        return testing::internal::GetCapturedStderr();
    }

    [[nodiscard]] Pixels frame() const { return m_effect.update(0.0, m_input); }

    static CoreFrame diagonal(const std::string& shape, double thickness) {
        CoreFrame scene;
        scene.shapeFile = shape;
        scene.parameters.set(PARAM_THICKNESS, thickness);
        return scene;
    }

    [[nodiscard]] Pixels core(CoreFrame scene) const {
        return coreFrame(scene, width, height, m_input);
    }

    test::TestFolder m_folder;
    Effect m_effect{width, height};
    Pixels m_input = testPicture(width, height);
};

TEST_F(Frei0rScenes, comeFromAFileWithPathsOfItsFolder) {
    write("scene.json", R"({"orbel": 1, "shape": "shape.svg", "parameters": {"Thickness": 6}})");
    EXPECT_EQ(say("Scene", path("scene.json")), "");
    EXPECT_EQ(frame(), core(diagonal(path("shape.svg"), 6)));
    EXPECT_EQ(m_effect.get<f0r_param_string>("Scene"), path("scene.json"));
    EXPECT_EQ(say("Scene", ""), "");
    EXPECT_EQ(frame(), core({}));
}

TEST_F(Frei0rScenes, comeAsTextAndCarryAspectAndScale) {
    EXPECT_EQ(say("Scene", "\n {\"orbel\": 1, \"shape\": \"" + path("shape.svg") +
                               R"(", "pixelAspect": 2, "renderScale": [0.5, 0.25],
                                 "size": [9, 9], "format": "argb16", "frames": [3, 4],
                                 "parameters": {"Thickness": 8}})"),
              "");
    CoreFrame scene = diagonal(path("shape.svg"), 8);
    scene.aspect = 2;
    scene.scaleX = 0.5;
    scene.scaleY = 0.25;
    EXPECT_EQ(frame(), core(scene));
}

TEST_F(Frei0rScenes, leaveTheLastGoodOneInForceWhenTheyAreWrong) {
    ASSERT_EQ(say("Scene", R"({"orbel": 1, "parameters": {"Presets": 2}})"), "");
    CoreFrame square;
    square.parameters.set(PARAM_PRESETS, 2);
    const std::vector<std::array<std::string, 2>> wrong{
        {"{\"orbel\": 1,", "line 1, column 13"},
        {R"({"orbel": 1, "parameters": {"Thikness": 5}})", "the nearest is \"Thickness\""},
        {R"({"orbel": 1, "fps": -1, "frames": 5})", "(and 1 more)"},
        {R"({"orbel": 1, "shape": "none.svg"})", "\"none.svg\" does not exist"},
        {path("none.json"), "the scene file does not exist"},
        {m_folder / "", "the scene is not a file"},
        {std::string(100'000, 'x'), "does not exist"},
        {" ", "does not exist"}};
    for (const auto& [text, message] : wrong) {
        const std::string said = say("Scene", text);
        EXPECT_THAT(said, StartsWith("orbel: this scene is not used: "));
        EXPECT_THAT(said, HasSubstr(message));
        EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << said;
        EXPECT_EQ(say("Scene", text), "") << "a host repeats itself for every frame";
        EXPECT_EQ(frame(), core(square));
        EXPECT_EQ(m_effect.get<f0r_param_string>("Scene"), text);
    }
}

TEST_F(Frei0rScenes, giveWayToAChosenShapeAndAChosenBuiltInShape) {
    ASSERT_EQ(say("Scene", R"({"orbel": 1, "parameters": {"Presets": 2, "Thickness": 5}})"), "");
    EXPECT_EQ(say("Shape", path("shape.svg")), "");
    EXPECT_EQ(frame(), core(diagonal(path("shape.svg"), 5)));
    m_effect.set("Presets", 4.0 / 40);
    CoreFrame triangle = diagonal("", 5);
    triangle.parameters.set(PARAM_PRESETS, 4);
    EXPECT_EQ(frame(), core(triangle));
    EXPECT_THAT(say("Shape", path("none.svg")), HasSubstr("does not exist or cannot be read"));
    EXPECT_THAT(say("Shape", std::string(5000, 'x')), HasSubstr("does not exist"));
    EXPECT_EQ(frame(), core(triangle));
}

TEST_F(Frei0rScenes, areToldAboutFrameRatesThatAreNone) {
    for (const char* rate :
         {"fast", "25 ", "0", "-25", "1/0", "nan", "inf", "1e9", "30000/", "/1"}) {
        EXPECT_THAT(say("Frame Rate", rate), StartsWith("orbel: the frame rate \"")) << rate;
    }
    EXPECT_EQ(say("Frame Rate", "23.976"), "");
}

} // namespace
} // namespace orbel::frei0r
