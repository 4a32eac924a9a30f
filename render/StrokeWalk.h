#pragma once

#include "host/PluginHost.h"
#include "render/Projection.h"
#include "render/Taper.h"

#include <span>

namespace orbel {

class OutlineChords;

/// One stretch of stroke along one outline. Lengths are path distances in output pixels.
struct BrushStroke {
    double thickness;    ///< brush radius before taper and perspective, full-resolution units
    double feather;      ///< soft fraction of the brush, 0..1
    double step;         ///< distance between stamps
    double sampleLength; ///< target chord of the path walk
    double intensity;    ///< stamp strength, 0..255
    double startDist;    ///< where drawing starts
    double endDist;      ///< where it ends
    double pathLength;   ///< of the whole outline
    double nearZ;        ///< stamps at this depth or nearer are skipped
    double farZ;         ///< stamps at this depth or farther are skipped
    double fadeZ;        ///< depth from which stamps fade out, to nothing at `farZ`
    TaperStruct taper;
};

/// One round brush dab on the raster.
struct Stamp {
    double x; ///< centre in pixels; pixel (i, j) has its centre at (i, j)
    double y;
    double radius; ///< pixels
    double feather;
    double intensity; ///< 0..255
};

/// Takes the stamps of a stroke in order. What a stamp looks like is the rasteriser's business.
class StampSink {
public:
    virtual void stamp(const Stamp& stamp) = 0;
    /// Takes several, in order; what `stamp` would do with each of them.
    virtual void stampAll(std::span<const Stamp> stamps) {
        for (const Stamp& one : stamps) {
            stamp(one);
        }
    }

protected:
    ~StampSink() = default;
};

/// Draws one stretch of stroke along a checked-out outline: walks the outline and places its stamps
/// on the matte. 0 when complete, otherwise the status of a failing path query or the abort code of
/// `progress`; what was placed until then stays. `chords` are those of this outline when somebody
/// has walked it already; with null it is walked anew. The stamps and the calls of `progress` are
/// the same either way.
int DrawBezierPathLin(PluginHost_API* host, StampSink& matte, void* const* effectRef, void* path,
                      const BrushStroke& stroke, const ProjectionSetup& projection,
                      OutlineChords* chords = nullptr);

} // namespace orbel
