#include "host/Numeric.h"

#include <gtest/gtest.h>

namespace orbel {
namespace {

constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();
constexpr double INFINITE = std::numeric_limits<double>::infinity();

TEST(Numeric, truncationKeepsTheLowBits) {
    struct Row {
        double value;
        int asByte;
        int asInt;
    };
    const Row rows[] = {
        {0.0, 0, 0},      {1.9, 1, 1},          {-1.9, 255, -1},     {256.5, 0, 256},
        {300.0, 44, 300}, {4294967297.0, 1, 1}, {-9.3e18, 0, 0},     {9223372036854775808.0, 0, 0},
        {INFINITE, 0, 0}, {-INFINITE, 0, 0},    {NOT_A_NUMBER, 0, 0}};
    for (const Row& row : rows) {
        EXPECT_EQ(truncateTo<unsigned char>(row.value), row.asByte) << row.value;
        EXPECT_EQ(truncateTo<int>(row.value), row.asInt) << row.value;
    }
    EXPECT_EQ(truncateTo<float>(0.1), 0.1F);
    EXPECT_EQ(truncateTo<unsigned char>(257), 1);
}

TEST(Numeric, saturationStopsAtTheEnds) {
    struct Row {
        double value;
        int expected;
    };
    const Row rows[] = {{12.9, 12},          {-12.9, -12},      {32767.0, 32767},
                        {1e300, 32767},      {-1e300, -32768},  {INFINITE, 32767},
                        {-INFINITE, -32768}, {NOT_A_NUMBER, 0}, {-32768.5, -32768}};
    for (const Row& row : rows) {
        EXPECT_EQ(saturateTo<std::int16_t>(row.value), row.expected) << row.value;
    }
}

} // namespace
} // namespace orbel
