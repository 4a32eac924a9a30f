#include "pixel/Acceleration.h"

#include "pixel/ColourOps.h"
#include "pixel/TransferModes.h"
#include "tests/pixel/RowTestSupport.h"

namespace orbel::test {
namespace {

/// Every pass over whole rasters, one after another; `second` of another size than `first`.
template<typename P>
void runPasses(PluginHost_API* host, PluginRaster_API* first, PluginRaster_API* second) {
    using T = typename P::Component;
    using W = typename P::Wide;
    using F = typename P::Float;
    using O = typename P::FORMAT;
    UnPremult<P, T, W, F, O>(P{}, host, first);
    HSLModulate<P, T, W, F, O>(P{}, host, first, 0.2, 0.3, 0.1);
    BlendImages<P, T, W, F, O>(P{}, host, 0.3F, first, second);
    for (int code = 0; code < 40; ++code) {
        TransferComposite<P, T, W, F, O>(P{}, T{}, W{}, F{}, O{}, host, code, 0.8, 0.9, first,
                                         second, code % 2 == 0 ? first : second, false,
                                         code % 5 == 0, true);
    }
    MultiplyAlpha<P, T, W, F, O>(P{}, host, 0.9F, second);
    Premult<P, T, W, F, O>(P{}, host, second);
}

template<typename P>
class RowKernelsOnRasters : public testing::Test {};

TYPED_TEST_SUITE(RowKernelsOnRasters, AllPixelFormats);

TYPED_TEST(RowKernelsOnRasters, everyLayoutFollowsTheLaw) {
    using P = TypeParam;
    const LevelGuard guard;
    const auto first = testPixels<P>(1);
    const auto second = testPixels<P>(2);
    RasterHost host;
    const auto run = [&](int level, RowLayout layout, GuardedImage<P>& a, GuardedImage<P>& b) {
        setAccelerationLevel(level);
        ASSERT_EQ(accelerationLevel(), level);
        a.fillFrom({first.begin(), first.begin() + 37 * 11});
        b.fillFrom({second.begin(), second.begin() + 33 * 13});
        runPasses<P>(host.get(), a.raster(), b.raster());
        EXPECT_TRUE(a.guardsIntact() && b.guardsIntact())
            << layout.padding << ' ' << layout.bottomUp << " at level " << level;
    };
    for (const RowLayout layout : rowLayouts) {
        GuardedImage<P> lawA(37, 11, layout);
        GuardedImage<P> lawB(33, 13, layout);
        run(0, layout, lawA, lawB);
        for (int level = 1; level <= bestAccelerationLevel(); ++level) {
            GuardedImage<P> a(37, 11, layout);
            GuardedImage<P> b(33, 13, layout);
            run(level, layout, a, b);
            const auto same = [](const auto& x, const auto& y) {
                return sameComponents(x[0].data(), y[0].data(), 4 * x.size());
            };
            EXPECT_TRUE(same(a.pixels(), lawA.pixels()) && same(b.pixels(), lawB.pixels()))
                << layout.padding << ' ' << layout.bottomUp << " at level " << level;
        }
    }
}

TEST(Acceleration, settingsAreLimited) {
    const LevelGuard guard;
    setAccelerationLevel(-3);
    EXPECT_EQ(accelerationLevel(), ACCELERATION_NONE);
    setAccelerationLevel(1000);
    EXPECT_EQ(accelerationLevel(), bestAccelerationLevel());
    for (const int wanted : {-5, 0, 1, 3, 2000000000}) {
        setRenderThreads(wanted);
        EXPECT_GE(renderThreads(), 1) << wanted;
        EXPECT_LE(renderThreads(), 256) << wanted;
    }
}

} // namespace
} // namespace orbel::test
