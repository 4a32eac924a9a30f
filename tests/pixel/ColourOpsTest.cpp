#include "pixel/ColourOps.h"

#include "tests/pixel/PixelTestSupport.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <type_traits>
#include <utility>

namespace orbel::test {
namespace {

using Bytes = Components<unsigned char>;
using Words = Components<unsigned short>;
using Floats = Components<float>;

/// The passes for one trait, with the other template arguments filled in.
template<typename P>
struct Ops {
    using T = typename P::Component;
    using W = typename P::Wide;
    using F = typename P::Float;
    using O = typename P::FORMAT;
    using Pass = std::function<int(PluginHost_API*, PluginRaster_API*)>;

    static int premult(PluginHost_API* host, PluginRaster_API* raster) {
        return Premult<P, T, W, F, O>(P{}, host, raster);
    }
    static int unPremult(PluginHost_API* host, PluginRaster_API* raster) {
        return UnPremult<P, T, W, F, O>(P{}, host, raster);
    }
    static Pass multiplyAlpha(float amount) {
        return [amount](PluginHost_API* host, PluginRaster_API* raster) {
            return MultiplyAlpha<P, T, W, F, O>(P{}, host, amount, raster);
        };
    }
    static int setAlpha(PluginHost_API* host, PluginRaster_API* raster) {
        return AVXSetAlpha<P, T, W, F, O>(P{}, host, raster);
    }
    static Pass unsetAlpha(PluginRaster_API* second) {
        return [second](PluginHost_API* host, PluginRaster_API* raster) {
            return AVXUnsetAlpha<P, T, W, F, O>(P{}, host, raster, second);
        };
    }
    static Pass fill(const std::array<double, 4>& colour) {
        return [colour](PluginHost_API* host, PluginRaster_API* raster) {
            return FillColor<P, T, W, F, O>(P{}, host, colour.data(), raster);
        };
    }
    static Pass modulate(double value, double hueTurns, double saturation) {
        return [=](PluginHost_API* host, PluginRaster_API* raster) {
            return HSLModulate<P, T, W, F, O>(P{}, host, raster, value, hueTurns, saturation);
        };
    }

    static Components<T> onPixel(const Pass& pass, const Components<T>& pixel) {
        RasterHost host;
        PixelImage<P> image(1, 1, {0, false});
        image.set(0, 0, pixel);
        EXPECT_EQ(pass(host.get(), image.raster()), 0);
        return image.get(0, 0);
    }
};

TEST(Premult, KnownAnswers) {
    EXPECT_EQ(Ops<PIXEL_ARGB8>::onPixel(Ops<PIXEL_ARGB8>::premult, {255, 128, 1, 255}),
              (Bytes{254, 128, 1, 255}));
    EXPECT_EQ(Ops<PIXEL_RGBA16>::onPixel(Ops<PIXEL_RGBA16>::premult, {65535, 32768, 3, 32767}),
              (Words{32767, 16383, 1, 32767}));
    EXPECT_EQ(Ops<PIXEL_RGBA32>::onPixel(Ops<PIXEL_RGBA32>::premult, {2, -1, 0.5F, 0.5F}),
              (Floats{1, -0.5F, 0.25F, 0.5F}));
}

TEST(UnPremult, KnownAnswers) {
    using Eight = Ops<PIXEL_ARGB8>;
    EXPECT_EQ(Eight::onPixel(Eight::unPremult, {100, 200, 0, 128}), (Bytes{199, 255, 0, 128}));
    EXPECT_EQ(Eight::onPixel(Eight::unPremult, {9, 8, 7, 0}), (Bytes{9, 8, 7, 0}));
    EXPECT_EQ(Ops<PIXEL_ARGB16>::onPixel(Ops<PIXEL_ARGB16>::unPremult, {100, 300, 65535, 200}),
              (Words{32767, 65535, 65535, 200}));
    using Floating = Ops<PIXEL_ARGB32>;
    EXPECT_EQ(Floating::onPixel(Floating::unPremult, {1, -1, 3, 0.5F}), (Floats{2, -2, 6, 0.5F}));
    EXPECT_EQ(Floating::onPixel(Floating::unPremult, {1, 2, 3, -0.5F}), (Floats{1, 2, 3, -0.5F}));
}

TEST(UnPremult, EightBitsAreTheIntegerQuotientForEveryPair) {
    RasterHost host;
    PixelImage<PIXEL_RGBA8> image(256, 256, {0, false});
    for (int alpha = 0; alpha < 256; ++alpha) {
        for (int c = 0; c < 256; ++c) {
            const auto byte = static_cast<unsigned char>(c);
            image.set(c, alpha, {byte, byte, byte, static_cast<unsigned char>(alpha)});
        }
    }
    Ops<PIXEL_RGBA8>::unPremult(host.get(), image.raster());
    for (int alpha = 0; alpha < 256; ++alpha) {
        for (int c = 0; c < 256; ++c) {
            const int expected = alpha == 0 ? c : std::min(255, c * 255 / alpha);
            ASSERT_EQ(image.get(c, alpha)[0], expected) << c << " / " << alpha;
        }
    }
}

TEST(MultiplyAlpha, KnownAnswers) {
    using Eight = Ops<PIXEL_RGBA8>;
    EXPECT_EQ(Eight::onPixel(Eight::multiplyAlpha(0.5F), {1, 2, 3, 255}), (Bytes{1, 2, 3, 127}));
    EXPECT_EQ(Ops<PIXEL_ARGB16>::onPixel(Ops<PIXEL_ARGB16>::multiplyAlpha(0.5F), {1, 2, 3, 65535}),
              (Words{1, 2, 3, 32767}));
    using Floating = Ops<PIXEL_RGBA32>;
    EXPECT_EQ(Floating::onPixel(Floating::multiplyAlpha(1.5F), {1, 2, 3, 1}),
              (Floats{1, 2, 3, 1.5F}));
}

TEST(FillColor, TruncatesWithoutAClamp) {
    using Eight = Ops<PIXEL_ARGB8>;
    EXPECT_EQ(Eight::onPixel(Eight::fill({0.999, 0.5, 1.5, 1.0}), {}),
              (Bytes{254, 127, 382 - 256, 255}));
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(Eight::onPixel(Eight::fill({nan, 1e300, -1e300, nan}), {}), (Bytes{}));
    EXPECT_EQ(Ops<PIXEL_RGBA16>::onPixel(Ops<PIXEL_RGBA16>::fill({1.0, 0.5, 0.25, 0.0}), {}),
              (Words{65535, 32767, 16383, 0}));
    EXPECT_EQ(Ops<PIXEL_RGBA32>::onPixel(Ops<PIXEL_RGBA32>::fill({1.5, -0.5, 0.25, 0.0}), {}),
              (Floats{1.5F, -0.5F, 0.25F, 0}));
}

TEST(AVXUnsetAlpha, CoversTheSecondRasterInBoth) {
    using P = PIXEL_ARGB8;
    RasterHost host;
    PixelImage<P> first(4, 3, {8, false});
    PixelImage<P> second(3, 2, {0, true});
    Ops<P>::setAlpha(host.get(), first.raster());
    Ops<P>::setAlpha(host.get(), second.raster());
    Ops<P>::unsetAlpha(second.raster())(host.get(), first.raster());
    for (int y = 0; y < 3; ++y) {
        for (int x = 0; x < 4; ++x) {
            EXPECT_EQ(first.get(x, y)[3], x < 3 && y < 2 ? 0 : 255);
        }
    }
    for (const Bytes& pixel : second.pixels()) {
        EXPECT_EQ(pixel[3], 0);
    }
    EXPECT_EQ(Ops<P>::unsetAlpha(nullptr)(host.get(), first.raster()), 0);
    EXPECT_EQ(first.get(3, 2)[3], 0);
}

TEST(AVXUnsetAlpha, SecondLargerThanFirstStaysInside) {
    using P = PIXEL_RGBA32;
    RasterHost host;
    PixelImage<P> first(2, 2, {16, false});
    PixelImage<P> second(5, 5, {0, false});
    Ops<P>::unsetAlpha(second.raster())(host.get(), first.raster());
    EXPECT_TRUE(first.guardsIntact());
}

struct Modulation {
    std::array<double, 3> amounts; ///< low alpha value, low alpha hue turns, high alpha saturation
    Bytes before;
    Bytes after;
};

TEST(HSLModulate, KnownAnswers) {
    const std::vector<Modulation> table{
        {{0, 0, 0}, {12, 34, 56, 78}, {12, 34, 56, 78}},
        // The wheel is mirrored: red turned by a third becomes blue, by two thirds green.
        {{0, 1.0 / 3, 0}, {255, 0, 0, 0}, {0, 0, 255, 0}},
        {{0, 2.0 / 3, 0}, {255, 0, 0, 0}, {0, 255, 0, 0}},
        // An opaque pixel keeps its hue.
        {{0, 1.0 / 3, 0}, {255, 0, 0, 255}, {255, 0, 0, 255}},
        // A saturation above one percent becomes full saturation.
        {{0, 0, 0.001}, {255, 128, 128, 255}, {255, 0, 0, 255}},
        {{0, 0, 0.5}, {128, 128, 128, 255}, {128, 64, 64, 255}},
        {{0.5, 0, 0}, {0, 0, 0, 0}, {127, 127, 127, 0}},
        {{9.0, 0, 0}, {10, 10, 10, 0}, {255, 255, 255, 0}},
        // A negative hue writes the pixel's own colour again.
        {{0, -1.0 / 3, 0}, {255, 0, 128, 0}, {255, 0, 128, 0}},
        // The value has no lower limit: -127 keeps its low bits.
        {{-0.5, 0, 0}, {0, 0, 0, 0}, {129, 129, 129, 0}},
    };
    for (const Modulation& m : table) {
        SCOPED_TRACE(testing::PrintToString(m.amounts) + testing::PrintToString(m.before));
        const auto& [value, hue, saturation] = m.amounts;
        using Argb = Ops<PIXEL_ARGB8>;
        using Rgba = Ops<PIXEL_RGBA8>;
        EXPECT_EQ(Argb::onPixel(Argb::modulate(value, hue, saturation), m.before), m.after);
        EXPECT_EQ(Rgba::onPixel(Rgba::modulate(value, hue, saturation), m.before), m.after);
    }
}

TEST(HSLModulate, HueIsWholeDegreesAndTurnsRoundOnce) {
    using P = Ops<PIXEL_RGBA32>;
    const Floats red{1, 0, 0, 0};
    EXPECT_EQ(P::onPixel(P::modulate(0, 10.9 / 360, 0), red),
              P::onPixel(P::modulate(0, 10.2 / 360, 0), red));
    EXPECT_EQ(P::onPixel(P::modulate(0, 3 + 90.5 / 360, 0), red),
              P::onPixel(P::modulate(0, 90.5 / 360, 0), red));
    EXPECT_EQ(P::onPixel(P::modulate(0, 1e30, 0), red), red);
}

template<typename P>
class ColourOps : public testing::Test {
protected:
    using Pixels = std::vector<Components<typename P::Component>>;
    using Pass = typename Ops<P>::Pass;

    static std::vector<std::pair<const char*, Pass>> passes() {
        return {{"premult", Ops<P>::premult},
                {"unPremult", Ops<P>::unPremult},
                {"multiplyAlpha", Ops<P>::multiplyAlpha(0.7F)},
                {"setAlpha", Ops<P>::setAlpha},
                {"unsetAlpha", Ops<P>::unsetAlpha(nullptr)},
                {"fill", Ops<P>::fill({0.1, 0.2, 0.3, 0.4})},
                {"modulate", Ops<P>::modulate(0.2, 0.3, 0.4)},
                {"modulate down", Ops<P>::modulate(-0.2, -0.3, -0.4)}};
    }
    Pixels run(const Pass& pass, const Pixels& pixels, const RowLayout& layout) {
        PixelImage<P> image(37, static_cast<int>(pixels.size() / 37), layout);
        image.fillFrom(pixels);
        EXPECT_EQ(pass(m_host.get(), image.raster()), 0);
        EXPECT_TRUE(image.guardsIntact());
        return image.pixels();
    }

    RasterHost m_host;
};
TYPED_TEST_SUITE(ColourOps, AllPixelFormats);

TYPED_TEST(ColourOps, SamePixelsInEveryRowLayout) {
    using P = TypeParam;
    const auto pixels = randomPixels<P>(37 * 11, 1);
    for (const auto& [name, pass] : this->passes()) {
        SCOPED_TRACE(name);
        const auto plain = this->run(pass, pixels, {0, false});
        for (const RowLayout& layout : rowLayouts) {
            EXPECT_EQ(this->run(pass, pixels, layout), plain);
        }
    }
}

TYPED_TEST(ColourOps, ChannelOrderMakesNoDifference) {
    using P = TypeParam;
    using Twin = std::conditional_t<
        P::is32Bit(), PIXEL_RGBA32,
        std::conditional_t<sizeof(typename P::Component) == 2, PIXEL_RGBA16, PIXEL_RGBA8>>;
    const auto pixels = randomPixels<P>(37 * 11, 2);
    const auto twins = Ops<Twin>::modulate(0.2, 0.3, 0.4);
    PixelImage<Twin> image(37, 11, {0, false});
    image.fillFrom(pixels);
    twins(this->m_host.get(), image.raster());
    Ops<Twin>::premult(this->m_host.get(), image.raster());
    const auto both = [](PluginHost_API* host, PluginRaster_API* raster) {
        return Ops<P>::modulate(0.2, 0.3, 0.4)(host, raster) + Ops<P>::premult(host, raster);
    };
    EXPECT_EQ(this->run(both, pixels, {0, false}), image.pixels());
}

} // namespace
} // namespace orbel::test
