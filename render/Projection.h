#pragma once

#include "host/PluginHost.h"
#include "render/Matrix4.h"

namespace orbel {

/// From where the stroke is seen: the "View" menu index + 1.
enum View : int {
    VIEW_CAMERA = 1,
    VIEW_FRONT = 2,
    VIEW_LEFT = 3,
    VIEW_TOP = 4,
    VIEW_BACK = 5,
    VIEW_RIGHT = 6,
    VIEW_BOTTOM = 7,
};

/// Everything that maps a point of the flat path to the screen, the same for all points of a draw.
struct ProjectionSetup {
    Vx_Matrix4 viewFromPath;       ///< layer transform x inverse camera
    double zoom = 0.0;             ///< distance of the image plane
    double horizontalAspect = 0.0; ///< factor on screen x
    double scaleX = 0.0;           ///< render scale
    double scaleY = 0.0;           ///< render scale
    double width = 0.0;            ///< of the raster, pixels
    double height = 0.0;           ///< of the raster, pixels
    Vx_Matrix4 layerFromPath;      ///< layer transform alone, for the orthographic views
    int view = VIEW_CAMERA;        ///< a `View`
    double bend = 0.0;             ///< half turns that the frame's width is bent by; 0 for flat
    int bendAroundCenter = 0;      ///< bend in front of the frame's plane instead of around it
    double bendAxis = 0.0;         ///< radians
};

/// Bends and projects one point: in, `x` and `y` in full-resolution units and `size` a length
/// there; out, screen position in pixels, depth along the camera's axis and the length in pixels. A
/// point on the camera plane gives zeros everywhere.
void project(PluginHost_API* host, double* x, double* y, double* depth, double* size,
             const ProjectionSetup& setup);

/// What `project` makes of a length alone.
[[nodiscard]] double projectedSize(PluginHost_API* host, double x, double y, double size,
                                   const ProjectionSetup& setup);

} // namespace orbel
