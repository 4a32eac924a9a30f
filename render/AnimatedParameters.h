#pragma once

#include "host/ParameterReader.h"
#include "params/RenderArguments.h"

namespace orbel {

/// The parameters that are read again at every motion-blur sample, as the user sees them. All
/// others keep the value of the frame's own time.
struct AnimatedParameters {
    double thickness;
    double feather;
    double opacity;
    double start;
    double end;
    double red;
    double green;
    double blue;
    double positionX;
    double positionY;
    double positionZ;
    double rotationX;
    double rotationY;
    double rotationZ;
    double instances;
    double repeaterScale;
    double displaceX;
    double displaceY;
    double displaceZ;
    double repeaterRotationX;
    double repeaterRotationY;
    double repeaterRotationZ;
    double repeaterOpacity;
    double repeaterFactor;
    double adjustStep;
    double internalOpacity;
    double lowAlphaSatBoost;
    double lowAlphaHueRotation;
    double hiAlphaBrightBoost;
    double zClipFront;
    double zClipBack;
    double bend;
    double startThickness;
    double endThickness;
    double taperStart;
    double taperEnd;
    double startShape;
    double endShape;
    double offset;
    double bendAxis;

    /// Exact; a NaN differs from everything.
    friend bool operator==(const AnimatedParameters&, const AnimatedParameters&) = default;
};

[[nodiscard]] AnimatedParameters animatedParameters(const RenderArguments& args);

/// `now` with every parameter that the host answers replaced by its value at `time` ticks.
[[nodiscard]] AnimatedParameters animatedParametersAt(PluginHost_API* host, long time,
                                                      const AnimatedParameters& now);

} // namespace orbel
