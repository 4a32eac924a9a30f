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

TEST(Render, noneLeavesTheStrokeAlonePremultiplied) {
    Scene scene = stroke(test::CIRCLE);
    scene.parameters.set(PARAM_COLOR, {1.0, 0.5, 0.25});
    for (const RasterFormat format : test::RENDERED_FORMATS) {
        scene.format = format;
        const Frame frame = render(scene);
        EXPECT_EQ(frame.result, 0);
        EXPECT_EQ(test::pixelAt(frame.picture(), 32, 24), (Rgba{})); // inside the circle
        const Rgba on = test::pixelAt(frame.picture(), 44, 24);      // on it
        EXPECT_NEAR(on[3], 1.0, 0.0);
        EXPECT_NEAR(on[0], 1.0, 1.01 / 255);
        EXPECT_NEAR(on[1], 0.5, 1.01 / 255);
        EXPECT_NEAR(on[2], 0.25, 1.01 / 255);
    }
}

TEST(Render, normalLaysTheStrokeOverTheInputAsOpacitySays) {
    for (const double opacity : {100.0, 25.0}) {
        Scene scene = stroke(test::CIRCLE).set(PARAM_TRANSFER_MODE, MODE_NORMAL);
        scene.set(PARAM_OPACITY, opacity).parameters.set(PARAM_COLOR, {1.0, 0.5, 0.25});
        scene.format = RF_RGBA32F;
        const Frame frame = render(scene);
        const Frame before(scene);
        for (const auto& [x, y] : {std::pair{0, 0}, {32, 24}, {63, 47}, {44, 24}}) {
            const double cover = x == 44 ? opacity / 100 : 0.0;
            const Rgba input = test::pixelAt(before.input.info(), x, y);
            const Rgba actual = test::pixelAt(frame.picture(), x, y);
            const Rgba colour{1.0, 0.5, 0.25, 1.0};
            for (std::size_t i = 0; i < 4; ++i) {
                EXPECT_NEAR(actual[i], input[i] * (1 - cover) + colour[i] * cover, 1e-6);
            }
        }
    }
}

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

TEST(Render, blurAveragesTheSharpFramesOfItsSamples) {
    Scene scene = stroke(test::CIRCLE);
    scene.format = RF_RGBA32F;
    scene.animate(PARAM_POSITION_XY, {0.3, 0.5}, {0.8, 0.5});
    scene.set(PARAM_MOTION_BLUR, 1).set(PARAM_LEVELS, 4);
    const Frame blurred = render(scene);
    scene.set(PARAM_MOTION_BLUR, 0);
    std::vector<Frame> samples;
    for (int i = 0; i < 4; ++i) {
        scene.settings.frame = 0.25 * i;
        samples.push_back(render(scene));
    }
    for (int y = 0; y < scene.height; ++y) {
        for (int x = 0; x < scene.width; ++x) {
            double mean = 0.0;
            for (const Frame& sample : samples) {
                mean += 0.25 * test::alphaAt(sample.picture(), x, y);
            }
            ASSERT_NEAR(test::alphaAt(blurred.picture(), x, y), mean, 1e-6) << x << " " << y;
        }
    }
}

TEST(Render, opacityUnderBlurIsThatOfTheLastSample) {
    Scene scene = stroke(test::CIRCLE).set(PARAM_MOTION_BLUR, 1).set(PARAM_LEVELS, 4);
    scene.format = RF_RGBA32F;
    scene.animate(PARAM_OPACITY, {0}, {400});
    EXPECT_NEAR(test::alphaAt(render(scene).picture(), 44, 24), 0.3, 1e-6);
}

TEST(Render, halfScaleIsAShrunkenPicture) {
    Scene full = busyScene();
    full.width = 128;
    full.height = 96;
    full.format = RF_RGBA32F;
    full.set(PARAM_THICKNESS, 8).set(PARAM_TRANSFER_MODE, 0);
    Scene half = full;
    half.width = 64;
    half.height = 48;
    half.settings.renderScaleX = half.settings.renderScaleY = 0.5;
    const Frame large = render(full);
    const Frame small = render(half);
    double difference = 0.0;
    for (int y = 1; y < 47; ++y) {
        for (int x = 1; x < 63; ++x) {
            double mean = 0.0; // pixel centres are whole numbers: (2x, 2y) is under (x, y)
            for (int i = 0; i < 9; ++i) {
                mean += test::alphaAt(large.picture(), 2 * x - 1 + i % 3, 2 * y - 1 + i / 3) / 9;
            }
            difference += std::fabs(mean - test::alphaAt(small.picture(), x, y));
        }
    }
    EXPECT_GT(test::alphaSum(small.picture()), 100.0);
    EXPECT_LT(difference / test::alphaSum(small.picture()), 0.08); // soft edges keep their width
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

TEST(Render, pixelAspectAndScaleStretchTheShape) {
    const Scene scene = stroke(test::CIRCLE);
    const Frame stretched = render(stroke(test::CIRCLE).set(PARAM_SCALE_X, 1.5));
    EXPECT_GT(test::alphaAt(stretched.picture(), 50, 24), 0.9);
    for (const float aspect : {1.0F, 2.0F}) {
        Scene copy = scene;
        Frame frame(copy);
        RasterInfo output = frame.output.info();
        output.pixelAspect = aspect;
        PluginHost_MEMORY_Impl host(frame.input.info(), output, &copy.parameters, copy.settings);
        host.setUserData(&copy.shape);
        EXPECT_EQ(Render(&host), 0);
        // The circle's right side: 12 pixels from the middle, or 6.
        EXPECT_GT(test::alphaAt(frame.picture(), aspect == 1.0F ? 44 : 38, 24), 0.9);
        EXPECT_LT(test::alphaAt(frame.picture(), aspect == 1.0F ? 38 : 44, 24), 0.1);
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
