// Whole frames as a host renders them, and the memory that a frame takes.

#include "bench/FrameCopy.h"

#include "doors/memory/PluginHost_MEMORY_Impl.h"
#include "params/InstanceData.h"
#include "params/ParameterTable.h"
#include "render/RenderDispatch.h"
#include "tests/support/AllocationCounter.h"

#include <string>

namespace orbel::bench {

namespace {

constexpr double NORMAL = 1;

/// Changes a stroke of thickness 10 around a circle.
using Arrange = void (*)(ParameterStore&);

void plain(ParameterStore&) {}

void thick(ParameterStore& p) {
    p.set(PARAM_THICKNESS, 50);
}

void feathered(ParameterStore& p) {
    p.set(PARAM_THICKNESS, 50);
    p.set(PARAM_FEATHER, 60);
}

void tapered(ParameterStore& p) {
    p.set(PARAM_ENABLE_TAPER, 1);
}

void repeated(ParameterStore& p) {
    p.set(PARAM_ENABLE_REPEATER, 1);
    p.set(PARAM_SYMMETRIC_DOUBLER, 0);
    p.set(PARAM_INSTANCES, 10);
    p.set(PARAM_REPEATER_ROTATION_Y, 12);
}

void blurred(ParameterStore& p) {
    p.set(PARAM_MOTION_BLUR, 1);
    p.setKeys(PARAM_POSITION_XY,
              {{0, {0.4, 0.5}, Easing::Linear}, {1, {0.5, 0.5}, Easing::Linear}});
}

struct Kind {
    const char* name;
    Arrange arrange;
};
constexpr Kind KINDS[] = {{"plain", plain},     {"thick", thick},         {"feathered", feathered},
                          {"tapered", tapered}, {"repeater10", repeated}, {"blur8", blurred}};

/// The images of a frame and everything that its host needs.
class BenchFrame {
public:
    BenchFrame(const Size& size, RasterFormat format, Arrange arrange)
        : m_source(size.width, size.height, format, {}),
          m_input(size.width, size.height, format, {}),
          m_output(size.width, size.height, format, {}) {
        const auto bytes = m_source.rowSize() * static_cast<std::size_t>(size.height);
        for (std::size_t i = 0; i < bytes; i += 2) {
            m_source.info().data[i] = static_cast<std::uint8_t>(format <= RF_RGBA8 ? 0x7f : 0);
        }
        setUserDataPath(&m_shape, ORBEL_SOURCE_DIR "/resources/Tessaly/SVG/Basic Circle.svg");
        m_parameters.set(PARAM_TRANSFER_MODE, NORMAL);
        arrange(m_parameters);
    }

    /// A fresh copy of the picture, which a render changes.
    void refresh() { m_input.copyFrom(m_source); }
    int render() {
        PluginHost_MEMORY_Impl host(m_input.info(), m_output.info(), &m_parameters, {});
        host.setUserData(&m_shape);
        return Render(&host);
    }
    [[nodiscard]] const RasterInfo& picture() const { return m_output.info(); }

private:
    MemoryImage m_source;
    MemoryImage m_input;
    MemoryImage m_output;
    ParameterStore m_parameters;
    Orbel_UserData m_shape;
};

void frame(benchmark::State& state, const Size& size, RasterFormat format, Arrange arrange) {
    BenchFrame bench(size, format, arrange);
    int failures = 0;
    measure(
        state, bench.picture(), [&] { bench.refresh(); }, [&] { failures += bench.render(); });
    if (failures != 0) {
        state.SkipWithError("a frame failed");
    }
}

/// What a frame takes beyond its input, its output and, under blur, one sample.
void memory(benchmark::State& state, Arrange arrange, int rasters) {
    BenchFrame bench(SIZES[0], RF_RGBA8, arrange);
    const auto raster = static_cast<double>(SIZES[0].width) * SIZES[0].height * 4;
    std::size_t beyondImages = 0;
    for (auto _ : state) {
        const std::size_t before = test::AllocationCounter::restart();
        const int failed = bench.render();
        beyondImages = test::AllocationCounter::peak() - before;
        benchmark::DoNotOptimize(failed);
    }
    const double peak = 2 * raster + static_cast<double>(beyondImages);
    state.counters["peak_MiB"] = peak / (1 << 20);
    state.counters["beyond_rasters_MiB"] = (peak - rasters * raster) / (1 << 20);
}

const bool g_registered = [] {
    for (const Size& size : SIZES) {
        for (const Kind& kind : KINDS) {
            const std::string name = std::string("frame/") + kind.name + "/" + size.name;
            benchmark::RegisterBenchmark(name.c_str(), frame, size, RF_RGBA8, kind.arrange)
                ->UseManualTime()
                ->Unit(benchmark::kMillisecond);
        }
    }
    for (const auto& [name, format] : {std::pair{"frame/plain/1080p/16-bit", RF_RGBA16},
                                       {"frame/plain/1080p/float", RF_RGBA32F}}) {
        benchmark::RegisterBenchmark(name, frame, SIZES[0], format, plain)
            ->UseManualTime()
            ->Unit(benchmark::kMillisecond);
    }
    benchmark::RegisterBenchmark("memory/sharp/1080p", memory, plain, 2)->Iterations(2);
    benchmark::RegisterBenchmark("memory/blur8/1080p", memory, blurred, 3)->Iterations(2);
    return true;
}();

} // namespace

} // namespace orbel::bench
