#include "pixel/Acceleration.h"

#include "tests/support/AccelerationSettings.h"

#include <gtest/gtest.h>

namespace orbel::test {
namespace {

TEST(Acceleration, settingsAreLimited) {
    const AccelerationSettings guard;
    setAccelerationLevel(-3);
    EXPECT_EQ(accelerationLevel(), ACCELERATION_NONE);
    setAccelerationLevel(1000);
    EXPECT_EQ(accelerationLevel(), bestAccelerationLevel());
    for (const int wanted : {-5, 0, 1, 3, 2000000000}) {
        setRenderThreads(wanted);
        EXPECT_GE(renderThreads(), 1) << wanted;
        EXPECT_LE(renderThreads(), 256) << wanted;
    }
}

} // namespace
} // namespace orbel::test
