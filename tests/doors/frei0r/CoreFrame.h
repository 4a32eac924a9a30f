#pragma once

#include "doors/memory/ParameterStore.h"
#include "tests/doors/frei0r/LoadedPlugin.h"

#include <string>

namespace orbel::frei0r {

/// What the core makes of a straight picture without any plug-in.
struct CoreScene {
    ParameterStore parameters;
    std::string shape;
    double frame = 0.0;
    double pixelAspect = 1.0;
    double renderScaleX = 1.0;
    double renderScaleY = 1.0;
};

Pixels coreFrame(CoreScene& scene, unsigned width, unsigned height, const Pixels& input);

} // namespace orbel::frei0r
