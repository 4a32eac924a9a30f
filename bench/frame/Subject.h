#pragma once

#include "doors/memory/MemoryImage.h"
#include "host/PluginPath.h"

#include <memory>
#include <string>
#include <vector>

namespace orbel::bench {

/// What is drawn: a star in the middle of the picture.
struct StrokeKind {
    const char* name;
    double radius;  ///< of the brush, pixels
    double feather; ///< percent
    int samples;    ///< averaged under motion blur; 1 is sharp
};

/// The size of a picture.
struct FrameSize {
    const char* name;
    int width;
    int height;
};

/// One way of drawing the stroke over a picture.
class Subject {
public:
    Subject() = default;
    Subject(const Subject&) = delete;
    Subject& operator=(const Subject&) = delete;
    virtual ~Subject() = default;

    /// Brings everything that a run changes back to its beginning. Not timed.
    virtual void prepare() = 0;
    virtual void run() = 0;
    /// Bytes of the picture.
    [[nodiscard]] virtual std::size_t bytes() const = 0;
};

using SubjectPtr = std::unique_ptr<Subject>;

/// An outline in pixels: one segment from each vertex to the next, back to the first at the end.
using ClosedOutline = std::vector<Vx_PathVertex>;

/// The picture that everything is drawn over: opaque, every byte different from its neighbours.
void paintBackdrop(const MemoryImage& image);

/// The whole frame as a host renders it. `level` and `threads` as of `setAccelerationLevel` and
/// `setRenderThreads`.
[[nodiscard]] SubjectPtr orbelFrame(const FrameSize& size, RasterFormat format,
                                    const StrokeKind& kind, int level, int threads);

/// Only the walk along the path and the stamps, of 8-bit pixels, into a layer that is clear. Null
/// for a level without stamp kernels.
[[nodiscard]] SubjectPtr orbelStamps(const FrameSize& size, const StrokeKind& kind, int level,
                                     int threads);

/// The outline that `orbelFrame` strokes.
[[nodiscard]] ClosedOutline starOutline(const FrameSize& size);

// Other people's drawing of the same: a layer cleared, stroked with round joins and laid over the
// picture in an output of its own, as a host wants it; under blur once for every sample, averaged.
// Null where the library was not there when this was built.
[[nodiscard]] SubjectPtr cairoFrame(const FrameSize& size, const StrokeKind& kind);
[[nodiscard]] SubjectPtr qtFrame(const FrameSize& size, const StrokeKind& kind);
/// Only the dabs of a brush along the outline, as far apart as ours; nothing is laid over anything.
[[nodiscard]] SubjectPtr mypaintDabs(const FrameSize& size, const StrokeKind& kind);

} // namespace orbel::bench
