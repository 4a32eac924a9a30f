#pragma once

#include "host/PluginHost.h"

namespace orbel {

/// The step adjust method that adapts the distance between stamps to the tapered thickness.
inline constexpr int STEP_DYNAMIC = 2;

/// How a stroke thins toward its ends. Distances are path lengths, thicknesses fractions of the
/// full one.
struct TaperStruct {
    int enabled;            ///< non-zero when taper applies
    double startTaperEnd;   ///< where the start taper has reached full thickness
    double endTaperBegin;   ///< where the end taper begins
    double startThickness;  ///< at the start of the stroke
    double endThickness;    ///< at the end of the stroke
    double startShape;      ///< exponent of the start taper's curve, 1.0 is linear
    double endShape;        ///< exponent of the end taper's curve, 1.0 is linear
    double startTaperBegin; ///< where the start taper begins
    double endTaperEnd;     ///< where the end taper ends
    int stepAdjustMethod;   ///< `STEP_DYNAMIC`, or any other value for a fixed step
};

/// Thickness factor at path distance `s`; 1 when taper is off.
[[nodiscard]] double taperFactor(PluginHost_API* host, const TaperStruct& taper, double s);

} // namespace orbel
