#pragma once

#include "doors/memory/MemoryImage.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <limits>

namespace orbel::bench {

[[nodiscard]] inline double seconds() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double>(now).count();
}

/// The shortest of several plain copies of a picture's bytes, measured now: what everything is
/// compared with, because it cancels the machine.
[[nodiscard]] inline double copySeconds(const RasterInfo& picture) {
    const MemoryImage to(picture.width, picture.height, picture.pixelFormat, {});
    const auto bytes =
        static_cast<std::size_t>(picture.rowBytes) * static_cast<std::size_t>(picture.height);
    double shortest = std::numeric_limits<double>::infinity();
    for (int i = 0; i < 9; ++i) {
        const double begin = seconds();
        std::memcpy(to.info().data, picture.data, bytes);
        benchmark::DoNotOptimize(to.info().data[bytes - 1]);
        shortest = std::min(shortest, seconds() - begin);
    }
    return shortest;
}

/// Runs `work` as the benchmark's iterations, after `prepare`, which is not timed. Counts the
/// shortest and the mean run in copies of the picture.
template<typename Prepare, typename Work>
void measure(benchmark::State& state, const RasterInfo& picture, Prepare prepare, Work work) {
    double shortest = std::numeric_limits<double>::infinity();
    double total = 0.0;
    for (auto _ : state) {
        prepare();
        const double begin = seconds();
        work();
        const double taken = seconds() - begin;
        state.SetIterationTime(taken);
        shortest = std::min(shortest, taken);
        total += taken;
    }
    const double copy = copySeconds(picture);
    state.counters["copies"] = total / static_cast<double>(state.iterations()) / copy;
    state.counters["copies_min"] = shortest / copy;
}

struct Size {
    const char* name;
    int width;
    int height;
};
inline constexpr Size SIZES[] = {{"1080p", 1920, 1080}, {"4K", 3840, 2160}};

} // namespace orbel::bench
