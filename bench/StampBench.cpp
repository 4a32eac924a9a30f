// One brush dab, over and over on a fresh matte.

#include "bench/FrameCopy.h"

#include "doors/memory/PluginHost_MEMORY_Impl.h"
#include "render/StrokeRasteriserImpl.h"

#include <cmath>
#include <string>

namespace orbel::bench {

namespace {

constexpr int SIDE = 512;

template<class P>
void dab(benchmark::State& state, RasterFormat format, double radius, double feather) {
    using Types = PixelTypes<P>;
    const MemoryImage clear(SIDE, SIDE, format, {});
    MemoryImage matte(SIDE, SIDE, format, {});
    const RasterInfo& info = matte.info();
    ParameterStore parameters;
    PluginHost_MEMORY_Impl host(info, info, &parameters, {});
    measure(
        state, info, [&] { matte.copyFrom(clear); },
        [&] {
            HQDrawSphere<P, typename Types::Component, typename Types::Wide, typename Types::Float,
                         typename P::FORMAT>(P{}, &host, info.data, info.rowBytes,
                                             info.bytesPerPixel, SIDE, SIDE, radius, 200.3, 250.7,
                                             feather, 200);
        });
    const double pixels = 3.14159265358979 * (radius + 0.5) * (radius + 0.5);
    state.counters["pixels"] =
        benchmark::Counter(pixels, benchmark::Counter::kIsIterationInvariantRate);
}

template<class P>
void registerFormat(RasterFormat format, const std::string& formatName) {
    for (const int radius : {2, 10, 50, 200}) {
        for (const bool soft : {false, true}) {
            const std::string name =
                "stamp/radius" + std::to_string(radius) + (soft ? "/soft/" : "/hard/") + formatName;
            benchmark::RegisterBenchmark(name.c_str(), dab<P>, format, radius, soft ? 0.6 : 0.0)
                ->UseManualTime()
                ->Unit(benchmark::kMicrosecond);
        }
    }
}

const bool g_registered = [] {
    registerFormat<PIXEL_RGBA8>(RF_RGBA8, "8-bit");
    registerFormat<PIXEL_RGBA16>(RF_RGBA16, "16-bit");
    registerFormat<PIXEL_RGBA32>(RF_RGBA32F, "float");
    return true;
}();

} // namespace

} // namespace orbel::bench
