#include "render/StampSpots.h"

#include "pixel/Acceleration.h"

namespace orbel {

#if !ORBEL_HAVE_HIGHWAY

SpotProjector spotProjector(int /*level*/) {
    return nullptr;
}

#endif

void projectSpots(PluginHost_API* host, const ProjectionSetup& setup, StampSpots* spots) {
    const SpotProjector vectors = spotProjector(accelerationLevel());
    if (vectors != nullptr && setup.view == VIEW_CAMERA && !(setup.bend > 0)) {
        vectors(setup, spots);
        return;
    }
    for (std::size_t i = 0; i < spots->count; ++i) {
        const double part = spots->along[i];
        spots->x[i] = (spots->beginX[i] + spots->spanX[i] * part / spots->length[i]) / setup.scaleX;
        spots->y[i] = (spots->beginY[i] + spots->spanY[i] * part / spots->length[i]) / setup.scaleY;
        spots->depth[i] = 0.0;
        project(host, &spots->x[i], &spots->y[i], &spots->depth[i], &spots->radius[i], setup);
    }
}

} // namespace orbel
