#pragma once

#include "render/Projection.h"

#include <cstddef>

namespace orbel {

/// Places on the chords of a flat path that stamps fall on, as many as are worth projecting
/// together.
struct StampSpots {
    static constexpr std::size_t capacity = 64;

    std::size_t count = 0;
    // In: where the chord begins and what it adds, how far along it and how long it is, in output
    // pixels; and the stamp's radius, in full-resolution units.
    alignas(64) double beginX[capacity] = {};
    alignas(64) double beginY[capacity] = {};
    alignas(64) double spanX[capacity] = {};
    alignas(64) double spanY[capacity] = {};
    alignas(64) double along[capacity] = {};
    alignas(64) double length[capacity] = {};
    alignas(64) double radius[capacity] = {};
    // Out, with the radius: as `project` gives them.
    alignas(64) double x[capacity] = {};
    alignas(64) double y[capacity] = {};
    alignas(64) double depth[capacity] = {};

    /// A place that lies on no chord. Adding a negative zero changes nothing.
    void addPoint(double pointX, double pointY, double itsRadius) {
        add(pointX, pointY, -0.0, -0.0, 1.0, 1.0, itsRadius);
    }
    void add(double fromX, double fromY, double acrossX, double acrossY, double distance,
             double chord, double itsRadius) {
        beginX[count] = fromX;
        beginY[count] = fromY;
        spanX[count] = acrossX;
        spanY[count] = acrossY;
        along[count] = distance;
        length[count] = chord;
        radius[count] = itsRadius;
        ++count;
    }
};

/// Projects all places, each as `project` does it, to the same bits.
void projectSpots(PluginHost_API* host, const ProjectionSetup& setup, StampSpots* spots);

/// The same with vectors, for a flat path seen by the camera; null for level 0.
using SpotProjector = void (*)(const ProjectionSetup& setup, StampSpots* spots);
[[nodiscard]] SpotProjector spotProjector(int level);

} // namespace orbel
