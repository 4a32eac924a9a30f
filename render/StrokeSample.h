#pragma once

#include "params/RenderArguments.h"
#include "render/OutlineChords.h"
#include "render/PathSpans.h"
#include "render/Projection.h"
#include "render/StrokeFrame.h"
#include "render/StrokeWalk.h"

#include <span>

namespace orbel {

/// The animated parameters of one sample in the units of the drawing: fractions, radians,
/// full-resolution units.
struct SampleValues {
    double thickness = 0.0; ///< widened by the feather
    double feather = 0.0;
    double start = 0.0;
    double end = 0.0;
    double offset = 0.0;
    Vx_Vector3 position;
    Vx_Vector3 rotation;
    int instances = 0;
    double instanceOpacity = 0.0;
    double instanceScale = 0.0;
    double factor = 0.0;
    Vx_Vector3 displacement;
    Vx_Vector3 instanceRotation;
    double drawingOpacity = 0.0; ///< 0..255
    double bend = 0.0;
    double bendAxis = 0.0;
    double zClipFront = 0.0;
    double zClipBack = 0.0;
    double taperStart = 0.0;
    double taperEnd = 0.0;
    double startThickness = 0.0;
    double endThickness = 0.0;
    double startShape = 0.0;
    double endShape = 0.0;
    double globalStep = 0.0;   ///< distance between stamps, output pixels along the path
    double sampleLength = 0.0; ///< target chord of the path walks, output pixels
};

[[nodiscard]] SampleValues sampleValues(const StrokeFrame& frame, const RenderArguments& p);

/// The stretches of all outlines at one time, in memory of the host.
class SpanTable {
public:
    explicit SpanTable(PluginHost_API* host) : m_host(host) {}
    SpanTable(const SpanTable&) = delete;
    SpanTable& operator=(const SpanTable&) = delete;
    ~SpanTable();

    /// Measures every outline of the host's path and distributes start, end and offset over them.
    /// 0 on success, else a path's status, or 1 when there is no memory.
    /// What was walked on the way stays in `chords`.
    int fill(const StrokeFrame& frame, const SampleValues& values, long time, FrameChords* chords);
    [[nodiscard]] std::span<const PathInfoType> spans() const {
        return {m_records, static_cast<std::size_t>(m_count)};
    }

private:
    int allocate(long records);
    int measure(const StrokeFrame& frame, const SampleValues& values, long time, long count,
                FrameChords* chords);

    PluginHost_API* m_host;
    void* m_memory = nullptr;
    PathInfoType* m_records = nullptr;
    int m_count = 0;
};

/// Draws one stretch of a checked-out outline.
class SpanRenderer {
public:
    /// `chords` are those of the path, null when it has to be walked anew.
    virtual int drawSpan(void* path, OutlineChords* chords, const BrushStroke& stroke,
                         const ProjectionSetup& projection) = 0;

protected:
    ~SpanRenderer() = default;
};

/// Places the stamps of every stretch on a matte.
class StampingSpanRenderer final : public SpanRenderer {
public:
    /// `width` and `height` are those of the matte, in pixels.
    StampingSpanRenderer(PluginHost_API* host, StampSink& matte, int width, int height)
        : m_host(host), m_matte(matte), m_width(width), m_height(height) {}
    int drawSpan(void* path, OutlineChords* chords, const BrushStroke& stroke,
                 const ProjectionSetup& projection) override;

private:
    PluginHost_API* m_host;
    StampSink& m_matte;
    int m_width;
    int m_height;
};

/// Draws the stroke of one sample and its repeated copies. 0, or the first error or abort code.
/// `chords` are kept from sample to sample.
int drawSample(const StrokeFrame& frame, const RenderArguments& parameters, long time,
               SpanRenderer& renderer, FrameChords* chords);

} // namespace orbel
