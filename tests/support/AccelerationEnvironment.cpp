// The whole program can be run at another level of acceleration and on another number of threads:
// ORBEL_TEST_LEVEL and ORBEL_TEST_THREADS, the best and all unless given.

#include "pixel/Acceleration.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace orbel::test {
namespace {

class AccelerationEnvironment : public testing::Environment {
public:
    void SetUp() override {
        if (const char* const level = std::getenv("ORBEL_TEST_LEVEL")) {
            setAccelerationLevel(std::atoi(level));
        }
        if (const char* const threads = std::getenv("ORBEL_TEST_THREADS")) {
            setRenderThreads(std::atoi(threads));
        }
    }
};

[[maybe_unused]] const testing::Environment* const g_environment =
    testing::AddGlobalTestEnvironment(new AccelerationEnvironment);

} // namespace
} // namespace orbel::test
