#include "render/StrokeRasteriserImpl.h"

#include "pixel/TraitsByFormat.h"
#include "tests/support/Pictures.h"
#include "tests/support/TestHosts.h"

#include <gtest/gtest.h>

#include <cmath>

namespace orbel {
namespace {

using test::GuardedImage;
using test::Rgba;

constexpr int WIDTH = 41;
constexpr int HEIGHT = 31;

struct Dab {
    double radius;
    double x;
    double y;
    double feather;
    double intensity;
};

void stamp(const RasterInfo& raster, const Dab& dab) {
    test::BareHost host;
    withTraits(raster.pixelFormat, [&](auto traits) {
        using P = decltype(traits);
        using Types = PixelTypes<P>;
        HQDrawSphere<P, typename Types::Component, typename Types::Wide, typename Types::Float,
                     typename P::FORMAT>(traits, &host, raster.data, raster.rowBytes,
                                         raster.bytesPerPixel, raster.width, raster.height,
                                         dab.radius, dab.x, dab.y, dab.feather, dab.intensity);
    });
}

/// A picture of one colour at one alpha, after one stamp.
GuardedImage stamped(RasterFormat format, double alpha, const Dab& dab) {
    GuardedImage image(WIDTH, HEIGHT, format, {16, true});
    test::paint(image.info(), [alpha](int, int) { return Rgba{0.2, 0.4, 0.6, alpha}; });
    stamp(image.info(), dab);
    EXPECT_TRUE(image.guardsIntact());
    return image;
}

TEST(Stamp, hasItsProfileInEveryFormat) {
    struct Row {
        Dab dab;
        int dx;
        double cover;
    };
    const double s = 0.8; // (1.5 - 0.7) / (1.5 - 0.5)
    const Row rows[] = {
        {{10, 20, 15, 0, 255}, 0, 1.0},
        {{10, 20, 15, 0, 255}, 7, 1.0},
        {{10, 20, 15, 0, 255}, 9, 0.5},
        {{10, 20, 15, 0, 255}, -9, 0.5},
        {{10, 20, 15, 0, 255}, 11, 0.0},
        {{10, 20, 15, 0, 102}, 0, 0.4},
        {{9.5, 20, 15, 1, 255}, 0, 1.0},
        {{9.5, 20, 15, 1, 255}, 5, 0.5},
        {{9.5, 20, 15, 0.3, 255}, 7, 0.5}, // 10 - 3 - 3 = 4 inside, 7 half way
        {{1, 20, 15, 0, 255}, 0, 0.5},     // half a brush of two pixels
        {{1, 20.7, 15, 0, 255}, 0, 0.5 * (3 - 2 * s) * s * s},
        {{0.5, 20, 15, 0, 255}, 0, 0.25},
        {{0, 20, 15, 0, 255}, 0, 0.0},
        {{-3, 20, 15, 0, 255}, 0, 0.0},
    };
    for (const RasterFormat format : test::RENDERED_FORMATS) {
        const double unit = format <= RF_RGBA8 ? 255 : 65535;
        for (const Row& row : rows) {
            const GuardedImage image = stamped(format, 0.0, row.dab);
            EXPECT_NEAR(test::alphaAt(image.info(), 20 + row.dx, 15), row.cover, 0.51 / unit)
                << test::formatName(format) << " " << row.dab.radius << " " << row.dx;
        }
    }
}

TEST(Stamp, touchesNothingButAlpha) {
    for (const RasterFormat format : test::RENDERED_FORMATS) {
        const GuardedImage image = stamped(format, 0.2, {10, 20, 15, 0.5, 200});
        const GuardedImage before = stamped(format, 0.2, {0, 0, 0, 0, 0});
        for (int x = 0; x < WIDTH; ++x) {
            Rgba pixel = test::pixelAt(image.info(), x, 15);
            pixel[3] = test::alphaAt(before.info(), x, 15);
            EXPECT_EQ(pixel, test::pixelAt(before.info(), x, 15));
        }
    }
}

TEST(Stamp, addsUpLikeAScreenAndNeverPassesFull) {
    for (const RasterFormat format : test::RENDERED_FORMATS) {
        for (const double alpha : {0.0, 0.2, 0.6, 1.0}) {
            const GuardedImage image = stamped(format, alpha, {10, 20, 15, 0, 127.5});
            EXPECT_NEAR(test::alphaAt(image.info(), 20, 15), alpha + (1 - alpha) * 0.5, 1.0 / 255);
        }
        const GuardedImage image = stamped(format, 0.0, {10, 20, 15, 0, 128});
        for (int i = 0; i < 300; ++i) {
            stamp(image.info(), {10, 20, 15, 0, 128});
        }
        EXPECT_EQ(test::alphaAt(image.info(), 20, 15), 1.0) << test::formatName(format);
        stamp(image.info(), {10, 20, 15, 0, 128}); // full pixels stay full
        EXPECT_EQ(test::alphaAt(image.info(), 20, 15), 1.0);
    }
}

TEST(Stamp, isCutAtTheBorders) {
    struct Row {
        Dab dab;
        int touched; // pixels
    };
    const Row rows[] = {
        {{1e6, 20, 15, 0, 255}, WIDTH * HEIGHT},
        {{1e300, 20, 15, 0, 255}, WIDTH * HEIGHT},
        {{40000, -39990, 15, 0, 255}, 11 * HEIGHT},
        {{10, -50, 15, 0, 255}, 0},
        {{10, 20, 1e9, 0, 255}, 0},
        {{10, 1e300, -1e300, 0, 255}, 0},
        {{3, -3.2, 15, 0, 255}, 0}, // a box of one column counts as none
        {{3, 20, -3.2, 0, 255}, 0}, // and so does one of one row
        {{10, 20, 15, 0, 0}, 0},
    };
    for (const RasterFormat format : {RF_ARGB8, RF_RGBA32F}) {
        for (const Row& row : rows) {
            const GuardedImage image = stamped(format, 0.0, row.dab);
            int touched = 0;
            for (int i = 0; i < WIDTH * HEIGHT; ++i) {
                touched += test::alphaAt(image.info(), i % WIDTH, i / WIDTH) > 0.0 ? 1 : 0;
            }
            EXPECT_EQ(touched, row.touched) << row.dab.radius << " " << row.dab.x;
        }
    }
}

TEST(Stamp, hostileNumbersDoNoHarm) {
    const double hostile[] = {std::nan(""), HUGE_VAL, -HUGE_VAL, 1e300, -1e300};
    for (const RasterFormat format : test::RENDERED_FORMATS) {
        for (const double value : hostile) {
            stamped(format, 0.5, {value, 20, 15, 0, 255});
            stamped(format, 0.5, {10, value, 15, 0, 255});
            stamped(format, 0.5, {10, 20, value, 0, 255});
            stamped(format, 0.5, {10, 20, 15, value, 255});
            stamped(format, 0.5, {10, 20, 15, 0, value});
        }
        const GuardedImage image = stamped(format, 0.0, {std::nan(""), 20, 15, 0, 255});
        EXPECT_EQ(test::alphaSum(image.info()), 0.0);
    }
}

} // namespace
} // namespace orbel
