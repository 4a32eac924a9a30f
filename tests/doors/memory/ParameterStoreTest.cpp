#include "doors/memory/ParameterStore.h"

#include "params/ParameterTable.h"

#include <gtest/gtest.h>

namespace orbel {
namespace {

constexpr ParameterValue UNTOUCHED{-1, -2, -3};

ParameterValue at(const ParameterStore& store, int param, double frame) {
    ParameterValue value = UNTOUCHED;
    EXPECT_TRUE(store.evaluate(param, frame, value));
    return value;
}

TEST(ParameterStore, startsFromTheDeclaredDefaults) {
    const ParameterStore store;
    for (const ParameterRow& row : parameterTable()) {
        if (row.isParameter()) {
            EXPECT_EQ(at(store, row.id, 3.0), row.defaults) << row.name;
        }
    }
}

TEST(ParameterStore, leavesTheValueOfAnUndeclaredIdentifierAlone) {
    ParameterStore store;
    for (const int param : {0, -1, 2, 13, 74, 84, static_cast<int>(PARAM_GROUP_TAPER)}) {
        store.set(param, 5.0);
        ParameterValue value = UNTOUCHED;
        EXPECT_FALSE(store.evaluate(param, 0.0, value)) << param;
        EXPECT_EQ(value, UNTOUCHED);
    }
}

TEST(ParameterStore, easesBetweenKeysByFormula) {
    struct Row {
        Easing easing;
        double atQuarter;
        double atThreeQuarters;
    };
    const Row rows[] = {{Easing::Linear, 15.0, 25.0},
                        {Easing::Hold, 10.0, 10.0},
                        {Easing::Ease, 13.125, 26.875},
                        {Easing::EaseIn, 11.25, 21.25},
                        {Easing::EaseOut, 18.75, 28.75}};
    for (const Row& row : rows) {
        ParameterStore store;
        store.setKeys(PARAM_THICKNESS, {{2, {10}, row.easing}, {6, {30}, Easing::Hold}});
        EXPECT_TRUE(store.isAnimated(PARAM_THICKNESS));
        EXPECT_EQ(at(store, PARAM_THICKNESS, -100)[0], 10.0);
        EXPECT_EQ(at(store, PARAM_THICKNESS, 2)[0], 10.0);
        EXPECT_EQ(at(store, PARAM_THICKNESS, 3)[0], row.atQuarter);
        EXPECT_EQ(at(store, PARAM_THICKNESS, 5)[0], row.atThreeQuarters);
        EXPECT_EQ(at(store, PARAM_THICKNESS, 6)[0], 30.0);
        EXPECT_EQ(at(store, PARAM_THICKNESS, 1e9)[0], 30.0);
    }
}

// The order of the operations decides the last bit.
TEST(ParameterStore, interpolatesLinearlyAsWritten) {
    ParameterStore store;
    store.setKeys(PARAM_START, {{0, {0.1}, Easing::Linear}, {7, {33.3}, Easing::Linear}});
    for (int frame = 1; frame < 7; ++frame) {
        EXPECT_EQ(at(store, PARAM_START, frame)[0], 0.1 + (33.3 - 0.1) * (frame - 0.0) / (7 - 0.0));
    }
}

TEST(ParameterStore, interpolatesEveryComponent) {
    ParameterStore store;
    store.setKeys(PARAM_COLOR,
                  {{0, {0, 0.5, 1}, Easing::Linear}, {4, {1, 0.5, 0}, Easing::Linear}});
    EXPECT_EQ(at(store, PARAM_COLOR, 1), (ParameterValue{0.25, 0.5, 0.75}));
}

TEST(ParameterStore, togglesAndMenusHold) {
    ParameterStore store;
    for (const int param : {PARAM_LOOP, PARAM_TRANSFER_MODE}) {
        store.setKeys(param, {{0, {0}, Easing::Linear}, {10, {1}, Easing::Linear}});
        EXPECT_EQ(at(store, param, 9.99)[0], 0.0);
        EXPECT_EQ(at(store, param, 10)[0], 1.0);
    }
}

TEST(ParameterStore, aConstantReplacesKeysAndNoKeysRestoreTheDefault) {
    ParameterStore store;
    store.setKeys(PARAM_END, {{0, {1}, Easing::Linear}, {1, {2}, Easing::Linear}});
    store.set(PARAM_END, 42.0);
    EXPECT_FALSE(store.isAnimated(PARAM_END));
    EXPECT_EQ(at(store, PARAM_END, 0.5)[0], 42.0);
    store.setKeys(PARAM_END, {});
    EXPECT_EQ(at(store, PARAM_END, 0.5)[0], 100.0);
}

} // namespace
} // namespace orbel
