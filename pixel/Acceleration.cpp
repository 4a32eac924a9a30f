#include "pixel/Acceleration.h"

#include <algorithm>
#include <atomic>
#include <thread>

#if ORBEL_HAVE_HIGHWAY
#include <hwy/targets.h>
#endif

namespace orbel {
namespace {

int detectLevel() {
#if ORBEL_HAVE_HIGHWAY
    const auto targets = hwy::SupportedTargets();
    if ((targets & HWY_AVX3) != 0) {
        return ACCELERATION_512;
    }
    if ((targets & HWY_AVX2) != 0) {
        return ACCELERATION_256;
    }
    if ((targets & (HWY_SSE4 | HWY_NEON)) != 0) {
        return ACCELERATION_128;
    }
#endif
    return ACCELERATION_NONE;
}

int processors() {
#if ORBEL_HAVE_TASKS
    return std::max(static_cast<int>(std::thread::hardware_concurrency()), 1);
#else
    return 1;
#endif
}

std::atomic<int>& levelInUse() {
    static std::atomic<int> value{bestAccelerationLevel()};
    return value;
}

std::atomic<int>& threadsInUse() {
    static std::atomic<int> value{processors()};
    return value;
}

} // namespace

int bestAccelerationLevel() {
    static const int best = detectLevel();
    return best;
}

int accelerationLevel() {
    return levelInUse().load(std::memory_order_relaxed);
}

void setAccelerationLevel(int level) {
    levelInUse().store(std::clamp(level, ACCELERATION_NONE, bestAccelerationLevel()),
                       std::memory_order_relaxed);
}

int renderThreads() {
    return threadsInUse().load(std::memory_order_relaxed);
}

void setRenderThreads(int threads) {
#if ORBEL_HAVE_TASKS
    constexpr int most = 256;
    threadsInUse().store(threads > 0 ? std::min(threads, most) : processors(),
                         std::memory_order_relaxed);
#else
    static_cast<void>(threads);
#endif
}

} // namespace orbel
