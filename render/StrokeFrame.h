#pragma once

#include "host/Numeric.h"
#include "host/PluginHost.h"
#include "params/RenderArguments.h"
#include "render/FrameGeometry.h"
#include "render/Units.h"

namespace orbel {

/// When the samples of a frame are taken.
struct SamplePlan {
    bool blur;         ///< several samples, averaged
    int levels;        ///< number of samples, at least 1
    double sampleStep; ///< ticks between samples
    long firstTime;    ///< ticks
    long lastTime;     ///< ticks

    /// Time of sample `s` in whole ticks.
    [[nodiscard]] long time(int s) const { return firstTime + saturateTo<int>(s * sampleStep); }
};

/// What stays the same for all samples of a frame: parameters at the frame's own time, geometry,
/// time base and the shape.
struct StrokeFrame {
    PluginHost_API* host;
    RenderArguments args; ///< at the frame's own time
    FrameGeometry geometry;
    int blurMode; ///< "Motion Blur" index + 1: 1 is off
    int timeStep; ///< ticks per frame
    long currentTime;
    int timeScale; ///< ticks per second
    bool compressToFit;
    bool loop;

    explicit StrokeFrame(PluginHost_API* renderHost);

    /// "Transfer Mode" index + 1: 1 is "None".
    [[nodiscard]] int transferMode() const { return menuNumber(args.transferMode); }
    [[nodiscard]] double opacity() const;
    /// The stretch is empty and no sample can make it otherwise.
    [[nodiscard]] bool drawsNothing() const;
    /// Leaves the picture as it is (cleared under "None") and tells the compositing to keep it so.
    void passThrough(int* mode, double* layerOpacity) const;
    /// Makes the shape chosen in the parameters the host's path, scaled to the output.
    void installShape(PluginRaster_API* output) const;
    /// The plan of the samples; a frame in which nothing moves is taken once. `error` receives a
    /// missing camera.
    [[nodiscard]] SamplePlan planSamples(int* error) const;

    /// Reads again at `time` ticks what may move within a frame; what the host does not answer
    /// keeps what it held.
    void readSample(long time, RenderArguments* sample) const;

private:
    [[nodiscard]] bool isStill(const SamplePlan& plan, int* error) const;
};

/// What the user reads when a camera is missing: while planning the samples and while drawing one.
enum class CameraWarning { Planning, Drawing };
void warnOfMissingCamera(PluginHost_API* host, CameraWarning when, double shutterPhase);

} // namespace orbel
