#include "render/Taper.h"

#include "tests/support/TestHosts.h"

#include <gtest/gtest.h>

#include <cmath>

namespace orbel {
namespace {

TaperStruct taper() {
    TaperStruct t{};
    t.enabled = 1;
    t.startTaperBegin = 10;
    t.startTaperEnd = 30;
    t.endTaperBegin = 60;
    t.endTaperEnd = 100;
    t.startThickness = 0.5;
    t.endThickness = 0.25;
    t.startShape = 1.0;
    t.endShape = 1.0;
    return t;
}

TEST(Taper, thinsTowardBothEnds) {
    struct Row {
        double s;
        double linear;
        double squared;
    };
    const Row rows[] = {
        {10, 0.5, 0.5}, {15, 0.625, 0.53125},   {20, 0.75, 0.625},   {30, 1, 1},       {45, 1, 1},
        {60, 1, 1},     {70, 0.8125, 0.671875}, {80, 0.625, 0.4375}, {100, 0.25, 0.25}};
    test::BareHost host;
    for (const Row& row : rows) {
        TaperStruct t = taper();
        EXPECT_DOUBLE_EQ(taperFactor(&host, t, row.s), row.linear) << row.s;
        t.startShape = 2.0;
        t.endShape = 2.0;
        EXPECT_DOUBLE_EQ(taperFactor(&host, t, row.s), row.squared) << row.s;
    }
}

TEST(Taper, stretchesOfNoLengthDoNotTaper) {
    test::BareHost host;
    TaperStruct t = taper();
    t.startTaperEnd = t.startTaperBegin;
    t.endTaperBegin = t.endTaperEnd;
    for (const double s : {0.0, 10.0, 50.0, 100.0, 200.0}) {
        EXPECT_EQ(taperFactor(&host, t, s), 1.0) << s;
    }
}

TEST(Taper, atItsEdges) {
    test::BareHost host;
    TaperStruct t = taper();
    EXPECT_DOUBLE_EQ(taperFactor(&host, t, 0), 0.25); // beyond its ends it goes on
    EXPECT_DOUBLE_EQ(taperFactor(&host, t, 120), -0.125);
    t.startShape = 0.5;
    EXPECT_TRUE(std::isnan(taperFactor(&host, t, 0)));
    t.startShape = 1.0;
    t.startTaperEnd = 90; // where both overlap the start rules
    EXPECT_DOUBLE_EQ(taperFactor(&host, t, 70), 0.5 * 0.25 + 0.75);
    t.enabled = 0;
    EXPECT_EQ(taperFactor(&host, t, 10), 1.0);
}

} // namespace
} // namespace orbel
