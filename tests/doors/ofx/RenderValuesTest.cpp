#include "doors/ofx/ParameterNames.h"
#include "doors/ofx/platform/OfxNames.h"
#include "params/ParameterTable.h"
#include "shapes/ShapeCache.h"
#include "tests/doors/ofx/RenderFixture.h"
#include "tests/support/TestFolder.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <mutex>
#include <thread>

namespace orbel::ofxtest {
namespace {

using testing::IsEmpty;

constexpr const char* OUTLINE = "<svg><path d='M0 0 C60 0 0 60 60 90'/></svg>";

using OfxValues = OfxRender;

TEST_F(OfxValues, parametersAreReadAtTheirOwnTimes) {
    Shot shot;
    shot.time = 7.0;
    shot.parameters.setKeys(PARAM_ROTATION_Z,
                            {{0, {0}, Easing::Linear}, {10, {300}, Easing::Linear}});
    shot.set(PARAM_MOTION_BLUR, 1).set(PARAM_LEVELS, 5).set(PARAM_SHUTTER_PHASE, -90);
    expectFrame(shot, Layouts(shot));
    shot.time = -3.0;
    expectFrame(shot, Layouts(shot));
    shot.time = 3.5; // the second field of a frame
    expectFrame(shot, Layouts(shot));
}

TEST_F(OfxValues, fractionsOfFramesAreNotRounded) {
    for (const double time : {2.34567, -0.001, 1e7 + 0.125, 0.5 / 3.0}) {
        Shot shot;
        shot.time = time;
        Stage stage(&m_plugin, shot, Layouts(shot));
        std::vector<double> asked;
        stage.instance.param("strokeThickness").value = [&asked](OfxTime at) {
            asked.push_back(at);
            return std::array<double, 3>{4.0};
        };
        EXPECT_EQ(stage.render(), ofx::STAT_OK);
        EXPECT_THAT(asked, testing::Not(IsEmpty()));
        EXPECT_THAT(asked, testing::Each(time));
    }
}

TEST_F(OfxValues, timesAndScalesThatAreNoNumbersCountAsUsual) {
    const double nan = std::nan("");
    const double infinity = std::numeric_limits<double>::infinity();
    Shot shot;
    for (const double odd : {nan, infinity, -infinity}) {
        Stage stage(&m_plugin, shot, Layouts(shot));
        stage.arguments.set(ofx::PROP_TIME, {odd});
        stage.arguments.set(ofx::PROP_RENDER_SCALE, {odd, 0.0});
        EXPECT_EQ(stageRender(stage, shot, shot.rendered()), ofx::STAT_OK);
    }
}

TEST_F(OfxValues, aShapeMayBeAFileOrItsText) {
    Shot text;
    text.set(PARAM_PRESETS, 0).shapeText = OUTLINE;
    expectFrame(text, Layouts(text));
    Shot lost = text; // a machine without the file
    lost.shapeFile = "/nowhere/at/all.svg";
    expectFrame(lost, Layouts(lost));
    Shot file = text;
    file.shapeText = "<svg><line x2='9' y2='1'/></svg>";
    file.shapeFile = std::string(ORBEL_RESOURCES) + "/Tessaly/SVG/Moon.svg";
    expectFrame(file, Layouts(file));
    Shot preset = file;
    preset.set(PARAM_PRESETS, 17).shapeFile.clear(); // "Moon", too
    EXPECT_EQ(std::memcmp(file.rendered().info().data, preset.rendered().info().data, 4000), 0);
    expectFrame(preset, Layouts(preset));
    for (const char* const broken : {"", "no svg", "<svg><path d='M0", "\xff\xfe<svg/>"}) {
        Shot odd = text;
        odd.shapeText = broken;
        expectFrame(odd, Layouts(odd));
    }
}

TEST_F(OfxValues, aPurgeMakesChangedFilesCount) {
    const test::TestFolder folder;
    const std::string file = folder.file("a.svg", OUTLINE);
    Shot shot;
    shot.set(PARAM_PRESETS, 0).shapeFile = file;
    const MemoryImage before = shot.rendered();
    Stage stage(&m_plugin, shot, Layouts(shot));
    EXPECT_EQ(stageRender(stage, shot, before), ofx::STAT_OK);
    test::writeBytes(file, "<svg><circle cx='5' cy='5' r='4'/></svg>");
    EXPECT_EQ(stageRender(stage, shot, before), ofx::STAT_OK); // read once
    EXPECT_EQ(m_plugin.call("OfxActionPurgeCaches"), ofx::STAT_OK);
    flushStrokeCache();
    const MemoryImage after = shot.rendered();
    EXPECT_EQ(stageRender(stage, shot, after), ofx::STAT_OK);
}

TEST_F(OfxValues, valuesOutsideTheRangeAreLimited) {
    const double infinity = std::numeric_limits<double>::infinity();
    struct Row {
        int id;
        double wild;
        double counts;
    };
    for (const Row& row : {Row{PARAM_FEATHER, 1e300, 100}, Row{PARAM_ROTATION_Z, -infinity, -3600},
                           Row{PARAM_END, std::nan(""), 100}, Row{PARAM_TRANSFER_MODE, 1e6, 0},
                           Row{PARAM_POSITION_XY, infinity, 0.5}}) {
        Shot shot;
        Stage stage(&m_plugin, shot, Layouts(shot));
        shot.parameters.set(row.id, {row.counts, row.counts});
        stage.instance.param(ofx::parameterName(row.id)).value = [wild = row.wild](OfxTime) {
            return std::array<double, 3>{wild, wild, wild};
        };
        EXPECT_EQ(stageRender(stage, shot, shot.rendered()), ofx::STAT_OK) << row.id;
    }
}

TEST_F(OfxValues, severalThreadsShareAnInstanceAndHaveTheirOwn) {
    Shot shot;
    shot.parameters.setKeys(PARAM_END, {{0, {10}, Easing::Linear}, {8, {100}, Easing::Linear}});
    Stage shared(&m_plugin, shot, Layouts(shot));
    shared.instance.clip("Output").image = nullptr;
    std::vector<std::thread> threads;
    std::vector<int> wrong(8, 0);
    std::mutex images;
    std::map<std::thread::id, PropertySet*> outputs;
    shared.instance.clip("Output").image = [&](OfxTime) {
        const std::lock_guard lock(images);
        return outputs.at(std::this_thread::get_id());
    };
    for (std::size_t i = 0; i < wrong.size(); ++i) {
        threads.emplace_back([&, i] {
            Shot own = shot;
            own.time = static_cast<double>(i);
            const MemoryImage expected = own.rendered();
            Stage mine(&m_plugin, own, Layouts(own));
            {
                const std::lock_guard lock(images);
                outputs[std::this_thread::get_id()] = &mine.output.properties;
            }
            for (int round = 0; round < 4; ++round) {
                HostedInstance& instance = round % 2 == 0 ? shared.instance : mine.instance;
                instance.call(ofx::ACTION_RENDER, &mine.arguments);
                wrong[i] += shows(mine.output, expected.info(), own.frame, own.frame) ? 0 : 1;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_THAT(wrong, testing::Each(0));
}

} // namespace
} // namespace orbel::ofxtest
