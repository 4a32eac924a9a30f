#include "film/ScenePlan.h"

#include "film/MachineMemory.h"
#include "film/ShapeFolder.h"
#include "media/MediaWriter.h"
#include "params/ParameterTable.h"
#include "scene/RationalRate.h"
#include "scene/SceneShapes.h"
#include "tests/media/MediaFixtures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orbel {
namespace {

using testing::HasSubstr;

class ScenePlanTest : public testing::Test {
protected:
    ScenePlanTest() {
        prepareShapeTable();
        m_scene.file = "scene.json";
        m_scene.size = FrameSize{8, 4};
    }

    void writeFilm(const std::string& file, FrameRate rate, int frames) {
        WriterSpec spec;
        spec.width = 16;
        spec.height = 8;
        spec.frameRate = rate;
        TestRaster raster(RF_RGBA8, 16, 8, RowOrder::Tight);
        const auto writer = openWriter(file, spec);
        for (int i = 0; i < frames; ++i) {
            raster.fillColour(i / 10.0, 0, 0, 1);
            writer->write(raster.info(), i);
        }
        writer->finish();
    }

    std::optional<ScenePlan> plan() {
        m_problems = Problems();
        return planScene(m_scene, 1, &m_problems);
    }

    void expectProblem(const std::string& file, const std::string& place,
                       const std::string& message) {
        EXPECT_FALSE(plan());
        ASSERT_EQ(m_problems.items().size(), 1U);
        const Problem& problem = m_problems.items().front();
        EXPECT_EQ(problem.file, file);
        EXPECT_EQ(problem.place, place);
        EXPECT_THAT(problem.message, HasSubstr(message));
        EXPECT_FALSE(problem.remedy.empty());
    }

    TestFolder m_folder;
    Scene m_scene;
    Problems m_problems;
};

TEST_F(ScenePlanTest, fillsInTheDefaults) {
    const auto result = plan();
    ASSERT_TRUE(result);
    EXPECT_EQ(result->size, (FrameSize{8, 4}));
    EXPECT_EQ(result->frames, (FrameRange{0, 0}));
    EXPECT_EQ(result->frameRate, (FrameRate{30, 1}));
    EXPECT_GT(result->framesInFlight, 1);
}

TEST_F(ScenePlanTest, takesSizeRateAndFramesFromTheInput) {
    writeFilm(m_folder / "clip.mkv", {25, 1}, 5);
    m_scene.size.reset();
    m_scene.input = MediaInput{m_folder / "clip.mkv"};
    const auto result = plan();
    ASSERT_TRUE(result);
    EXPECT_EQ(result->size, (FrameSize{16, 8}));
    EXPECT_EQ(result->frames, (FrameRange{0, 4}));
    EXPECT_EQ(result->frameRate, (FrameRate{25, 1}));
    EXPECT_FALSE(firstMissingFrame(*result));
}

TEST_F(ScenePlanTest, coversTheSameTimeAtAnotherRate) {
    writeFilm(m_folder / "clip.mkv", {25, 1}, 5);
    m_scene.input = MediaInput{m_folder / "clip.mkv"};
    m_scene.framesPerSecond = 50;
    const auto result = plan();
    ASSERT_TRUE(result);
    EXPECT_EQ(result->frames, (FrameRange{0, 9}));
    const MediaProperties& media = result->media->properties();
    EXPECT_EQ(mediaFrame(media, result->frameRate, 9), 4);
    EXPECT_EQ(mediaFrame(media, result->frameRate, 2), 1);
    EXPECT_EQ(mediaFrame(media, {25, 1}, 3), 3);
    EXPECT_EQ(mediaFrame(media, {5, 1}, 1), 5);
}

TEST_F(ScenePlanTest, foreseesTheEndOfTheClip) {
    writeFilm(m_folder / "clip.mkv", {25, 1}, 5);
    m_scene.input = MediaInput{m_folder / "clip.mkv"};
    m_scene.frames = {2, 9};
    const auto result = plan();
    ASSERT_TRUE(result);
    EXPECT_EQ(firstMissingFrame(*result), 5);
}

TEST_F(ScenePlanTest, wantsASize) {
    m_scene.size.reset();
    expectProblem("scene.json", "", "size of the frame is missing");
    m_scene.file = commandLine;
    expectProblem(commandLine, "--size", "size of the frame is missing");
}

TEST_F(ScenePlanTest, refusesWhatTheMachineCannotHold) {
    m_scene.size = FrameSize{32767, 32767};
    m_scene.format = RF_RGBA32F;
    if (machineMemory() > std::uint64_t{60} << 30) {
        return;
    }
    expectProblem("scene.json", "/size", "of memory");
}

TEST_F(ScenePlanTest, refusesInputsThatCannotBeDecoded) {
    m_scene.input = MediaInput{m_folder / "none.png"};
    expectProblem(m_folder / "none.png", "", "no such file");
    writeBytes(m_folder / "broken.png", "this is no picture");
    m_scene.input = MediaInput{m_folder / "broken.png"};
    EXPECT_FALSE(plan());
    EXPECT_EQ(m_problems.items().front().file, m_folder / "broken.png");
}

TEST_F(ScenePlanTest, refusesARawFrameOfAnotherSize) {
    m_scene.input = RawInput{m_folder / "a.raw"};
    expectProblem("scene.json", "/input/raw", "does not exist");
    writeBytes(m_folder / "a.raw", std::string(8 * 4 * 4 - 1, 'x'));
    expectProblem("scene.json", "/input/raw", "holds 127 bytes");
    writeBytes(m_folder / "a.raw", std::string(8 * 4 * 4, 'x'));
    const auto result = plan();
    ASSERT_TRUE(result);
    EXPECT_EQ(result->rawFrame.size(), 128U);
}

TEST_F(ScenePlanTest, refusesShapesWithoutAFile) {
    m_scene.shape = m_folder / "none.svg";
    expectProblem("scene.json", "/shape", "does not exist");
    m_scene.shape = m_folder / "";
    expectProblem("scene.json", "/shape", "does not exist or cannot be read");
    m_scene.shape = "/" + std::string(2000, 'a');
    expectProblem("scene.json", "/shape", "1023");
}

TEST_F(ScenePlanTest, convertsShapesWhereItIsToldHow) {
    m_scene.lettering.emplace().text = "a";
    expectProblem("scene.json", "/shape", "a text is no shape yet");
    m_problems = {};
    const auto converted =
        planScene(m_scene, 1, &m_problems, [](const Scene&, Problems*) { return "<svg/>"; });
    ASSERT_TRUE(converted);
    EXPECT_EQ(converted->shapeText, "<svg/>");
}

TEST_F(ScenePlanTest, findsTheBuiltInShapes) {
    m_scene.parameters[PARAM_PRESETS] = {
        {0, {0}, Easing::Hold}, {5, {1}, Easing::Hold}, {9, {3}, Easing::Hold}};
    EXPECT_EQ(chosenPresets(m_scene), (std::vector{1, 3}));
    EXPECT_TRUE(plan());
}

TEST(RationalRate, findsTheFractionBehindADecimal) {
    const std::pair<double, FrameRate> cases[] = {{25, {25, 1}},
                                                  {29.97, {30000, 1001}},
                                                  {23.976, {24000, 1001}},
                                                  {12.5, {25, 2}},
                                                  {59.94, {60000, 1001}},
                                                  {30, {30, 1}},
                                                  {0.001, {1, 1000}},
                                                  {1'000'000, {1'000'000, 1}},
                                                  {119.88, {120000, 1001}},
                                                  {30000.0 / 1001, {30000, 1001}}};
    for (const auto& [decimal, rate] : cases) {
        EXPECT_EQ(rationalRate(decimal), rate) << decimal;
    }
}

} // namespace
} // namespace orbel
