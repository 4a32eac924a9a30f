#include "pixel/TransferModes.h"

#include "pixel/ColourConversion.h"
#include "tests/pixel/PixelTestSupport.h"

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>

namespace orbel::test {
namespace {

using Bytes = Rgba<unsigned char>;
using Floats = Rgba<float>;

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
int composite(PluginHost_API* host, const Settings& s, GuardedImage<P>& first,
              GuardedImage<P>& second, GuardedImage<P>& out) {
    using T = typename P::Component;
    using W = typename P::Wide;
    using F = typename P::Float;
    using O = typename P::FORMAT;
    return TransferComposite<P, T, W, F, O>(P{}, T{}, W{}, F{}, O{}, host, s.mode, s.opacity1,
                                            s.opacity2, first.raster(), second.raster(),
                                            out.raster(), false, s.opaqueOut, false);
}

template<typename P>
int fade(PluginHost_API* host, float amount, GuardedImage<P>& from, GuardedImage<P>& to) {
    return BlendImages<P, typename P::Component, typename P::Wide, typename P::Float,
                       typename P::FORMAT>(P{}, host, amount, from.raster(), to.raster());
}

template<typename P>
using Pixels = std::vector<Rgba<typename P::Component>>;

template<typename P>
Pixels<P> compositePixels(const Settings& settings, const Pixels<P>& first,
                          const Pixels<P>& second) {
    RasterHost host;
    const auto width = static_cast<int>(first.size());
    GuardedImage<P> front(width, 1, {0, false});
    GuardedImage<P> behind(width, 1, {0, false});
    GuardedImage<P> out(width, 1, {0, false});
    front.fillFrom(first);
    behind.fillFrom(second);
    EXPECT_EQ(composite<P>(host.get(), settings, front, behind, out), 0);
    EXPECT_TRUE(out.guardsIntact());
    return out.pixels();
}

template<typename P>
Rgba<typename P::Component> compositePixel(const Settings& settings,
                                           const Rgba<typename P::Component>& first,
                                           const Rgba<typename P::Component>& second) {
    return compositePixels<P>(settings, {first}, {second}).front();
}

// --- A plain model of the passes, one pixel at a time ---

template<typename P>
struct Model {
    using T = typename P::Component;
    using F = typename P::Float;
    using Colour = std::array<F, 3>;
    static constexpr F M = static_cast<F>(P::MAX_VALUE());

    static F mul(F a, F b) { return P::multiply(a, b); }
    static F div(F a, F b) { return P::divide(a, b); }

    static F channel(int mode, F s, F d) {
        const F half = P::is32Bit() ? static_cast<F>(0.5) : static_cast<F>(P::MAX_VALUE() / 2);
        switch (mode) {
        case 2:
            return s;
        case 5:
            return mul(d, s);
        case 6:
        case 35:
            return M - mul(M - s, M - d);
        case 7:
            return d < half ? mul(2 * d, s) : d + mul(2 * s - M, M - d);
        case 8:
            return d + mul(mul(d, d) - d, M - 2 * s);
        case 9:
            return s < half ? mul(2 * s, d) : M - mul(M - d, 2 * (M - s));
        case 10:
            return s < d ? s : d;
        case 11:
            return s > d ? s : d;
        case 23:
            return s < M ? div(d, M - s) : s;
        case 24:
            return s != 0 ? P::clamp_underflow(M - div(M - d, s)) : F{0};
        default:
            return d + mul(M - 2 * d, s);
        }
    }

    static Colour hsl(int mode, const Colour& s, const Colour& d) {
        const auto convert = [mode](const Colour& c) {
            std::array<float, 3> in{};
            for (std::size_t i = 0; i < 3; ++i) {
                in[i] = P::toFloat(static_cast<T>(c[i]));
                if (P::is32Bit() && (mode == 14 || mode == 15)) {
                    in[i] = std::min(in[i], 1.0F);
                }
            }
            std::array<float, 3> out{};
            rgb2hsl(in[0], in[1], in[2], out[0], out[1], out[2]);
            return out;
        };
        const auto front = convert(s);
        const auto behind = convert(d);
        const bool hueOfFront = mode == 3 || mode == 13 || mode == 15;
        const bool satOfFront = mode == 14 || mode == 15;
        std::array<float, 3> rgb{};
        hsl2rgb(hueOfFront ? front[0] : behind[0], satOfFront ? front[1] : behind[1],
                mode == 16 ? front[2] : behind[2], rgb[0], rgb[1], rgb[2]);
        return {P::fromFloat(rgb[0]), P::fromFloat(rgb[1]), P::fromFloat(rgb[2])};
    }

    static Colour blended(int mode, const Colour& s, F sa, const Colour& d, F da) {
        if (mode == 3 || (mode >= 13 && mode <= 16)) {
            return hsl(mode, s, d);
        }
        Colour c{};
        const F A = P::clamp_overflow(sa + da - mul(sa, da));
        for (std::size_t i = 0; i < 3; ++i) {
            if (mode == 4 || mode == 12) {
                const F front = sa == M ? s[i] : mul(s[i], sa);
                const F behind = da == M ? d[i] : mul(d[i], da);
                F t = mode == 4 ? front + behind : std::abs(behind - front);
                if (mode == 4 && !P::is32Bit() && t > A) {
                    t = A;
                }
                c[i] = div(t, A);
            } else {
                c[i] = channel(mode, s[i], d[i]);
            }
        }
        return c;
    }

    static F alpha(T component, double opacity) {
        const float product = static_cast<float>(component) * static_cast<float>(opacity);
        return P::is32Bit() ? static_cast<F>(product) : static_cast<F>(std::trunc(product));
    }
    static Colour colour(const Rgba<T>& pixel) {
        Colour c{};
        for (std::size_t i = 0; i < 3; ++i) {
            const auto value = static_cast<F>(pixel[i]);
            c[i] = value < 0 ? F{0} : value;
        }
        return c;
    }
    static Rgba<T> stored(const Colour& c, F a) {
        return {static_cast<T>(P::clamp(c[0])), static_cast<T>(P::clamp(c[1])),
                static_cast<T>(P::clamp(c[2])), static_cast<T>(P::clamp(a))};
    }

    static Rgba<T> blend(const Settings& settings, const Rgba<T>& first, const Rgba<T>& second) {
        const F sa = alpha(first[3], settings.opacity1);
        const F da = alpha(second[3], settings.opacity2);
        F A = sa + da - mul(sa, da);
        if (sa == 0) {
            return {second[0], second[1], second[2], static_cast<T>(P::clamp(A))};
        }
        const bool done = settings.mode == 4 || settings.mode == 12;
        const Colour s = colour(first);
        const Colour d = colour(second);
        Colour c = da > 0 ? blended(settings.mode, s, sa, d, da) : s;
        for (std::size_t i = 0; i < 3 && !done; ++i) {
            if (da > 0 && da < M) {
                c[i] = mul(s[i], M - da) + mul(c[i], da);
            }
            if (sa != M && da != 0) {
                const F k = mul(M - sa, da);
                c[i] = div(mul(c[i], sa) + mul(d[i], k), sa + k);
            }
        }
        if (!done && (sa == M || da == 0)) {
            A = sa;
        }
        return stored(c, A);
    }

    static Rgba<T> behind(const Settings& settings, const Rgba<T>& first, const Rgba<T>& second) {
        const F sa = alpha(first[3], settings.opacity1);
        const F da = alpha(second[3], settings.opacity2);
        const F A = sa + da - mul(sa, da);
        if (da == 0) {
            return {first[0], first[1], first[2], static_cast<T>(P::clamp(A))};
        }
        if (da == M) {
            return second;
        }
        const Colour s = colour(first);
        const Colour d = colour(second);
        Colour c{};
        for (std::size_t i = 0; i < 3; ++i) {
            c[i] = mul(s[i], M - da) + mul(d[i], da);
            if (sa != M) {
                const F k = mul(M - sa, da);
                c[i] = div(mul(c[i], sa) + mul(d[i], k), k + sa);
            }
        }
        return stored(c, A);
    }

    static Rgba<T> pixel(const Settings& settings, const Rgba<T>& first, const Rgba<T>& second) {
        const bool isBehind = settings.mode == behindMode;
        auto out = isBehind ? behind(settings, first, second) : blend(settings, first, second);
        if (settings.opaqueOut && settings.mode > inFrontMode) {
            out[3] = static_cast<T>(P::MAX_VALUE());
        }
        return out;
    }
};

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
    GuardedImage<PIXEL_ARGB8> image(1, 1, {0, false});
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

TYPED_TEST(TransferModes, AgreeWithTheModel) {
    using P = TypeParam;
    const auto first = randomPixels<P>(600, 11);
    const auto second = randomPixels<P>(600, 12);
    const std::array<std::pair<double, double>, 3> opacities{{{1.0, 1.0}, {0.6, 1.0}, {0.9, 0.4}}};
    for (const int mode : allModes) {
        for (const auto& [opacity1, opacity2] : opacities) {
            for (const bool opaqueOut : {false, true}) {
                const Settings settings{mode, opacity1, opacity2, opaqueOut};
                const auto out = compositePixels<P>(settings, first, second);
                for (std::size_t i = 0; i < out.size(); ++i) {
                    ASSERT_EQ(out[i], Model<P>::pixel(settings, first[i], second[i]))
                        << "mode " << mode << ": " << testing::PrintToString(first[i]) << " over "
                        << testing::PrintToString(second[i]);
                }
            }
        }
    }
}

TYPED_TEST(TransferModes, OpaqueOverOpaqueIsTheModesColour) {
    using P = TypeParam;
    using T = typename P::Component;
    const auto maximum = static_cast<T>(P::MAX_VALUE());
    const Rgba<T> s{static_cast<T>(maximum * 0.8), static_cast<T>(maximum * 0.2), T{0}, maximum};
    const Rgba<T> d{static_cast<T>(maximum * 0.3), static_cast<T>(maximum * 0.6), maximum, maximum};
    for (const int mode : {5, 6, 7, 8, 9, 10, 11, 23, 24, 25, 35}) {
        const auto out = compositePixel<P>({mode, 1.0, 1.0, false}, s, d);
        for (std::size_t i = 0; i < 3; ++i) {
            const auto colour = Model<P>::channel(mode, s[i], d[i]);
            EXPECT_EQ(out[i], static_cast<T>(P::clamp(colour))) << mode;
        }
        EXPECT_EQ(out[3], maximum);
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
            GuardedImage<P> front(7, 5, layout);
            GuardedImage<P> behind(7, 5, {16, !layout.bottomUp});
            for (GuardedImage<P>* const out : {&front, &behind}) {
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
    GuardedImage<P> first(3, 6, {0, false});
    GuardedImage<P> second(8, 8, {16, true});
    GuardedImage<P> out(5, 2, {0, false});
    for (const int mode : allModes) {
        composite<P>(host.get(), {mode, 1.0, 1.0, true}, first, second, out);
    }
    fade<P>(host.get(), 0.5F, second, out);
    fade<P>(host.get(), 1.0F, out, second);
    EXPECT_TRUE(out.guardsIntact());
    EXPECT_EQ(out.get(3, 0), (Rgba<typename P::Component>{}));
}

TYPED_TEST(TransferModes, WildPixelsAndOpacitiesAreHarmless) {
    using P = TypeParam;
    const auto wild = wildPixels<P>();
    auto turned = wild;
    std::rotate(turned.begin(), turned.begin() + static_cast<std::ptrdiff_t>(wild.size() / 3),
                turned.end());
    for (const int mode : allModes) {
        for (const float opacity : wildAmounts) {
            for (const Settings& settings :
                 {Settings{mode, opacity, 1.0, false}, Settings{mode, 0.5, opacity, false},
                  Settings{mode, opacity, opacity, false}}) {
                EXPECT_EQ(compositePixels<P>(settings, wild, turned).size(), wild.size());
            }
        }
    }
}

TYPED_TEST(TransferModes, BlendImagesMixesInSinglePrecision) {
    using P = TypeParam;
    using T = typename P::Component;
    RasterHost host;
    const auto from = randomPixels<P>(35, 16);
    const auto to = randomPixels<P>(35, 17);
    for (const RowLayout& layout : rowLayouts) {
        for (const float amount : {0.0F, 0.3F, 0.5F, 1.0F / 3, 1.0F}) {
            GuardedImage<P> source(7, 5, layout);
            GuardedImage<P> target(7, 5, {16, !layout.bottomUp});
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

TYPED_TEST(TransferModes, BlendImagesWithWildAmountsIsHarmless) {
    using P = TypeParam;
    RasterHost host;
    const auto wild = wildPixels<P>();
    const auto width = static_cast<int>(wild.size());
    for (const float amount : wildAmounts) {
        GuardedImage<P> source(width, 1, {0, false});
        GuardedImage<P> target(width, 1, {0, false});
        source.fillFrom(wild);
        target.fillFrom({wild.rbegin(), wild.rend()});
        EXPECT_EQ(fade<P>(host.get(), amount, source, target), 0);
        EXPECT_TRUE(target.guardsIntact());
    }
}

} // namespace
} // namespace orbel::test
