#pragma once

#include "pixel/Acceleration.h"

#if ORBEL_HAVE_TASKS
#include <oneapi/tbb/parallel_for.h>
#include <oneapi/tbb/task_arena.h>
#endif

namespace orbel {

/// Calls `work(band)` for every band of a raster, on as many threads as a frame may use. The bands
/// share nothing that is written.
template<class Work>
void forEachBand(int bands, const Work& work) {
#if ORBEL_HAVE_TASKS
    if (const int threads = std::min(renderThreads(), bands); threads > 1) {
        oneapi::tbb::task_arena(threads).execute(
            [&] { oneapi::tbb::parallel_for(0, bands, work); });
        return;
    }
#endif
    for (int band = 0; band < bands; ++band) {
        work(band);
    }
}

} // namespace orbel
