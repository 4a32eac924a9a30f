#include "render/RenderDispatch.h"

#include "tests/support/Scene.h"

#include <gtest/gtest.h>

#include <cmath>

namespace orbel {
namespace {

using test::Frame;
using test::Rgba;
using test::Scene;

constexpr double MODE_NORMAL = 1;

Scene stroke(const char* shape) {
    Scene scene(shape);
    return scene.set(PARAM_THICKNESS, 3);
}

/// A scene that uses most of the road: perspective, copies, taper, modulation, blur.
Scene busyScene() {
    Scene scene = stroke(test::TWO_OUTLINES);
    scene.parameters.set(PARAM_COLOR, {0.9, 0.4, 0.2});
    scene.animate(PARAM_ROTATION_Y, {0}, {200}).animate(PARAM_END, {40}, {100});
    scene.set(PARAM_ENABLE_REPEATER, 1).set(PARAM_INSTANCES, 2).set(PARAM_DISPLACE_X, 6);
    scene.set(PARAM_ENABLE_TAPER, 1).set(PARAM_FEATHER, 30).set(PARAM_LOW_ALPHA_SAT_BOOST, 20);
    scene.set(PARAM_MOTION_BLUR, 1).set(PARAM_LEVELS, 4).set(PARAM_TRANSFER_MODE, MODE_NORMAL);
    scene.settings.frame = 3;
    return scene;
}

// What a frame looks like in every mode, format, scale and pixel aspect is the golden frames' to
// say.

TEST(Render, anEmptyStretchIsThePictureOrNothing) {
    for (const RasterFormat format : test::RENDERED_FORMATS) {
        for (int mode = 0; mode < 18; ++mode) {
            Scene scene = stroke(test::CIRCLE).set(PARAM_START, 60).set(PARAM_END, 60);
            scene.set(PARAM_TRANSFER_MODE, mode).set(PARAM_OPACITY, 30);
            scene.format = format;
            const Frame frame = render(scene);
            EXPECT_EQ(frame.result, 0);
            if (mode == 0) {
                EXPECT_EQ(test::alphaSum(frame.picture()), 0.0);
            } else {
                // Un-premultiplied and back: what the input became is what came out.
                EXPECT_TRUE(test::samePicture(frame.picture(), frame.input.info(), 0.0));
                const Frame before(scene);
                EXPECT_TRUE(test::samePicture(frame.picture(), before.input.info(), 3.0 / 255));
            }
        }
    }
}

TEST(Render, aMissingShapeIsNoStroke) {
    Scene scene = stroke(test::CIRCLE);
    setUserDataPath(&scene.shape, "/nowhere/at/all.svg");
    const Frame frame = render(scene);
    EXPECT_EQ(frame.result, 0);
    EXPECT_EQ(test::alphaSum(frame.picture()), 0.0);
    scene.set(PARAM_TRANSFER_MODE, MODE_NORMAL).set(PARAM_ENABLE_REPEATER, 1);
    EXPECT_TRUE(test::samePicture(render(scene).picture(), Frame(scene).input.info(), 3.0 / 255));
    setUserDataPath(&scene.shape, test::shapeFile("<line x2='100'/>").c_str()); // flat
    EXPECT_EQ(render(scene).result, 0);
}

TEST(Render, aStillFrameUnderBlurIsTheUnblurredFrame) {
    for (const RasterFormat format : test::RENDERED_FORMATS) {
        Scene scene = busyScene();
        scene.format = format;
        scene.set(PARAM_ROTATION_Y, 30).set(PARAM_END, 80);
        const Frame blurred = render(scene);
        scene.set(PARAM_MOTION_BLUR, 0);
        EXPECT_TRUE(test::samePicture(blurred.picture(), render(scene).picture(), 0.0));
    }
}

TEST(Render, opacityUnderBlurIsThatOfTheLastSample) {
    Scene scene = stroke(test::CIRCLE).set(PARAM_MOTION_BLUR, 1).set(PARAM_LEVELS, 4);
    scene.format = RF_RGBA32F;
    scene.animate(PARAM_OPACITY, {0}, {400});
    EXPECT_NEAR(test::alphaAt(render(scene).picture(), 44, 24), 0.3, 1e-6);
}

TEST(Render, formatsAndRowLayoutsAgree) {
    Scene scene = busyScene();
    scene.set(PARAM_LOW_ALPHA_SAT_BOOST, 0); // its cut at one percent of saturation amplifies
    const auto rendered = [&](RasterFormat format) {
        scene.format = format;
        return render(scene);
    };
    const Frame reference = rendered(RF_RGBA32F);
    const std::pair<RasterFormat, RasterFormat> pairs[] = {
        {RF_ARGB8, RF_RGBA8}, {RF_ARGB16, RF_RGBA16}, {RF_ARGB32F, RF_RGBA32F}};
    for (const auto& [first, second] : pairs) {
        scene.layout = {0, false};
        const Frame alphaFirst = rendered(first);
        scene.layout = {48, true};
        EXPECT_TRUE(test::samePicture(rendered(second).picture(), alphaFirst.picture(), 0.0));
        EXPECT_TRUE(test::samePicture(alphaFirst.picture(), reference.picture(),
                                      first == RF_ARGB8 ? 8.0 / 255 : 4e-4));
    }
}

TEST(Render, aHostThatCompositesItselfGetsTheLayerForNormal) {
    Scene scene = stroke(test::CIRCLE).set(PARAM_OPACITY, 40);
    const Frame layer = render(scene);
    scene.settings.ignoreNormalComposite = true;
    EXPECT_TRUE(test::samePicture(render(scene.set(PARAM_TRANSFER_MODE, 1)).picture(),
                                  layer.picture(), 0.0));
    const Frame added = render(scene.set(PARAM_TRANSFER_MODE, 2));
    EXPECT_GT(test::alphaAt(added.picture(), 1, 1), 0.9); // every other mode needs the input
}

TEST(Render, modesOutsideTheMenuKeepTheStrokeLayer) {
    const Frame layer = render(stroke(test::CIRCLE));
    for (const double mode : {-5.0, 18.0, 1e9, -1e300}) {
        const Frame odd = render(stroke(test::CIRCLE).set(PARAM_TRANSFER_MODE, mode));
        EXPECT_EQ(odd.result, 0) << mode;
        EXPECT_TRUE(test::samePicture(odd.picture(), layer.picture(), 0.0)) << mode;
    }
}

TEST(Render, layoutsThatAreNotRenderedAreLeftAlone) {
    for (int code = -1; code <= 21; ++code) {
        if (bytesPerPixel(static_cast<RasterFormat>(code)) != 0) {
            continue;
        }
        Scene scene = stroke(test::CIRCLE);
        Frame frame(scene);
        RasterInfo output = frame.output.info();
        output.pixelFormat = static_cast<RasterFormat>(code);
        PluginHost_MEMORY_Impl host(frame.input.info(), output, &scene.parameters, {});
        EXPECT_EQ(Render(&host), 1) << code;
        EXPECT_EQ(test::alphaSum(frame.picture()), 0.0);
    }
}

} // namespace
} // namespace orbel
