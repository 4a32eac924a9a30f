#include "render/RenderDispatch.h"
#include "tests/support/AccelerationSettings.h"
#include "tests/support/Scene.h"
#include "tests/support/TestHosts.h"

#include <gtest/gtest.h>

#include <optional>

namespace orbel {
namespace {

using test::Frame;
using test::Scene;
using Host = test::SceneHost<test::FailingHost>;

/// One way in which a frame is drawn, and may fail.
struct Case {
    const char* name;
    std::function<void(Scene&)> arrange;
    std::function<void(Host&)> fail = [](Host&) {};
    int result = 0;
};

void moving(Scene& s) {
    s.animate(PARAM_POSITION_XY, {0.3, 0.5}, {6.3, 0.5}).set(PARAM_MOTION_BLUR, 1);
    s.set(PARAM_LEVELS, 5);
}

const Case CASES[] = {
    {"plain", [](Scene&) {}},
    {"soft", [](Scene& s) { s.set(PARAM_FEATHER, 100).set(PARAM_THICKNESS, 30); }},
    {"translucent", [](Scene& s) { s.set(PARAM_INTERNAL_OPACITY, 50).set(PARAM_OPACITY, 70); }},
    {"layer alone", [](Scene& s) { s.set(PARAM_TRANSFER_MODE, 0).set(PARAM_OPACITY, 35); }},
    {"screen", [](Scene& s) { s.set(PARAM_TRANSFER_MODE, 5).set(PARAM_OPACITY, 80); }},
    {"mode of no menu", [](Scene& s) { s.set(PARAM_TRANSFER_MODE, 40).set(PARAM_OPACITY, 35); }},
    {"hue", [](Scene& s) { s.set(PARAM_TRANSFER_MODE, 14).set(PARAM_FEATHER, 40); }},
    {"modulated",
     [](Scene& s) {
         s.set(PARAM_LOW_ALPHA_HUE_ROTATION, 77).set(PARAM_LOW_ALPHA_SAT_BOOST, 20);
         s.set(PARAM_FEATHER, 60).set(PARAM_TRANSFER_MODE, 0);
     }},
    {"more stamps than are gathered",
     [](Scene& s) { s.set(PARAM_THICKNESS, 1).set(PARAM_ADJUST_STEP, 6); }},
    {"fading away from the camera",
     [](Scene& s) {
         s.set(PARAM_ENABLE_REPEATER, 1).set(PARAM_INSTANCES, 4).set(PARAM_REPEATER_ROTATION_Y, 20);
         s.set(PARAM_START_FADE, 300).set(PARAM_Z_CLIP_BACK, 500);
     }},
    {"tapered", [](Scene& s) { s.set(PARAM_ENABLE_TAPER, 1).set(PARAM_THICKNESS, 25); }},
    {"larger than the picture", [](Scene& s) { s.set(PARAM_THICKNESS, 900); }},
    {"no sane strength",
     [](Scene& s) { s.set(PARAM_INTERNAL_OPACITY, 170).set(PARAM_THICKNESS, 12); }},
    {"no sane opacity", [](Scene& s) { s.set(PARAM_OPACITY, HUGE_VAL); }},
    {"nothing", [](Scene& s) { s.set(PARAM_START, 100); }},
    {"blurred", moving},
    {"blurred, changing its colour, layer alone",
     [](Scene& s) {
         moving(s);
         s.animate(PARAM_COLOR, {1, 0.1, 0.3}, {-7, 8, 3}).set(PARAM_TRANSFER_MODE, 0);
     }},
    {"blurred and modulated",
     [](Scene& s) {
         moving(s);
         s.set(PARAM_HI_ALPHA_BRIGHT_BOOST, 60).animate(PARAM_OPACITY, {100}, {0});
     }},
    {"blurred, more stamps than are gathered",
     [](Scene& s) {
         moving(s);
         s.set(PARAM_THICKNESS, 1).set(PARAM_ADJUST_STEP, 12);
     }},
    {"aborted", [](Scene& s) { s.set(PARAM_THICKNESS, 20); },
     [](Host& host) { host.abortAtCall = 4; }, 42},
    {"aborted after many stamps",
     [](Scene& s) { s.set(PARAM_THICKNESS, 1).set(PARAM_ADJUST_STEP, 6); },
     [](Host& host) { host.abortAtCall = 150; }, 42},
    {"aborted in the first sample", moving, [](Host& host) { host.abortAtCall = 3; }, 42},
    {"aborted in a later sample", moving, [](Host& host) { host.abortAtCall = 25; }, 42},
    {"aborted in a later sample after many stamps",
     [](Scene& s) {
         moving(s);
         s.set(PARAM_THICKNESS, 1).set(PARAM_ADJUST_STEP, 12);
     },
     [](Host& host) { host.abortAtCall = 450; }, 42},
    {"without a raster for samples", moving, [](Host& host) { host.allocFails = true; }, 1},
    {"throwing", [](Scene&) {}, [](Host& host) { host.mathsThrows = true; }, 1},
    {"without memory", [](Scene&) {}, [](Host& host) { host.memoryFails = true; }, 1},
};

/// Both images after a frame, and what the host saw of it.
struct Outcome {
    Frame frame;
    long progressCalls = 0;
};

Outcome draw(const Case& c, RasterFormat format, RowLayout layout) {
    Scene scene(test::TWO_OUTLINES);
    scene.width = 331;
    scene.height = 217;
    scene.format = format;
    scene.layout = layout;
    scene.set(PARAM_TRANSFER_MODE, 1).set(PARAM_THICKNESS, 6);
    scene.parameters.set(PARAM_COLOR, ParameterValue{0.9, 0.4, 0.1});
    c.arrange(scene);
    Outcome outcome{Frame(scene)};
    Host host(&scene, outcome.frame);
    c.fail(host);
    outcome.frame.result = Render(&host);
    outcome.progressCalls = host.progressCalls;
    EXPECT_TRUE(host.held.empty());
    EXPECT_TRUE(outcome.frame.input.guardsIntact() && outcome.frame.output.guardsIntact());
    return outcome;
}

class BandRender : public testing::TestWithParam<RasterFormat> {};

TEST_P(BandRender, givesTheFramesOfTheReferenceAtEveryLevelOnAnyThreads) {
    const test::AccelerationSettings restored;
    const RowLayout layout{16, GetParam() % 2 == 0};
    for (const Case& c : CASES) {
        setAccelerationLevel(0);
        setRenderThreads(1);
        const Outcome expected = draw(c, GetParam(), layout);
        EXPECT_EQ(expected.frame.result, c.result) << c.name;
        for (int level = 1; level <= bestAccelerationLevel(); ++level) {
            for (const int threads : {1, 2, 3, 7}) {
                if (threads > 1 && level < bestAccelerationLevel() && threads != 2 * level + 1) {
                    continue; // every other combination
                }
                setAccelerationLevel(level);
                setRenderThreads(threads);
                const Outcome actual = draw(c, GetParam(), layout);
                const std::string where = std::string(c.name) + ", level " + std::to_string(level) +
                                          ", threads " + std::to_string(threads);
                EXPECT_EQ(actual.frame.result, expected.frame.result) << where;
                EXPECT_EQ(actual.progressCalls, expected.progressCalls) << where;
                EXPECT_TRUE(
                    test::sameBytes(actual.frame.output.info(), expected.frame.output.info()))
                    << where;
                EXPECT_TRUE(test::sameBytes(actual.frame.input.info(), expected.frame.input.info()))
                    << where;
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Formats, BandRender, testing::ValuesIn(test::RENDERED_FORMATS),
                         [](const auto& format) { return test::formatName(format.param); });

} // namespace
} // namespace orbel
