#pragma once

#include "host/PluginHost.h"
#include "render/Matrix4.h"

namespace orbel {

/// Size and render scale of the frame, taken from the host once.
struct FrameGeometry {
    double width = 0.0;  ///< output pixels, at render scale
    double height = 0.0; ///< output pixels, at render scale
    double scaleX = 0.0;
    double scaleY = 0.0;
    double diagonalScale = 0.0; ///< length of the scale vector: sqrt(scaleX^2 + scaleY^2)
    Vx_Vector3 centre;          ///< of the frame, in full-resolution units
};

[[nodiscard]] FrameGeometry frameGeometry(PluginHost_API* host);

} // namespace orbel
