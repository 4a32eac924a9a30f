#include "render/Taper.h"

namespace orbel {

namespace {

double startFactor(PluginHost_API* host, const TaperStruct& taper, double s) {
    if (taper.startTaperEnd == taper.startTaperBegin) {
        return 1.0;
    }
    double u = (s - taper.startTaperBegin) / (taper.startTaperEnd - taper.startTaperBegin);
    if (taper.startShape != 1.0) {
        u = host->math_pow(u, taper.startShape);
    }
    return taper.startThickness * (1 - u) + u;
}

double endFactor(PluginHost_API* host, const TaperStruct& taper, double s) {
    if (taper.endTaperEnd == taper.endTaperBegin) {
        return 1.0;
    }
    double u = (s - taper.endTaperBegin) / (taper.endTaperEnd - taper.endTaperBegin);
    if (taper.endShape != 1.0) {
        u = 1 - host->math_pow(1 - u, taper.endShape);
    }
    return taper.endThickness * u + (1 - u);
}

} // namespace

double taperFactor(PluginHost_API* host, const TaperStruct& taper, double s) {
    if (taper.enabled == 0) {
        return 1.0;
    }
    if (s < taper.startTaperEnd) {
        return startFactor(host, taper, s);
    }
    if (s > taper.endTaperBegin) {
        return endFactor(host, taper, s);
    }
    return 1.0;
}

} // namespace orbel
