#include "render/TrimRect.h"

#include <gtest/gtest.h>

namespace orbel {
namespace {

TEST(TrimRect, clipsToTheImage) {
    struct Row {
        Vx_Rect rect; // top, left, bottom, right
        int result;
        Vx_Rect trimmed;
    };
    const Row rows[] = {
        {{2, 3, 8, 9}, 1, {2, 3, 8, 9}},
        {{0, 0, 47, 63}, 1, {0, 0, 47, 63}},
        {{-1, 0, 47, 63}, 2, {0, 0, 47, 63}},
        {{0, -1, 47, 63}, 2, {0, 0, 47, 63}},
        {{0, 0, 48, 63}, 2, {0, 0, 47, 63}},
        {{0, 0, 47, 64}, 2, {0, 0, 47, 63}},
        {{-32768, -32768, 32767, 32767}, 2, {0, 0, 47, 63}},
        {{50, 3, 60, 9}, 0, {50, 3, 47, 9}},
        {{-9, 3, -2, 9}, 0, {0, 3, -2, 9}},
        {{2, 70, 8, 90}, 0, {2, 70, 8, 63}},
        {{2, -9, 8, -3}, 0, {2, 0, 8, -3}},
        {{5, 3, 5, 9}, 0, {5, 3, 5, 9}},  // one row counts as none
        {{2, 9, 8, 9}, 0, {2, 9, 8, 9}},  // and so does one column
        {{-9, 3, 0, 9}, 0, {0, 3, 0, 9}}, // also when trimming made it so
        {{2, 63, 8, 70}, 0, {2, 63, 8, 63}},
        {{8, 3, 2, 9}, 0, {8, 3, 2, 9}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << row.rect.top << " " << row.rect.left << " "
                                        << row.rect.bottom << " " << row.rect.right);
        Vx_Rect rect = row.rect;
        EXPECT_EQ(Vx_TrimRect(&rect, 64, 48), row.result);
        EXPECT_EQ(rect.top, row.trimmed.top);
        EXPECT_EQ(rect.left, row.trimmed.left);
        EXPECT_EQ(rect.bottom, row.trimmed.bottom);
        EXPECT_EQ(rect.right, row.trimmed.right);
    }
}

} // namespace
} // namespace orbel
