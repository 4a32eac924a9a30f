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
