// Every row kernel beside the reference, pixel by pixel, in one run: how many times faster each
// level is.

#include "bench/FrameCopy.h"

#include "pixel/Acceleration.h"
#include "pixel/RowKernels.h"

#include <array>
#include <functional>
#include <random>
#include <string>
#include <vector>

namespace orbel::bench {

namespace {

/// As many pixels as a band of rows has that stays in a core's own cache.
constexpr int PIXELS = 8192;

template<class P>
using Row = std::vector<typename P::Component>;

/// Pixels of all alphas, so that no kernel finds a short way.
template<class P>
Row<P> variedRow(unsigned seed) {
    std::mt19937 engine(seed);
    Row<P> row(std::size_t{PIXELS} * componentsPerPixel);
    for (auto& component : row) {
        const double unit = static_cast<double>(engine()) / 4294967296.0;
        component =
            static_cast<typename P::Component>(unit * (P::is32Bit() ? 1.0 : P::MAX_VALUE()));
    }
    return row;
}

template<class P>
using Work = std::function<void(const RowKernels<P>&, typename P::Component* front,
                                typename P::Component* behind)>;

/// Levels take turns, so that a disturbance meets them all; the shortest times are compared.
template<class P>
void compareLevels(benchmark::State& state, const Work<P>& work) {
    const Row<P> front = variedRow<P>(1);
    const Row<P> behind = variedRow<P>(2);
    const int best = bestAccelerationLevel();
    std::array<double, ACCELERATION_LEVELS> shortest{};
    shortest.fill(std::numeric_limits<double>::infinity());
    for (auto _ : state) {
        for (int level = 0; level <= best; ++level) {
            Row<P> a = front;
            Row<P> b = behind;
            const double begin = seconds();
            work(rowKernels<P>(level), a.data(), b.data());
            const double taken = seconds() - begin;
            auto& least = shortest[static_cast<std::size_t>(level)];
            least = std::min(least, taken);
            if (level == best) {
                state.SetIterationTime(taken);
            }
        }
    }
    state.counters["law_ns_per_pixel"] = shortest[0] * 1e9 / PIXELS;
    for (int level = 1; level <= best; ++level) {
        state.counters["times_faster_" + std::to_string(level)] =
            shortest[0] / shortest[static_cast<std::size_t>(level)];
    }
}

template<class P>
void registerKernel(const std::string& name, const std::string& formatName, Work<P> work) {
    benchmark::RegisterBenchmark(("kernel/" + name + "/" + formatName).c_str(), compareLevels<P>,
                                 std::move(work))
        ->UseManualTime()
        ->Unit(benchmark::kMicrosecond)
        ->MinTime(0.02);
}

template<class P>
void registerFormat(const std::string& formatName) {
    using T = typename P::Component;
    using Kernels = RowKernels<P>;
    const auto add = [&](const std::string& name, Work<P> work) {
        registerKernel<P>(name, formatName, std::move(work));
    };
    add("fill", [](const Kernels& k, T* a, T*) {
        const std::array<T, componentsPerPixel> pixel{};
        k.fill(a, PIXELS, pixel.data());
    });
    add("unpremultiply", [](const Kernels& k, T* a, T*) { k.unPremult(a, PIXELS); });
    add("premultiply", [](const Kernels& k, T* a, T*) { k.premult(a, PIXELS); });
    add("multiply-alpha", [](const Kernels& k, T* a, T*) { k.multiplyAlpha(a, PIXELS, 0.5F); });
    add("modulate", [](const Kernels& k, T* a, T*) { k.hslModulate(a, PIXELS, {0.1, 70.0, 0.3}); });
    add("cross-fade", [](const Kernels& k, T* a, T* b) {
        k.blendImages(a, b, std::ptrdiff_t{PIXELS} * componentsPerPixel, 0.25F);
    });
    add("finish-untouched",
        [](const Kernels& k, T* a, T* b) { k.finishTransparent(a, b, PIXELS); });
    for (std::size_t code = 1; code <= 25; ++code) {
        if (code == 13 || (code > 17 && code < 23)) {
            continue; // modes of another code
        }
        add("mode-" + std::to_string(code), [code](const Kernels& k, T* a, T* b) {
            k.composite[code](a, b, a, PIXELS, 0.9F, 1.0F);
        });
        add("finish-" + std::to_string(code),
            [code](const Kernels& k, T* a, T* b) { k.finish[code](b, a, PIXELS, 0.9F); });
    }
}

const bool g_registered = [] {
    registerFormat<PIXEL_RGBA8>("8-bit");
    registerFormat<PIXEL_RGBA16>("16-bit");
    registerFormat<PIXEL_RGBA32>("float");
    return true;
}();

} // namespace

} // namespace orbel::bench
