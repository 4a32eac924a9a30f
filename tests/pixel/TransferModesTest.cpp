#include "pixel/TransferModes.h"

#include "tests/pixel/RowTestSupport.h"

#include <algorithm>
#include <cstring>
#include <tuple>
#include <utility>

namespace orbel::test {
namespace {

using Bytes = Components<unsigned char>;
using Floats = Components<float>;

constexpr int behindMode = 1;
constexpr int inFrontMode = 2;

const std::vector<int> allModes{1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13,
                                14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 35};
const std::vector<int> emptyModes{0, 26, 27, 28, 29, 30, 31, 32, 33, 34, 36, 1000, -1, -2000000000};

struct Settings {
    int mode;
    double opacity1;
    double opacity2;
    bool opaqueOut;
};

template<typename P>
using Pixels = std::vector<Components<typename P::Component>>;

/// Calls with the five arguments that name a format.
template<typename P, typename Call>
int withFormat(const Call& call) {
    return call(P{}, typename P::Component{}, typename P::Wide{}, typename P::Float{},
                typename P::FORMAT{});
}

template<typename P>
int composite(PluginHost_API* host, const Settings& s, PixelImage<P>& first, PixelImage<P>& second,
              PixelImage<P>& out) {
    return withFormat<P>([&](auto... format) {
        return TransferComposite(format..., host, s.mode, s.opacity1, s.opacity2, first.raster(),
                                 second.raster(), out.raster(), false, s.opaqueOut, false);
    });
}

template<typename P, template<typename, typename, typename, typename, typename> class Functor>
int blend(PluginHost_API* host, const Settings& s, PixelImage<P>& first, PixelImage<P>& second,
          PixelImage<P>& out) {
    return withFormat<P>([&]<typename... Format>(Format... format) {
        return Blend(format..., Functor<Format...>{}, host, static_cast<float>(s.opacity1),
                     static_cast<float>(s.opacity2), first.raster(), second.raster(), out.raster(),
                     false, s.opaqueOut);
    });
}

template<typename P>
int blendBehind(PluginHost_API* host, const Settings& s, PixelImage<P>& first,
                PixelImage<P>& second, PixelImage<P>& out) {
    return withFormat<P>([&](auto... format) {
        return BlendBehind(format..., host, static_cast<float>(s.opacity1),
                           static_cast<float>(s.opacity2), first.raster(), second.raster(),
                           out.raster(), false, s.opaqueOut);
    });
}

template<typename P>
int fade(PluginHost_API* host, float amount, PixelImage<P>& from, PixelImage<P>& to) {
    return BlendImages<P, typename P::Component, typename P::Wide, typename P::Float,
                       typename P::FORMAT>(P{}, host, amount, from.raster(), to.raster());
}

/// What a way of combining gives for rows of pixels.
template<typename P, typename Combine>
Pixels<P> pixelsBy(const Combine& combine, const Settings& settings, const Pixels<P>& first,
                   const Pixels<P>& second) {
    RasterHost host;
    const auto width = static_cast<int>(first.size());
    PixelImage<P> front(width, 1, {0, false});
    PixelImage<P> behind(width, 1, {0, false});
    PixelImage<P> out(width, 1, {0, false});
    front.fillFrom(first);
    behind.fillFrom(second);
    EXPECT_EQ(combine(host.get(), settings, front, behind, out), 0);
    EXPECT_TRUE(out.guardsIntact());
    return out.pixels();
}

template<typename P>
Pixels<P> compositePixels(const Settings& settings, const Pixels<P>& first,
                          const Pixels<P>& second) {
    return pixelsBy<P>(&composite<P>, settings, first, second);
}

template<typename P>
Components<typename P::Component> compositePixel(const Settings& settings,
                                                 const Components<typename P::Component>& first,
                                                 const Components<typename P::Component>& second) {
    return compositePixels<P>(settings, {first}, {second}).front();
}

TEST(TransferComposite, KnownAnswersInBytes) {
    struct Case {
        int mode;
        Bytes first, second, out;
    };
    const std::vector<Case> table{
        // A transparent first leaves the second.
        {inFrontMode, {9, 9, 9, 0}, {10, 20, 30, 200}, {10, 20, 30, 200}},
        // Half over opaque.
        {inFrontMode, {200, 200, 200, 128}, {100, 100, 100, 255}, {150, 150, 150, 255}},
        // Over nothing the first keeps colour and alpha.
        {5, {40, 50, 60, 128}, {1, 2, 3, 0}, {40, 50, 60, 128}},
        {4, {255, 255, 255, 255}, {255, 255, 255, 255}, {255, 255, 255, 255}},
        {4, {100, 200, 0, 255}, {100, 100, 0, 255}, {200, 255, 0, 255}},
        {12, {100, 200, 0, 255}, {160, 100, 0, 255}, {60, 100, 0, 255}},
        // 255 x 255 is 254.
        {5, {255, 128, 0, 255}, {255, 128, 77, 255}, {254, 64, 0, 255}},
        {23, {255, 254, 0, 255}, {1, 200, 77, 255}, {255, 255, 77, 255}},
        {24, {0, 255, 128, 255}, {255, 100, 200, 255}, {0, 100, 146, 255}},
        {7, {100, 100, 100, 255}, {126, 127, 255, 255}, {98, 100, 255, 255}},
        {10, {10, 200, 30, 255}, {20, 100, 30, 255}, {10, 100, 30, 255}},
        {11, {10, 200, 30, 255}, {20, 100, 30, 255}, {20, 200, 30, 255}},
        {behindMode, {1, 2, 3, 100}, {10, 20, 30, 255}, {10, 20, 30, 255}},
        {behindMode, {1, 2, 3, 100}, {10, 20, 30, 0}, {1, 2, 3, 100}},
    };
    for (const Case& c : table) {
        SCOPED_TRACE(c.mode);
        const Settings settings{c.mode, 1.0, 1.0, false};
        EXPECT_EQ(compositePixel<PIXEL_ARGB8>(settings, c.first, c.second), c.out);
        EXPECT_EQ(compositePixel<PIXEL_RGBA8>(settings, c.first, c.second), c.out);
    }
}

TEST(TransferComposite, TransparentFirstScalesTheAlphaOfTheSecond) {
    EXPECT_EQ(compositePixel<PIXEL_RGBA8>({5, 1.0, 0.5, false}, {9, 9, 9, 0}, {10, 20, 30, 255}),
              (Bytes{10, 20, 30, 127}));
}

TEST(TransferComposite, NegativeFloatColoursCountAsNothing) {
    EXPECT_EQ(
        compositePixel<PIXEL_RGBA32>({4, 1.0, 1.0, false}, {-5, 0.25F, 1, 1}, {0.5F, -2, 1, 1}),
        (Floats{0.5F, 0.25F, 2, 1}));
    // Where the first is transparent the second is copied as it is.
    EXPECT_EQ(compositePixel<PIXEL_RGBA32>({4, 1.0, 1.0, false}, {-5, 1, 1, 0}, {0.5F, -2, 1, 1}),
              (Floats{0.5F, -2, 1, 1}));
}

TEST(TransferComposite, OnlySaturationAndColourLimitFloats) {
    const Floats second{0.2F, 0.6F, 0.4F, 1};
    const auto limitMatters = [&](int mode) {
        const Settings settings{mode, 1.0, 1.0, false};
        return compositePixel<PIXEL_ARGB32>(settings, {1.5F, 0.5F, 0.7F, 1}, second) !=
               compositePixel<PIXEL_ARGB32>(settings, {1, 0.5F, 0.7F, 1}, second);
    };
    EXPECT_FALSE(limitMatters(14));
    EXPECT_FALSE(limitMatters(15));
    EXPECT_TRUE(limitMatters(13));
    EXPECT_TRUE(limitMatters(16));
}

/// The threshold of overlay and hard light.
template<typename P, template<typename, typename, typename, typename, typename> class Functor>
double halfOf() {
    Functor<P, typename P::Component, typename P::Wide, typename P::Float, typename P::FORMAT> mode;
    mode.setup(P{}, 1.0F, 1.0F);
    return static_cast<double>(mode.half);
}

TEST(TransferFunctors, HalfIsWholeInIntegerFormats) {
    EXPECT_EQ((halfOf<PIXEL_ARGB8, BLEND_OVERLAY>()), 127.0);
    EXPECT_EQ((halfOf<PIXEL_ARGB16, BLEND_OVERLAY>()), 32767.0);
    EXPECT_EQ((halfOf<PIXEL_RGBA16, BLEND_HARDLIGHT>()), 32767.0);
    EXPECT_EQ((halfOf<PIXEL_RGBA32, BLEND_HARDLIGHT>()), 0.5);
}

class AfterEffectsHost final : public PluginHost_MEMORY_Impl {
public:
    explicit AfterEffectsHost(ParameterStore* parameters)
        : PluginHost_MEMORY_Impl({}, {}, parameters, {}) {}
    AEHost* getAEHost() override { return static_cast<AEHost*>(static_cast<void*>(&m_handle)); }
    int blend(int mode, double opacity1, double opacity2, PluginRaster_API* source,
              PluginRaster_API* destination) override {
        call = {mode, opacity1, opacity2, source, destination};
        return 42;
    }

    std::tuple<int, double, double, PluginRaster_API*, PluginRaster_API*> call;

private:
    int m_handle = 0;
};

TEST(TransferComposite, AeHostBlendsItselfUnlessForbidden) {
    ParameterStore parameters;
    AfterEffectsHost host(&parameters);
    PixelImage<PIXEL_ARGB8> image(1, 1, {0, false});
    image.set(0, 0, {100, 100, 100, 255});
    PluginRaster_API* const first = image.raster();
    PluginRaster_API* const second = image.raster();
    PluginRaster_API* const out = image.raster();
    const auto run = [&](bool ownBlend) {
        return TransferComposite<ORBEL_LAYER_ARGS(PIXEL_ARGB8)>(
            {}, 0, 0, 0, {}, &host, 5, 0.25, 0.75, first, second, out, false, false, ownBlend);
    };
    EXPECT_EQ(run(false), 42);
    EXPECT_EQ(host.call, std::make_tuple(5, 0.25, 0.75, second, out));
    EXPECT_EQ(image.get(0, 0), (Bytes{100, 100, 100, 255}));
    EXPECT_EQ(run(true), 0);
    EXPECT_NE(image.get(0, 0), (Bytes{100, 100, 100, 255}));
}

template<typename P>
class TransferModes : public testing::Test {};
TYPED_TEST_SUITE(TransferModes, AllPixelFormats);

/// One number for all components of the pixels, in their order (FNV-1a).
template<typename T>
std::uint64_t digest(std::uint64_t hash, const std::vector<Components<T>>& pixels) {
    for (const Components<T>& pixel : pixels) {
        std::array<unsigned char, sizeof pixel> bytes;
        std::memcpy(bytes.data(), pixel.data(), bytes.size());
        for (const unsigned char byte : bytes) {
            hash = (hash ^ byte) * 0x100000001b3U;
        }
    }
    return hash;
}

/// A way of combining and the codes that stand for it.
template<typename P>
struct ModeRow {
    std::vector<int> codes;
    decltype(&composite<P>) blend;
};

template<typename P>
std::vector<ModeRow<P>> modeRows() {
    return {
        {{1}, &blendBehind<P>},
        {{2}, &blend<P, BLEND_IN_FRONT>},
        {{3, 13}, &blend<P, BLEND_HUE>},
        {{4}, &blend<P, BLEND_PLUS>},
        {{5}, &blend<P, BLEND_MUTLIPLY>},
        {{6}, &blend<P, BLEND_SCREEN>},
        {{7}, &blend<P, BLEND_OVERLAY>},
        {{8}, &blend<P, BLEND_SOFTLIGHT>},
        {{9}, &blend<P, BLEND_HARDLIGHT>},
        {{10}, &blend<P, BLEND_DARKEN>},
        {{11}, &blend<P, BLEND_LIGHTEN>},
        {{12}, &blend<P, BLEND_DIFFERENCE>},
        {{14}, &blend<P, BLEND_SAT>},
        {{15}, &blend<P, BLEND_COLOR>},
        {{16}, &blend<P, BLEND_LUMA>},
        {{17, 18, 19, 20, 21, 22, 25}, &blend<P, BLEND_EXCLUSION>},
        {{23}, &blend<P, BLEND_COLORDODGE>},
        {{24}, &blend<P, BLEND_COLORBURN>},
        {{35}, &blend<P, BLEND_SCREEN_SPECIAL>},
    };
}

// What a code gives at any level is what its functor gives. As with the golden frames, every bit of
// every mode is meant to stay. The first two codes never make the output opaque.
TYPED_TEST(TransferModes, KeepEveryBitUnderEveryCode) {
    using P = TypeParam;
    const LevelGuard guard;
    const auto first = randomPixels<P>(600, 11);
    const auto second = randomPixels<P>(600, 12);
    const std::array<std::pair<double, double>, 3> opacities{{{1.0, 1.0}, {0.6, 1.0}, {0.9, 0.4}}};
    std::uint64_t hash = 0xcbf29ce484222325U;
    for (const auto& [codes, blend] : modeRows<P>()) {
        for (const auto& [opacity1, opacity2] : opacities) {
            for (const bool opaque : {false, true}) {
                const bool opaqueOut = opaque && codes.front() > inFrontMode;
                const auto expected =
                    pixelsBy<P>(blend, {0, opacity1, opacity2, opaqueOut}, first, second);
                hash = digest(hash, expected);
                for (const int code : codes) {
                    for (const int level : {0, bestAccelerationLevel()}) {
                        setAccelerationLevel(level);
                        const Settings settings{code, opacity1, opacity2, opaque};
                        EXPECT_EQ(compositePixels<P>(settings, first, second), expected)
                            << code << " at level " << level;
                    }
                }
            }
        }
    }
    // At 8, 16 and 32 bits, in any channel order.
    const std::array<std::uint64_t, 3> ofDepth{7549438273622393064U, 11931815852249039551U,
                                               2176364939805096142U};
    EXPECT_EQ(hash, ofDepth.at(sizeof(typename P::Component) / 2));
}

TYPED_TEST(TransferModes, BlendMakesAnyModeOpaqueWhenAsked) {
    using P = TypeParam;
    const auto first = randomPixels<P>(20, 18);
    for (const auto& [codes, blend] : modeRows<P>()) {
        for (const auto& pixel : pixelsBy<P>(blend, {0, 0.5, 0.5, true}, first, first)) {
            EXPECT_EQ(pixel[3], static_cast<typename P::Component>(P::MAX_VALUE()));
        }
    }
}

TYPED_TEST(TransferModes, NumbersWithoutAModeDoNothing) {
    using P = TypeParam;
    const auto first = randomPixels<P>(50, 13);
    for (const int mode : emptyModes) {
        const auto out = compositePixels<P>({mode, 1.0, 1.0, true}, first, first);
        EXPECT_EQ(out, Pixels<P>(50)) << mode;
    }
}

TYPED_TEST(TransferModes, OutputMayBeEitherInputInAnyRowLayout) {
    using P = TypeParam;
    const auto first = randomPixels<P>(35, 14);
    const auto second = randomPixels<P>(35, 15);
    RasterHost host;
    for (const int mode : allModes) {
        const Settings settings{mode, 0.8, 1.0, false};
        const auto expected = compositePixels<P>(settings, first, second);
        for (const RowLayout& layout : rowLayouts) {
            PixelImage<P> front(7, 5, layout);
            PixelImage<P> behind(7, 5, {16, !layout.bottomUp});
            for (PixelImage<P>* const out : {&front, &behind}) {
                front.fillFrom(first);
                behind.fillFrom(second);
                composite<P>(host.get(), settings, front, behind, *out);
                EXPECT_EQ(out->pixels(), expected) << mode;
                EXPECT_TRUE(front.guardsIntact() && behind.guardsIntact());
            }
        }
    }
}

TYPED_TEST(TransferModes, OnlyTheCommonAreaIsTouched) {
    using P = TypeParam;
    RasterHost host;
    PixelImage<P> first(3, 6, {0, false});
    PixelImage<P> second(8, 8, {16, true});
    PixelImage<P> out(5, 2, {0, false});
    for (const int mode : allModes) {
        composite<P>(host.get(), {mode, 1.0, 1.0, true}, first, second, out);
    }
    fade<P>(host.get(), 0.5F, second, out);
    fade<P>(host.get(), 1.0F, out, second);
    EXPECT_TRUE(out.guardsIntact());
    EXPECT_EQ(out.get(3, 0), (Components<typename P::Component>{}));
}

TYPED_TEST(TransferModes, BlendImagesMixesInSinglePrecision) {
    using P = TypeParam;
    using T = typename P::Component;
    RasterHost host;
    const auto from = randomPixels<P>(35, 16);
    const auto to = randomPixels<P>(35, 17);
    for (const RowLayout& layout : rowLayouts) {
        for (const float amount : {0.0F, 0.3F, 0.5F, 1.0F / 3, 1.0F}) {
            PixelImage<P> source(7, 5, layout);
            PixelImage<P> target(7, 5, {16, !layout.bottomUp});
            source.fillFrom(from);
            target.fillFrom(to);
            EXPECT_EQ(fade<P>(host.get(), amount, source, target), 0);
            EXPECT_TRUE(source.guardsIntact() && target.guardsIntact());
            Pixels<P> expected = to;
            for (std::size_t i = 0; i < expected.size(); ++i) {
                for (std::size_t c = 0; c < 4; ++c) {
                    const float a = from[i][c];
                    const float b = to[i][c];
                    expected[i][c] = static_cast<T>(a * amount + b * (1.0F - amount));
                }
            }
            EXPECT_EQ(target.pixels(), amount == 1.0F ? from : expected) << amount;
        }
    }
}

} // namespace
} // namespace orbel::test
