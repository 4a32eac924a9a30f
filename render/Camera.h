#pragma once

#include "host/PluginHost.h"
#include "params/RenderArguments.h"
#include "render/FrameGeometry.h"
#include "render/Matrix4.h"

namespace orbel {

/// The camera at `time` ticks: its matrix (camera to world, full-resolution units) and its zoom
/// (distance of the image plane, same units). The host's own camera when it has one and it is
/// chosen, else the effect's camera parameters. 0 on success.
int UGetCameraMatrix(PluginHost_API* host, const RenderArguments* args, Vx_Matrix4* camera,
                     double* zoom, long time, long timeScale, const FrameGeometry& frame);

} // namespace orbel
