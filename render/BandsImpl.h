#pragma once

#include "pixel/Acceleration.h"

#include <algorithm>

#if ORBEL_HAVE_TASKS
#include <tbb/global_control.h>
#include <tbb/info.h>
#include <tbb/parallel_for.h>
#include <tbb/task_arena.h>

#include <optional>
#endif

namespace orbel {

/// Calls `work(band)` for every band of a raster, on as many threads as a frame may use. The bands
/// share nothing that is written.
template<class Work>
void forEachBand(int bands, const Work& work) {
#if ORBEL_HAVE_TASKS
    if (const int threads = std::min(renderThreads(), bands); threads > 1) {
        // More threads than processors have to be asked for in particular.
        std::optional<tbb::global_control> more;
        if (threads > tbb::info::default_concurrency()) {
            more.emplace(tbb::global_control::max_allowed_parallelism,
                         static_cast<std::size_t>(threads));
        }
        tbb::task_arena(threads).execute([&] { tbb::parallel_for(0, bands, work); });
        return;
    }
#endif
    for (int band = 0; band < bands; ++band) {
        work(band);
    }
}

} // namespace orbel
