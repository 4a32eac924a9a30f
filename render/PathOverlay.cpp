#include "render/PathOverlay.h"

#include "host/RasterProxy.h"
#include "render/StrokeFrame.h"
#include "render/StrokeSample.h"
#include "render/StrokeWalk.h"
#include "shapes/CriticalSection.h"

#include <algorithm>

namespace orbel {

namespace {

using Point = PathOverlay::Point;

constexpr double coarseStep = 3.0; // pixels along the outline between two points of a line
constexpr double fineStep = 1.0;
constexpr double mostPoints = 20000; // of one outline
constexpr double leastPercent = 0.02;
constexpr double nudge = 1.0 / 1024;

/// Keeps where stamps would be.
class PointSink final : public StampSink {
public:
    void stamp(const Stamp& stamp) override { m_points.push_back({stamp.x, stamp.y}); }
    [[nodiscard]] std::vector<Point> take() { return std::move(m_points); }

private:
    std::vector<Point> m_points;
};

/// Places that a pen of no width passes between two distances, about `step` apart.
std::vector<Point> pointsAlong(PluginHost_API* host, void* path, OutlineChords* chords,
                               const BrushStroke& stroke, const ProjectionSetup& projection,
                               double step) {
    BrushStroke pen = stroke;
    pen.thickness = 1.0;
    pen.taper.enabled = 0;
    pen.step = step;
    PointSink sink;
    static_cast<void>(DrawBezierPathLin(host, sink, nullptr, path, pen, projection, chords));
    return sink.take();
}

/// Follows every outline from end to end.
class OutlineFollower final : public SpanRenderer {
public:
    OutlineFollower(const StrokeFrame& frame, PathOverlay* overlay)
        : m_frame(frame), m_overlay(overlay) {}

    int drawSpan(void* path, OutlineChords* chords, const BrushStroke& stroke,
                 const ProjectionSetup& projection) override {
        BrushStroke whole = stroke;
        whole.startDist = 0.0;
        whole.endDist = stroke.pathLength;
        const double step = std::max(coarseStep, stroke.pathLength / mostPoints);
        m_overlay->outlines.push_back(
            {pointsAlong(m_frame.host, path, chords, whole, projection, step), stroke.pathLength,
             step});
        return 0;
    }

private:
    const StrokeFrame& m_frame;
    PathOverlay* m_overlay;
};

/// Finds the two ends of what is drawn: of the first outline, or of all as one.
class EndFinder final : public SpanRenderer {
public:
    EndFinder(const StrokeFrame& frame, PathOverlay* overlay)
        : m_frame(frame), m_overlay(overlay) {}

    int drawSpan(void* path, OutlineChords* chords, const BrushStroke& stroke,
                 const ProjectionSetup& projection) override {
        m_first = m_first == nullptr ? path : m_first;
        if (path != m_first && !m_frame.args.strokeSequentially) {
            return 0;
        }
        const std::vector<Point> points =
            pointsAlong(m_frame.host, path, chords, stroke, projection,
                        std::min(fineStep, (stroke.endDist - stroke.startDist) / 2));
        if (!points.empty()) {
            m_overlay->start = m_overlay->start.value_or(points.front());
            m_overlay->end = points.back();
        }
        return 0;
    }

private:
    const StrokeFrame& m_frame;
    PathOverlay* m_overlay;
    void* m_first = nullptr;
};

/// Projects the middle of the layer.
class CentreFinder final : public SpanRenderer {
public:
    explicit CentreFinder(const StrokeFrame& frame) : m_frame(frame) {}

    int drawSpan(void* /*path*/, OutlineChords* /*chords*/, const BrushStroke& /*stroke*/,
                 const ProjectionSetup& projection) override {
        double x = m_frame.geometry.centre.x;
        double y = m_frame.geometry.centre.y;
        double depth = 0.0;
        double size = 0.0;
        project(m_frame.host, &x, &y, &depth, &size, projection);
        m_centre = Point{x, y};
        return 0;
    }
    [[nodiscard]] std::optional<Point> centre() const { return m_centre; }

private:
    const StrokeFrame& m_frame;
    std::optional<Point> m_centre;
};

/// One frame looked at from several sides.
class OverlayMaker {
public:
    explicit OverlayMaker(StrokeFrame* frame)
        : m_frame(*frame), m_whole(frame->args), m_chords(frame->host) {
        frame->args.enableRepeater = false;
        m_whole.enableRepeater = false;
        m_whole.start = 0.0;
        m_whole.end = 100.0;
        m_whole.offset = 0.0;
    }

    [[nodiscard]] PathOverlay make() {
        PathOverlay overlay;
        overlay.asOne = m_frame.args.strokeSequentially;
        OutlineFollower follower(m_frame, &overlay);
        draw(m_whole, follower);
        RenderArguments drawn = m_frame.args;
        drawn.end = std::max(drawn.end, drawn.start + leastPercent);
        EndFinder ends(m_frame, &overlay);
        draw(drawn, ends);
        overlay.position = centreAt(0.0, 0.0);
        if (overlay.position) {
            overlay.positionAxes = {movement(*overlay.position, centreAt(nudge, 0.0)),
                                    movement(*overlay.position, centreAt(0.0, nudge))};
        }
        return overlay;
    }

private:
    void draw(const RenderArguments& parameters, SpanRenderer& renderer) {
        static_cast<void>(
            drawSample(m_frame, parameters, m_frame.currentTime, renderer, &m_chords));
    }

    [[nodiscard]] std::optional<Point> centreAt(double right, double down) {
        RenderArguments moved = m_whole;
        moved.positionX += right;
        moved.positionY += down;
        CentreFinder finder(m_frame);
        draw(moved, finder);
        return finder.centre();
    }

    static Point movement(const Point& from, const std::optional<Point>& to) {
        return to ? Point{((*to)[0] - from[0]) / nudge, ((*to)[1] - from[1]) / nudge} : Point{};
    }

    const StrokeFrame& m_frame;
    RenderArguments m_whole;
    FrameChords m_chords;
};

} // namespace

PathOverlay pathOverlay(PluginHost_API* host) {
    const Stroke_CSLock lock(&g_globalCritSection); // the shape is everybody's
    StrokeFrame frame(host);
    const PluginRasterProxy output(host, host->getOutputRaster(), true, true);
    if (output.getImpl() == nullptr) {
        return {};
    }
    frame.installShape(output.getImpl());
    return OverlayMaker(&frame).make();
}

} // namespace orbel
