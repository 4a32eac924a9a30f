#include "doors/ofx/platform/OfxNames.h"
#include "params/ParameterTable.h"
#include "shapes/ShapeCache.h"
#include "tests/doors/ofx/RenderFixture.h"
#include "tests/support/TestFolder.h"

#include <clocale>
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
    const double nan = std::nan("");
    const double infinity = std::numeric_limits<double>::infinity();
    for (const double wild : {nan, infinity, -infinity, 1e300, -1e300}) {
        Shot shot;
        Stage stage(&m_plugin, shot, Layouts(shot));
        for (const ParameterRow& row : parameterTable()) {
            const bool number = row.kind == RowKind::Float || row.kind == RowKind::Angle ||
                                row.kind == RowKind::Color;
            if (number && row.id != PARAM_INSTANCES && row.id != PARAM_ADJUST_STEP) {
                const double limited = std::isnan(wild) ? row.defaults[0]
                                       : wild > 0       ? row.bounds().max
                                                        : row.bounds().min;
                shot.parameters.set(row.id, row.kind == RowKind::Color
                                                ? ParameterValue{limited, limited, limited}
                                                : ParameterValue{limited});
            }
        }
        shot.parameters.set(PARAM_POSITION_XY, findParameter(PARAM_POSITION_XY)->defaults);
        const bool finite = std::isfinite(wild);
        for (auto& [name, param] : stage.instance.effect().params) {
            const bool number = param->type == ofx::PARAM_TYPE_DOUBLE ||
                                param->type == ofx::PARAM_TYPE_RGB ||
                                (param->type == ofx::PARAM_TYPE_DOUBLE_2D && !finite);
            if (number && name != "repeaterInstances" && name != "advancedAdjustStep") {
                param->value = [wild](OfxTime) { return std::array<double, 3>{wild, wild, wild}; };
            }
        }
        if (finite) {
            stage.instance.param("transformXY").value = nullptr;
        }
        for (const char* const menu : {"layerTransferMode", "cameraView", "shapePreset"}) {
            stage.instance.param(menu).value = [](OfxTime) { return std::array<double, 3>{1e6}; };
        }
        shot.set(PARAM_TRANSFER_MODE, 0).set(PARAM_PRESETS, 0);
        EXPECT_EQ(stageRender(stage, shot, shot.rendered()), ofx::STAT_OK) << wild;
    }
}

TEST_F(OfxValues, severalThreadsShareAnInstanceAndHaveTheirOwn) {
    Shot shot;
    shot.parameters.setKeys(PARAM_END, {{0, {10}, Easing::Linear}, {8, {100}, Easing::Linear}});
    Stage shared(&m_plugin, shot, Layouts(shot));
    shared.source.takeFrom(shot.picture().info());
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
            mine.source.takeFrom(own.picture().info());
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

TEST_F(OfxValues, aCommaLocaleChangesNothing) {
    const std::string before = std::setlocale(LC_ALL, nullptr);
    std::setlocale(LC_ALL, "de_DE.UTF-8"); // where it is installed
    Shot shot;
    shot.set(PARAM_PRESETS, 0).shapeText = "<svg><path d='M0.5 0.25 C6.5 0 0 6.75 6.5 9'/></svg>";
    expectFrame(shot, Layouts(shot));
    std::setlocale(LC_ALL, before.c_str());
}

} // namespace
} // namespace orbel::ofxtest
