#include "scene/SceneReader.h"

#include "params/ParameterTable.h"
#include "scene/ShapeKeys.h"
#include "tests/media/MediaFixtures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orbel {
namespace {

using testing::HasSubstr;

struct BadScene {
    const char* name;
    std::string text;
    std::string place;
    std::string message;
    std::string remedy;
};

std::string scene(const std::string& members) {
    return R"({"orbel": 1, "size": [64, 48], )" + members + "}";
}

std::string parameter(const std::string& member) {
    return scene("\"parameters\": {" + member + "}");
}

void PrintTo(const BadScene& bad, std::ostream* out) {
    *out << bad.text;
}

class BadSceneTest : public testing::TestWithParam<BadScene> {};

TEST_P(BadSceneTest, isReportedWithPlaceAndRemedy) {
    const BadScene& bad = GetParam();
    Problems problems;
    static_cast<void>(readScene(bad.text, "folder/scene.json", &problems));
    ASSERT_EQ(problems.items().size(), 1U);
    const Problem& problem = problems.items().front();
    EXPECT_EQ(problem.file, "folder/scene.json");
    EXPECT_EQ(problem.place, bad.place);
    EXPECT_THAT(problem.message, HasSubstr(bad.message));
    EXPECT_THAT(problem.remedy, HasSubstr(bad.remedy));
}

const std::vector<BadScene> badScenes{
    {"empty", "", "line 1, column 1", "not JSON", "correct"},
    {"syntax", "{\"orbel\": 1,\n  \"size\": [1,,2]}", "line 2, column 14", "unexpected ','", ""},
    {"trailing", "{\"orbel\": 1}\n}", "line 2, column 1", "not JSON", ""},
    {"tooLargeNumber", R"({"orbel": 1, "fps": 1e999})", "line 1, column 25", "number overflow", ""},
    {"notText", "{\"orbel\": \"\xff\"}", "line 1, column 12", "UTF-8", ""},
    {"list", "[1, 2]", "", "one JSON object, not array", "orbel"},
    {"deep", scene("\"input\": " + std::string(1000, '[')),
     "/input" +
         [] {
             std::string steps;
             for (int i = 0; i < 63; ++i) {
                 steps += "/0";
             }
             return steps;
         }(),
     "nested more than 64", ""},
    {"noVersion", R"({"size": [1, 1]})", "", "\"orbel\"", "\"orbel\": 1"},
    {"version", R"({"orbel": 2})", "/orbel", "version 2", "version 1"},
    {"versionType", R"({"orbel": "1"})", "/orbel", "cannot be string", "\"orbel\": 1"},
    {"unknownKey", scene(R"("sixe": 3)"), "/sixe", "\"sixe\" is not known", "\"size\""},
    {"unknownCase", scene(R"("FPS": 3)"), "/FPS", "not known", "\"fps\""},
    {"twice", scene(R"("fps": 3, "fps": 4)"), "/fps", "twice", "one"},
    {"twiceBelow", parameter(R"("4": 3, "4": 4)"), "/parameters/4", "twice", ""},
    {"sizeType", R"({"orbel": 1, "size": "1x1"})", "/size", "2 numbers", "[width, height]"},
    {"sizeCount", R"({"orbel": 1, "size": [1, 2, 3]})", "/size", "2 numbers", ""},
    {"sizeZero", R"({"orbel": 1, "size": [0, 2]})", "/size", "0 x 2", "1 to 32767"},
    {"sizeLarge", R"({"orbel": 1, "size": [2, 32768]})", "/size", "2 x 32768", "1 to 32767"},
    {"sizeFraction", R"({"orbel": 1, "size": [2.5, 3]})", "/size", "2.5 x 3", "whole"},
    {"format", scene(R"("format": "rgba")"), "/format", "\"rgba\"", "\"rgba8\""},
    {"formatType", scene(R"("format": 8)"), "/format", "not number", "quotes"},
    {"fps", scene(R"("fps": 0)"), "/fps", "0 frames per second", "25"},
    {"fpsType", scene(R"("fps": "25")"), "/fps", "not string", "plain number"},
    {"frames", scene(R"("frames": [5, 3])"), "/frames", "before the first", "smaller"},
    {"framesNegative", scene(R"("frames": [-1, 3])"), "/frames", "-1 to 3", "from 0"},
    {"framesType", scene(R"("frames": 3)"), "/frames", "2 numbers", "[first, last]"},
    {"aspect", scene(R"("pixelAspect": -1)"), "/pixelAspect", "-1", "above 0"},
    {"aspectVanishing", scene(R"("pixelAspect": 1e-200)"), "/pixelAspect", "1e-200", "above 0"},
    {"scale", scene(R"("renderScale": [1, 0])"), "/renderScale/1", "0", "above 0"},
    {"inputType", scene(R"("input": "a.png")"), "/input", "string", "{\"file\": FILE}"},
    {"inputKey", scene(R"("input": {"raw": "a", "flie": "b"})"), "/input/flie", "\"flie\"",
     "\"file\""},
    {"inputTwo", scene(R"("input": {"raw": "a", "file": "b"})"), "/input", "two sources", "one of"},
    {"inputNone", scene(R"("input": {})"), "/input", "no source", "one of"},
    {"color", scene(R"("input": {"color": [0, 0, 1.5, 1]})"), "/input/color/2", "1.5", "0 to 1"},
    {"colorCount", scene(R"("input": {"color": [0, 0, 1]})"), "/input/color", "4 numbers", ""},
    {"file", scene(R"("input": {"file": 7})"), "/input/file", "not number", "quotes"},
    {"shape", scene(R"("shape": ["a"])"), "/shape", "cannot be array", "\"import\""},
    {"shapeNothing", scene(R"("shape": {})"), "/shape", "either a file or a text", "FILE"},
    {"shapeBoth", scene(R"("shape": {"file": "a", "text": "b"})"), "/shape", "either", "FILE"},
    {"shapeText", scene(R"("shape": {"text": 5})"), "/shape/text", "a text is needed", "quotes"},
    {"shapeAlign", scene(R"("shape": {"text": "a", "align": "top"})"), "/shape/align", "\"top\"",
     "\"center\""},
    {"shapeKey", scene(R"("shape": {"text": "a", "hnad": "b"})"), "/shape/hnad", "not known",
     "\"hand\""},
    {"shapeImport", scene(R"("shape": {"file": "a", "import": true})"), "/shape/import",
     "an object is needed", "{...}"},
    {"shapeRange", scene(R"("shape": {"file": "a", "import": {"smallest": 101}})"),
     "/shape/import/smallest", "101 is outside", "from 0 to 100"},
    {"shapeEmpty", scene(R"("shape": "")"), "/shape", "no file name", "name a file"},
    {"shapeNul", scene(R"("shape": "a\u0000b")"), "/shape", "no file name", ""},
    {"parameters", scene(R"("parameters": [4])"), "/parameters", "array", "Thickness"},
    {"unknownParameter", parameter(R"("Thicknes": 4)"), "/parameters/Thicknes",
     "no parameter \"Thicknes\"", "\"Thickness\""},
    {"unknownInGroup", parameter(R"("Camera/Zoon": 4)"), "/parameters/Camera~1Zoon", "no parameter",
     "\"Camera/Zoom\""},
    {"unknownIdentifier", parameter(R"("999": 4)"), "/parameters/999", "no parameter", ""},
    {"groupIdentifier", parameter(R"("48": 4)"), "/parameters/48", "no parameter", ""},
    {"ambiguous", parameter(R"("X Rotation": 4)"), "/parameters/X Rotation", "several parameters",
     "\"Transform/X Rotation\" or \"Repeater/X Rotation\" or \"Camera/X Rotation\""},
    {"sameParameter", parameter(R"("4": 3, "Thickness": 4)"), "/parameters/Thickness",
     "set twice, also as \"4\"", "one of the two"},
    {"shapeParameter", parameter(R"("1": "a.svg")"), "/parameters/1", "\"Shape\"",
     "top-level key \"shape\""},
    {"number", parameter(R"("4": "thick")"), "/parameters/4", "cannot take string", "0.2 to 1000"},
    {"numberBoolean", parameter(R"("4": true)"), "/parameters/4", "cannot take boolean", "number"},
    {"below", parameter(R"("4": 0.1)"), "/parameters/4", "0.1 is outside", "0.2 to 1000"},
    {"above", parameter(R"("End": 100.5)"), "/parameters/End", "100.5 is outside", "0 to 100"},
    {"angle", parameter(R"("76": 3601)"), "/parameters/76", "3601 is outside", "degrees"},
    {"toggle", parameter(R"("Loop": 2)"), "/parameters/Loop", "number", "true or false"},
    {"toggleText", parameter(R"("Loop": "on")"), "/parameters/Loop", "string", "true or false"},
    {"point", parameter(R"("7": [1])"), "/parameters/7", "array", "[x, y]"},
    {"pointPart", parameter(R"("7": [1, "b"])"), "/parameters/7/1", "string", "[x, y]"},
    {"colour", parameter(R"("Color": [0, 1.1, 0])"), "/parameters/Color/1", "1.1", "0 to 1"},
    {"colourType", parameter(R"("Color": "red")"), "/parameters/Color", "string", "[r, g, b]"},
    {"menuText", parameter(R"("35": "Normall")"), "/parameters/35", "\"Normall\"", "\"Normal\""},
    {"menuIndex", parameter(R"("35": 18)"), "/parameters/35", "index 18", "0 to 17"},
    {"menuFraction", parameter(R"("35": 1.5)"), "/parameters/35", "index 1.5", "0 to 17"},
    {"menuType", parameter(R"("35": true)"), "/parameters/35", "boolean", "0 to 17"},
    {"keysKey", parameter(R"("4": {"keys": [[0, 1]], "key": 1})"), "/parameters/4/key", "\"key\"",
     "\"keys\""},
    {"keysMissing", parameter(R"("4": {})"), "/parameters/4", "needs \"keys\"", "[[frame, value]"},
    {"keysEmpty", parameter(R"("4": {"keys": []})"), "/parameters/4/keys", "one key", ""},
    {"keysType", parameter(R"("4": {"keys": 3})"), "/parameters/4/keys", "list", ""},
    {"key", parameter(R"("4": {"keys": [[0]]})"), "/parameters/4/keys/0", "two or three", "easing"},
    {"keyFrame", parameter(R"("4": {"keys": [["0", 1]]})"), "/parameters/4/keys/0/0", "string",
     "frame number"},
    {"keyValue", parameter(R"("4": {"keys": [[0, 1], [1, 2000]]})"), "/parameters/4/keys/1/1",
     "2000 is outside", "0.2 to 1000"},
    {"keyOrder", parameter(R"("4": {"keys": [[0, 1], [5, 2], [3, 2]]})"), "/parameters/4/keys/2",
     "frame 3", "ascending"},
    {"keySame", parameter(R"("4": {"keys": [[5, 1], [5, 2]]})"), "/parameters/4/keys/1", "frame 5",
     "ascending"},
    {"easing", parameter(R"("4": {"keys": [[0, 1, "easein"], [5, 2]]})"), "/parameters/4/keys/0/2",
     "\"easein\"", "\"ease-in\""},
    {"easingType", parameter(R"("4": {"keys": [[0, 1, 1]]})"), "/parameters/4/keys/0/2", "number",
     "\"linear\""},
};

INSTANTIATE_TEST_SUITE_P(Table, BadSceneTest, testing::ValuesIn(badScenes),
                         [](const auto& test) { return std::string(test.param.name); });

Scene goodScene(const std::string& text) {
    Problems problems;
    const std::optional<Scene> scene = readScene(text, "folder/scene.json", &problems);
    for (const Problem& problem : problems.items()) {
        ADD_FAILURE() << sentence(problem);
    }
    return scene.value_or(Scene{});
}

ParameterValue constantOf(const Scene& scene, int id) {
    const auto track = scene.parameters.find(id);
    return track == scene.parameters.end() || track->second.size() != 1
               ? ParameterValue{-1e9}
               : track->second.front().value;
}

TEST(SceneReader, leavesTheDefaultsToTheInput) {
    const Scene scene = goodScene(R"({"orbel": 1})");
    EXPECT_FALSE(scene.size);
    EXPECT_FALSE(scene.framesPerSecond);
    EXPECT_FALSE(scene.frames);
    EXPECT_FALSE(scene.shape);
    EXPECT_EQ(scene.format, RF_RGBA8);
    EXPECT_EQ(scene.pixelAspect, 1.0);
    EXPECT_EQ(std::get<ColorInput>(scene.input).rgba, (std::array<double, 4>{}));
    EXPECT_TRUE(scene.parameters.empty());
}

TEST(SceneReader, readsEveryKey) {
    const Scene scene = goodScene(R"({
        "orbel": 1, "size": [32767, 1], "format": "argb16", "fps": 29.97, "frames": [3, 7],
        "pixelAspect": 1.5, "renderScale": [0.5, 0.25], "input": {"color": [0, 0.5, 1, 0.25]},
        "shape": "svg/a b.svg", "parameters": {}})");
    EXPECT_EQ(scene.size, (FrameSize{32767, 1}));
    EXPECT_EQ(scene.format, RF_ARGB16);
    EXPECT_EQ(scene.framesPerSecond, 29.97);
    EXPECT_EQ(scene.frames, (FrameRange{3, 7}));
    EXPECT_EQ(scene.pixelAspect, 1.5);
    EXPECT_EQ(scene.renderScaleX, 0.5);
    EXPECT_EQ(scene.renderScaleY, 0.25);
    EXPECT_EQ(std::get<ColorInput>(scene.input).rgba, (std::array{0.0, 0.5, 1.0, 0.25}));
    EXPECT_EQ(scene.shape, "folder/svg/a b.svg");
}

TEST(SceneReader, takesTheEndsOfItsRanges) {
    for (const char* const member :
         {R"("fps": 0.001)", R"("fps": 1000000)", R"("pixelAspect": 1000)", R"("size": [1, 32767])",
          R"("renderScale": [1000, 1e-9])", R"("frames": [0, 0])"}) {
        static_cast<void>(
            goodScene(std::string(R"({"orbel": 1, )") + member + "}")); // which wants no problems
    }
}

TEST(SceneReader, readsPathsFromTheScenesOwnFolder) {
    const Scene raw = goodScene(R"({"orbel": 1, "input": {"raw": "r/x.raw"}, "shape": "/a.svg"})");
    EXPECT_EQ(std::get<RawInput>(raw.input).path, "folder/r/x.raw");
    EXPECT_EQ(raw.shape, "/a.svg");
    const Scene clip = goodScene(R"({"orbel": 1, "input": {"file": "../clip.mp4"}})");
    EXPECT_EQ(std::get<MediaInput>(clip.input).path, "folder/../clip.mp4");
}

TEST(SceneReader, readsEveryKindOfValue) {
    const Scene scene = goodScene(R"({"orbel": 1, "parameters": {
        "4": 0.2, "Camera/Zoom": 30000, "Loop": true, "67": 0, "Color": [0, 1, 0.5],
        "Transform/XY Position": [-2, 3.5], "Presets": "Basic Star", "35": 17, "View": "Left",
        "Bend Axis": -3600, "Opacity": 34, "Repeater/Opacity": 64}})");
    EXPECT_EQ(constantOf(scene, PARAM_THICKNESS)[0], 0.2);
    EXPECT_EQ(constantOf(scene, PARAM_ZOOM)[0], 30000);
    EXPECT_EQ(constantOf(scene, PARAM_LOOP)[0], 1);
    EXPECT_EQ(constantOf(scene, PARAM_COMPRESS_TO_FIT)[0], 0);
    EXPECT_EQ(constantOf(scene, PARAM_COLOR), (ParameterValue{0, 1, 0.5}));
    EXPECT_EQ(constantOf(scene, PARAM_POSITION_XY), (ParameterValue{-2, 3.5}));
    EXPECT_EQ(constantOf(scene, PARAM_PRESETS)[0], 3);
    EXPECT_EQ(constantOf(scene, PARAM_TRANSFER_MODE)[0], 17);
    EXPECT_EQ(constantOf(scene, PARAM_VIEW)[0], 2);
    EXPECT_EQ(constantOf(scene, PARAM_BEND_AXIS)[0], -3600);
    EXPECT_EQ(constantOf(scene, PARAM_OPACITY)[0], 34);
    EXPECT_EQ(constantOf(scene, PARAM_REPEATER_OPACITY)[0], 64);
}

TEST(SceneReader, readsKeysWithEasings) {
    const Scene scene = goodScene(R"({"orbel": 1, "parameters": {"End": {"keys": [
        [-2.5, 0, "ease"], [1, 10, "hold"], [2, 20, "ease-in"], [3, 30, "ease-out"],
        [4, 40, "linear"], [5, 50]]}}})");
    const std::vector<Keyframe>& keys = scene.parameters.at(PARAM_END);
    ASSERT_EQ(keys.size(), 6U);
    EXPECT_EQ(keys[0].frame, -2.5);
    EXPECT_EQ(keys[5].value[0], 50);
    const std::vector<Easing> easings{Easing::Ease,    Easing::Hold,   Easing::EaseIn,
                                      Easing::EaseOut, Easing::Linear, Easing::Linear};
    for (std::size_t i = 0; i < keys.size(); ++i) {
        EXPECT_EQ(keys[i].easing, easings[i]);
    }
}

TEST(SceneReader, reportsEverythingAtOnce) {
    Problems problems;
    const auto scene = readScene(
        R"({"orbel": 3, "size": [0, 0], "sise": 1, "parameters": {"4": -1, "nothing": 2}})", "s",
        &problems);
    EXPECT_EQ(problems.items().size(), 5U);
    EXPECT_EQ(scene->size, FrameSize{});
}

TEST(SceneReader, endsBeforeMillionsOfProblems) {
    std::string members;
    for (int i = 0; i < 100'000; ++i) {
        members += (i > 0 ? ", \"x" : "\"x") + std::to_string(i) + "\": 1";
    }
    Problems problems;
    static_cast<void>(
        readScene("{" + members + ", \"parameters\": {" + members + "}}", "s", &problems));
    EXPECT_EQ(problems.items().size(), 200U);
}

TEST(SceneReader, survivesDeepNesting) {
    for (const std::string open : {"[", "{\"a\":"}) {
        std::string text;
        for (int i = 0; i < 1'000'000; ++i) {
            text += open;
        }
        Problems problems;
        EXPECT_FALSE(readScene(text, "s", &problems));
        EXPECT_EQ(problems.items().size(), 1U);
    }
}

TEST(SceneReader, tellsWhyAFileCannotBeRead) {
    const TestFolder folder;
    writeBytes(folder / "empty.json", "");
    const std::pair<std::string, std::string> cases[] = {
        {folder / "none.json", "does not exist"},
        {folder / "", "not a file"},
        {folder / "empty.json", "not JSON"},
    };
    for (const auto& [file, message] : cases) {
        Problems problems;
        EXPECT_FALSE(readSceneFile(file, &problems));
        ASSERT_EQ(problems.items().size(), 1U);
        EXPECT_EQ(problems.items().front().file, file);
        EXPECT_THAT(problems.items().front().message, HasSubstr(message));
    }
}

TEST(SceneReader, readsTheCorpusWithoutHarm) {
    int count = 0;
    for (const auto& entry :
         std::filesystem::directory_iterator(ORBEL_SOURCE_DIR "/fuzz/corpus/scene")) {
        Problems problems;
        const auto scene = readSceneFile(entry.path().string(), &problems);
        EXPECT_TRUE(scene || !problems.empty()) << entry.path();
        ++count;
    }
    EXPECT_GE(count, 10);
}

TEST(Diagnostics, makesControlCharactersVisible) {
    EXPECT_EQ(sentence({"a\nb", "\x1b[0m", "wrong", ""}), "a\\x0ab (\\x1b[0m): wrong");
}

TEST(Diagnostics, cutsLongTextBetweenCharacters) {
    const std::string text = inQuotes(std::string(79, 'a') + "\xc3\xa4 and more");
    EXPECT_EQ(text, "\"" + std::string(79, 'a') + "...\"");
}

TEST(SceneReader, takesDrawingsAndTextsAsShapes) {
    const Scene drawing = goodScene(
        R"({"orbel": 1, "shape": {"file": "a.svg", "import": {"take": "fills", "simplify": 2}}})");
    EXPECT_EQ(drawing.shape, "folder/a.svg");
    ASSERT_TRUE(drawing.import);
    EXPECT_EQ(drawing.import->take, ImportOptions::Take::Fills);
    EXPECT_EQ(drawing.import->simplify, 2);
    const Scene plain = goodScene(R"({"orbel": 1, "shape": {"file": "a.svg"}})");
    EXPECT_FALSE(plain.needsConversion());
    EXPECT_EQ(shapeKeys(plain), "folder/a.svg");
    const Scene text = goodScene(
        R"({"orbel": 1, "shape": {"text": "Hi", "singleStroke": true, "align": "right"}})");
    ASSERT_TRUE(text.lettering);
    EXPECT_TRUE(text.lettering->singleStroke);
    for (const Scene* scene : {&drawing, &text, &plain}) {
        Scene copy;
        Problems problems;
        readShapeKeys(shapeKeys(*scene), {"scene.json", "/shape", &problems}, "", &copy);
        EXPECT_TRUE(problems.empty());
        EXPECT_EQ(shapeKeys(copy), shapeKeys(*scene));
    }
}

} // namespace
} // namespace orbel
