#include "drawing/CssTransform.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

namespace orbel {
namespace {

// Of a box of 200 by 100 with letters of 10.
TEST(CssTransform, movesPointsAsItsFunctionsSay) {
    struct Row {
        const char* text;
        std::array<double, 2> right; ///< where (1, 0) comes
        std::array<double, 2> down;  ///< where (0, 1) comes
    };
    const double half = std::sqrt(0.5);
    const double third = std::sqrt(3) / 2;
    const Row rows[] = {
        {"none", {1, 0}, {0, 1}},
        {" ", {1, 0}, {0, 1}},
        {"matrix(1 2 3 4 5 6)", {6, 8}, {8, 10}},
        {"translate(3)", {4, 0}, {3, 1}},
        {"translate( 10% , 2em )", {21, 20}, {20, 21}},
        {"translateX(10%)", {21, 0}, {20, 1}},
        {"translateY(10%)", {1, 10}, {0, 11}},
        {"scale(2)", {2, 0}, {0, 2}},
        {"scale(2,-3)", {2, 0}, {0, -3}},
        {"scaleX(50%)", {0.5, 0}, {0, 1}},
        {"scaleY(2)", {1, 0}, {0, 2}},
        {"rotate(90)", {0, 1}, {-1, 0}},
        {"rotate(45deg)", {half, half}, {-half, half}},
        {"rotate(0.25turn)", {0, 1}, {-1, 0}},
        {"rotate(-100grad)", {0, -1}, {1, 0}},
        {"rotate(1rad)", {std::cos(1), std::sin(1)}, {-std::sin(1), std::cos(1)}},
        {"rotate(30)", {third, 0.5}, {-0.5, third}},
        {"rotate(90 10 20)", {30, 11}, {29, 10}},
        {"skewX(45)", {1, 0}, {1, 1}},
        {"skew(45 30)", {1, 0.5 / third}, {1, 1}},
        {"skew(45deg)", {1, 0}, {1, 1}},
        {"skewY(45)", {1, 1}, {0, 1}},
        {"translate(10 20) scale(2), rotate(90)", {10, 22}, {8, 20}},
        {"scale(2)translate(10 20)", {22, 40}, {20, 42}},
    };
    for (const Row& row : rows) {
        const auto transform = cssTransform(row.text, 10, 200, 100, false);
        ASSERT_TRUE(transform) << row.text;
        const PlanePoint right = (*transform)({1, 0});
        const PlanePoint down = (*transform)({0, 1});
        EXPECT_NEAR(right.x, row.right[0], 1e-9) << row.text;
        EXPECT_NEAR(right.y, row.right[1], 1e-9) << row.text;
        EXPECT_NEAR(down.x, row.down[0], 1e-9) << row.text;
        EXPECT_NEAR(down.y, row.down[1], 1e-9) << row.text;
    }
    for (const char* const text : {"matrix(1 2 3)", "rotate()", "rotate 5", "rotate)5(", "rotate(5",
                                   "rotate3d(1,1,1,5deg)", "scale(2) x"}) {
        EXPECT_FALSE(cssTransform(text, 10, 200, 100, false)) << text;
    }
}

TEST(CssTransform, turnsAboutTheOriginThatIsMeant) {
    struct Row {
        const char* text;
        PlanePoint place;
    };
    const Row rows[] = {{"", {100, 50}},
                        {"center", {100, 50}},
                        {"left", {0, 50}},
                        {"right", {200, 50}},
                        {"top", {100, 0}},
                        {"bottom", {100, 100}},
                        {"left bottom", {0, 100}},
                        {"bottom left", {0, 100}},
                        {"top right", {200, 0}},
                        {"25%", {50, 50}},
                        {"25% 10%", {50, 10}},
                        {"3 2em 5", {3, 20}},
                        {"center right", {200, 50}}};
    for (const Row& row : rows) {
        const PlanePoint place = cssOrigin(row.text, 10, 200, 100);
        EXPECT_EQ(place.x, row.place.x) << row.text;
        EXPECT_EQ(place.y, row.place.y) << row.text;
    }
}

} // namespace
} // namespace orbel
