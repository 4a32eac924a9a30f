#include "shapes/CriticalSection.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace orbel {
namespace {

TEST(CriticalSection, severalThreadsMayRaceForTheFirstLock) {
    CriticalRegion region;
    int inside = 0;
    int entered = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i != 4; ++i) {
        threads.emplace_back([&] {
            for (int j = 0; j != 200; ++j) {
                const Stroke_CSLock outer(&region);
                const Stroke_CSLock inner(&region); // the same thread may enter again
                EXPECT_EQ(++inside, 1);
                ++entered;
                --inside;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(entered, 800);
    EXPECT_FALSE(Stroke_CSLock::g_firstTime);
    delete region.mutex;
}

TEST(CriticalSection, isLeftWhenAnExceptionPasses) {
    try {
        const Stroke_CSLock lock(&g_globalCritSection);
        throw 1;
    } catch (int) {
    }
    std::thread([] { const Stroke_CSLock lock(&g_globalCritSection); }).join();
}

} // namespace
} // namespace orbel
