#pragma once

#include "pixel/Acceleration.h"

#include <algorithm>

#if ORBEL_HAVE_TASKS
#include <tbb/global_control.h>
#include <tbb/info.h>
#include <tbb/parallel_for.h>
#include <tbb/task_arena.h>
#include <tbb/task_group.h>

#include <optional>
#endif

namespace orbel {

/// Work on the bands of a raster, shared out among as many threads as a frame may use, while the
/// caller goes on with something else. Bands share nothing that is written.
class BandWork {
public:
    explicit BandWork(int bands) : m_bands(bands) {
#if ORBEL_HAVE_TASKS
        const int threads = std::min(renderThreads(), bands);
        if (threads > 1) {
            // More threads than processors have to be asked for in particular.
            if (threads > tbb::info::default_concurrency()) {
                m_more.emplace(tbb::global_control::max_allowed_parallelism,
                               static_cast<std::size_t>(threads));
            }
            m_arena.emplace(threads);
        }
#endif
    }
    BandWork(const BandWork&) = delete;
    BandWork& operator=(const BandWork&) = delete;
    /// Waits for what was begun.
    ~BandWork() noexcept {
        try {
            wait();
        } catch (...) {
            // Whoever did not wait does not want to know.
        }
    }

    /// Begins to call `work(band)` for every band; on one thread that is all done before it
    /// returns. What was begun before has to have been waited for.
    template<class Work>
    void begin(const Work& work) {
#if ORBEL_HAVE_TASKS
        if (m_arena) {
            m_arena->execute([&] {
                m_tasks.run([work, bands = m_bands] { tbb::parallel_for(0, bands, work); });
            });
            return;
        }
#endif
        for (int band = 0; band < m_bands; ++band) {
            work(band);
        }
    }

    /// Lends a hand until everything is done. Throws what `work` has thrown.
    void wait() {
#if ORBEL_HAVE_TASKS
        if (m_arena) {
            m_arena->execute([&] { m_tasks.wait(); });
        }
#endif
    }

private:
    int m_bands;
#if ORBEL_HAVE_TASKS
    std::optional<tbb::global_control> m_more;
    std::optional<tbb::task_arena> m_arena;
    tbb::task_group m_tasks;
#endif
};

} // namespace orbel
