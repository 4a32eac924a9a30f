#include "host/AlphaHandling.h"

#include "pixel/ColourOps.h"
#include "pixel/TraitsByFormat.h"
#include "render/RenderDispatch.h"
#include "tests/support/AccelerationSettings.h"
#include "tests/support/Scene.h"

#include <gtest/gtest.h>

namespace orbel {
namespace {

using test::Frame;
using test::Scene;

enum class Pass { None, Premultiply, Unpremultiply, MakeOpaque };

void apply(Pass pass, const RasterInfo& picture) {
    ParameterStore parameters;
    PluginHost_MEMORY_Impl host({}, {}, &parameters, {});
    PluginRaster_MEMORY_Impl raster(picture);
    withTraits(picture.pixelFormat, [&](auto traits) {
        using P = decltype(traits);
        using Types = PixelTypes<P>;
        const auto call = [&](auto* operation) { operation(traits, &host, &raster); };
        switch (pass) {
        case Pass::Premultiply:
            return call(&Premult<P, typename Types::Component, typename Types::Wide,
                                 typename Types::Float, typename Types::Format>);
        case Pass::Unpremultiply:
            return call(&UnPremult<P, typename Types::Component, typename Types::Wide,
                                   typename Types::Float, typename Types::Format>);
        case Pass::MakeOpaque:
            return call(&AVXSetAlpha<P, typename Types::Component, typename Types::Wide,
                                     typename Types::Float, typename Types::Format>);
        case Pass::None:
            break;
        }
    });
}

/// Renders a picture that went through a pass first, under a host that carries alpha as told.
Frame rendered(Scene scene, Pass preparation, AlphaHandling alpha) {
    scene.settings.alpha = alpha;
    Frame frame(scene);
    apply(preparation, frame.input.info());
    test::PlainHost host(&scene, frame);
    frame.result = Render(&host);
    EXPECT_EQ(frame.result, 0);
    return frame;
}

/// Every way to come to the end of a frame: drawn over the picture, drawn alone, nothing drawn.
std::vector<Scene> scenes() {
    std::vector<Scene> all;
    for (const RasterFormat format : test::RENDERED_FORMATS) {
        for (const double end : {100.0, 0.0}) {
            for (const double mode : {0.0, 1.0, 3.0}) {
                Scene& scene = all.emplace_back(test::OPEN_CURVE);
                scene.set(PARAM_THICKNESS, 4).set(PARAM_FEATHER, 60).set(PARAM_OPACITY, 70);
                scene.set(PARAM_END, end).set(PARAM_TRANSFER_MODE, mode);
                scene.parameters.set(PARAM_COLOR, {0.9, 0.3, 0.55});
                scene.format = format;
            }
        }
    }
    return all;
}

// A straight picture saves exactly the pass that a premultiplied one needs, on either side.
TEST(AlphaHandling, eachStateCostsItsOwnPassAndNoOther) {
    for (const Scene& scene : scenes()) {
        const AlphaHandling straightIn{SourceAlpha::Straight, OutputAlpha::Premultiplied};
        const AlphaHandling straightBoth{SourceAlpha::Straight, OutputAlpha::Straight};
        const AlphaHandling opaque{SourceAlpha::Opaque, OutputAlpha::Straight};

        const Frame usual = rendered(scene, Pass::None, {});
        const Frame spared = rendered(scene, Pass::Unpremultiply, straightIn);
        EXPECT_TRUE(test::samePicture(spared.picture(), usual.picture(), 0.0));

        const Frame straight = rendered(scene, Pass::Unpremultiply, straightBoth);
        apply(Pass::Premultiply, straight.picture());
        EXPECT_TRUE(test::samePicture(straight.picture(), usual.picture(), 0.0));

        const Frame flat = rendered(scene, Pass::None, opaque);
        const Frame set = rendered(scene, Pass::MakeOpaque, straightBoth);
        EXPECT_TRUE(test::samePicture(flat.picture(), set.picture(), 0.0));
    }
}

TEST(AlphaHandling, aStraightPictureUnderNothingDrawnComesThroughUntouched) {
    for (Scene scene : scenes()) {
        scene.set(PARAM_END, 0).set(PARAM_TRANSFER_MODE, 1);
        const AlphaHandling straight{SourceAlpha::Straight, OutputAlpha::Straight};
        const Frame frame = rendered(scene, Pass::None, straight);
        const Frame before(scene);
        EXPECT_TRUE(test::samePicture(frame.picture(), before.input.info(), 0.0));
        EXPECT_TRUE(test::samePicture(frame.input.info(), before.input.info(), 0.0));
    }
}

// Whoever drops the alpha of a straight layer must not see the stroke's colour all over.
TEST(AlphaHandling, aStraightPictureHidesNoColourButWhatItCameWith) {
    const test::AccelerationSettings settings;
    for (const int level : {0, settings.level()}) {
        setAccelerationLevel(level);
        for (Scene& scene : scenes()) {
            scene.settings.alpha = {SourceAlpha::Straight, OutputAlpha::Straight};
            const Frame frame(scene);
            test::setPixel(frame.input.info(), scene.width - 1, 0, {0.6, 0.2, 0.4, 0.0});
            test::PlainHost host(&scene, frame);
            ASSERT_EQ(Render(&host), 0);
            ParameterValue mode{};
            scene.parameters.evaluate(PARAM_TRANSFER_MODE, 0, mode);
            for (int i = 0; i < scene.width * scene.height; ++i) {
                const int x = i % scene.width;
                const int y = i / scene.width;
                const test::Rgba came = test::pixelAt(frame.input.info(), x, y);
                const test::Rgba pixel = test::pixelAt(frame.picture(), x, y);
                const bool kept = mode[0] > 0.0 && came[3] == 0.0;
                if (pixel[3] == 0.0) {
                    ASSERT_EQ(pixel, kept ? came : test::Rgba{}) << x << "," << y;
                }
            }
        }
    }
}

} // namespace
} // namespace orbel
