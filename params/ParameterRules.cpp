#include "params/ParameterRules.h"

#include "params/ParameterTable.h"

namespace orbel {

namespace {

// Retired numbers that only these rules still know.
constexpr int RETIRED_STROKE_ALL = 2;
constexpr int RETIRED_TOGGLE = 46;
constexpr int RETIRED_DEPENDENT = 47;

constexpr int AFTER_STROKE_ALL[] = {PARAM_STROKE_SEQUENTIALLY};
constexpr int AFTER_SEQUENTIAL[] = {PARAM_LOOP, PARAM_COMPRESS_TO_FIT};
constexpr int REPEATER[] = {
    PARAM_SYMMETRIC_DOUBLER,   PARAM_INSTANCES,           PARAM_REPEATER_SCALE,
    PARAM_DISPLACE_X,          PARAM_DISPLACE_Y,          PARAM_DISPLACE_Z,
    PARAM_REPEATER_ROTATION_X, PARAM_REPEATER_ROTATION_Y, PARAM_REPEATER_ROTATION_Z,
    PARAM_REPEATER_FACTOR,     PARAM_REPEATER_OPACITY};
constexpr int SHUTTER[] = {PARAM_SHUTTER_ANGLE, PARAM_SHUTTER_PHASE, PARAM_LEVELS};
constexpr int AFTER_RETIRED[] = {RETIRED_DEPENDENT};

constexpr EnablingRule RULES[] = {
    {RETIRED_STROKE_ALL, false, 1, AFTER_STROKE_ALL},
    // One outline after another neither loops nor squeezes its taper.
    {PARAM_STROKE_SEQUENTIALLY, false, 0, AFTER_SEQUENTIAL},
    {PARAM_ENABLE_REPEATER, false, 1, REPEATER},
    {PARAM_MOTION_BLUR, true, 1, SHUTTER},
    {RETIRED_TOGGLE, false, 1, AFTER_RETIRED},
};

} // namespace

std::span<const EnablingRule> enablingRules() {
    return RULES;
}

} // namespace orbel
