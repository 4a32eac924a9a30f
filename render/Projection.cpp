#include "render/Projection.h"

#include "render/Units.h"

namespace orbel {

namespace {

// Rolls the plane around a cylinder whose axis lies in the plane and is turned by the bend axis.
Vx_Point4 bent(PluginHost_API* host, double x, double y, const ProjectionSetup& setup) {
    const double w = setup.width / setup.scaleX;
    const double h = setup.height / setup.scaleY;
    const double radius = w / (setup.bend * PI);
    const double dx = x - w / 2;
    const double dy = y - h / 2;
    const double r = host->math_sqrt(dx * dx + dy * dy);
    const double theta = host->math_atan2(dy, dx) - setup.bendAxis;
    const double x1 = r * host->math_cos(theta) + w / 2;
    const double y1 = r * host->math_sin(theta);
    const double phi = (x1 / w) * PI * setup.bend + (PI / 2 - setup.bend * PI / 2);
    const double bentX = -radius * host->math_cos(phi);
    const double rise = radius * host->math_sin(phi);
    const double r2 = host->math_sqrt(y1 * y1 + bentX * bentX);
    const double theta2 = host->math_atan2(y1, bentX) + setup.bendAxis;
    return {r2 * host->math_cos(theta2) + w / 2, r2 * host->math_sin(theta2) + h / 2,
            setup.bendAroundCenter != 0 ? -rise : -(rise - radius), 1.0};
}

void projectPerspective(const Vx_Point4& p, double* x, double* y, double* depth, double* size,
                        const ProjectionSetup& setup) {
    if (p.z == 0.0) {
        *x = *y = *depth = *size = 0.0;
        return;
    }
    *x = p.x * setup.scaleX / p.z * setup.zoom * setup.horizontalAspect + setup.width / 2;
    *y = p.y * setup.scaleY / p.z * setup.zoom + setup.height / 2;
    *depth = p.z;
    *size = *size / p.z * setup.scaleX * setup.zoom;
}

void projectOrthographic(const Vx_Point4& p, double* x, double* y, const ProjectionSetup& setup) {
    const double sx = setup.scaleX;
    const double sy = setup.scaleY;
    *x = p.x * sx;
    *y = p.y * sy;
    switch (setup.view) {
    case VIEW_FRONT:
        break;
    case VIEW_LEFT:
        *x = setup.width / 2 - p.z * sx;
        break;
    case VIEW_BACK:
        *x = setup.width - p.x * sx;
        break;
    case VIEW_RIGHT:
        *x = p.z * sx + setup.width / 2;
        break;
    case VIEW_BOTTOM:
        *y = p.z * sy + setup.height / 2;
        break;
    default: // top
        *y = setup.height / 2 - p.z * sy;
        break;
    }
}

} // namespace

void project(PluginHost_API* host, double* x, double* y, double* depth, double* size,
             const ProjectionSetup& setup) {
    const Vx_Point4 point =
        setup.bend > 0 ? bent(host, *x, *y, setup) : Vx_Point4{*x, *y, 0.0, 1.0};
    Vx_Point4 seen;
    TransformPoint4(&point, &setup.viewFromPath, &seen);
    if (setup.view == VIEW_CAMERA) {
        projectPerspective(seen, x, y, depth, size, setup);
        return;
    }
    Vx_Point4 placed;
    TransformPoint4(&point, &setup.layerFromPath, &placed);
    projectOrthographic(placed, x, y, setup);
    *size = *size * setup.scaleX;
    *depth = seen.z; // clipping and fading still follow the camera
}

// On a flat path that the camera sees, the depth is enough to know.
double projectedSize(PluginHost_API* host, double x, double y, double size,
                     const ProjectionSetup& setup) {
    if (setup.view == VIEW_CAMERA && !(setup.bend > 0)) {
        const auto& m = setup.viewFromPath.m;
        const double z = x * m[0][2] + y * m[1][2] + 0.0 * m[2][2] + 1.0 * m[3][2];
        return z == 0.0 ? 0.0 : size / z * setup.scaleX * setup.zoom;
    }
    double depth = 0.0;
    project(host, &x, &y, &depth, &size, setup);
    return size;
}

} // namespace orbel
