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

std::atomic<int>& level() {
    static std::atomic<int> value{bestAccelerationLevel()};
    return value;
}

std::atomic<int>& threads() {
    static std::atomic<int> value{processors()};
    return value;
}

} // namespace

int bestAccelerationLevel() {
    static const int best = detectLevel();
    return best;
}

int accelerationLevel() {
    return level().load(std::memory_order_relaxed);
}

void setAccelerationLevel(int value) {
    level().store(std::clamp(value, ACCELERATION_NONE, bestAccelerationLevel()),
                  std::memory_order_relaxed);
}

int renderThreads() {
    return threads().load(std::memory_order_relaxed);
}

void setRenderThreads(int value) {
#if ORBEL_HAVE_TASKS
    constexpr int most = 256;
    threads().store(value > 0 ? std::min(value, most) : processors(), std::memory_order_relaxed);
#else
    static_cast<void>(value);
#endif
}

} // namespace orbel
