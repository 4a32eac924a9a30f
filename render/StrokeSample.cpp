#include "render/StrokeSample.h"

#include "params/ParameterTable.h"
#include "render/BezierPath.h"
#include "render/Camera.h"
#include "render/Units.h"

#include <algorithm>
#include <limits>

namespace orbel {

namespace {

constexpr double FULL_INTENSITY = 255.0;

int instanceCount(double instances) {
    return saturateTo<int>(std::min(instances, findParameter(PARAM_INSTANCES)->bounds().max));
}

/// Draws all spans of a sample from one place in space.
class SampleDrawing {
public:
    SampleDrawing(const StrokeFrame& frame, const SampleValues& values, const SpanTable& spans,
                  long time, SpanRenderer& renderer, FrameChords* chords)
        : m_frame(frame),
          m_values(values),
          m_spans(spans),
          m_time(time),
          m_renderer(renderer),
          m_chords(chords) {}

    /// Camera and layer transforms; non-zero when there is no camera.
    int placeCamera();
    int drawStroke();
    int drawRepeater();

private:
    int drawSpans(const Vx_Matrix4& layerFromPath, double intensity);
    int drawCheckedOut(const PathInfoType& span, const Vx_Matrix4& layerFromPath, double intensity);
    [[nodiscard]] TaperStruct taper(const PathInfoType& span) const;
    [[nodiscard]] ProjectionSetup projection(const Vx_Matrix4& layerFromPath) const;
    [[nodiscard]] Vx_Matrix4 instanceLayer() const;
    [[nodiscard]] Vx_Matrix4 stepMatrix(const Vx_Vector3& displacement, const Vx_Vector3& rotation,
                                        bool mirrored) const;
    int drawInstances(bool mirrored);

    const StrokeFrame& m_frame;
    const SampleValues& m_values;
    const SpanTable& m_spans;
    long m_time;
    SpanRenderer& m_renderer;
    FrameChords* m_chords;
    Vx_Matrix4 m_cameraFromWorld{};
    double m_zoom = 0.0;
};

int SampleDrawing::placeCamera() {
    Vx_Matrix4 worldFromCamera;
    const int error = UGetCameraMatrix(m_frame.host, &m_frame.args, &worldFromCamera, &m_zoom,
                                       m_time, m_frame.timeScale, m_frame.geometry);
    if (error != 0) {
        warnOfMissingCamera(m_frame.host, CameraWarning::Drawing, m_frame.args.shutterPhase);
        return error;
    }
    InverseMatrix4(&worldFromCamera, &m_cameraFromWorld);
    return 0;
}

int rotateTranslateFlag(const StrokeFrame& frame) {
    return frame.args.order == 0 ? 1 : 0;
}

int SampleDrawing::drawStroke() {
    Vx_Matrix4 layerFromPath;
    BuildTranformMatrix(m_frame.host, &layerFromPath, m_frame.geometry.centre, m_values.position,
                        m_values.rotation, rotateTranslateFlag(m_frame));
    return drawSpans(layerFromPath, m_values.drawingOpacity);
}

int SampleDrawing::drawSpans(const Vx_Matrix4& layerFromPath, double intensity) {
    for (const PathInfoType& span : m_spans.spans()) {
        if (!(span.end > span.start)) {
            continue;
        }
        if (const int error = drawCheckedOut(span, layerFromPath, intensity); error != 0) {
            return error;
        }
    }
    return 0;
}

int SampleDrawing::drawCheckedOut(const PathInfoType& span, const Vx_Matrix4& layerFromPath,
                                  double intensity) {
    PluginPath_API* const paths = m_frame.host->getPathAPI();
    void* path = nullptr;
    if (const int error = paths->CheckoutPath(nullptr, span.pathId, m_time, m_frame.timeStep,
                                              m_frame.timeScale, &path);
        error != 0 || path == nullptr) {
        return error;
    }
    const SampleValues& v = m_values;
    const BrushStroke stroke{v.thickness,
                             v.feather,
                             span.step,
                             v.sampleLength,
                             intensity,
                             span.start,
                             span.end,
                             span.length,
                             v.zClipFront,
                             v.zClipBack,
                             m_frame.args.startFade,
                             taper(span)};
    const int error = m_renderer.drawSpan(path, m_chords->find(span.pathId, path), stroke,
                                          projection(layerFromPath));
    paths->CheckinPath(nullptr, span.pathId, false, path);
    return error;
}

TaperStruct SampleDrawing::taper(const PathInfoType& span) const {
    TaperStruct taper{};
    taper.enabled = m_frame.args.enableTaper ? 1 : 0;
    taper.startThickness = m_values.startThickness;
    taper.endThickness = m_values.endThickness;
    taper.startShape = m_values.startShape;
    taper.endShape = m_values.endShape;
    taper.stepAdjustMethod = menuNumber(m_frame.args.stepAdjustMethod);
    // Squeezed into what is drawn, or fixed to the whole outline.
    const double length =
        m_frame.compressToFit ? (m_values.end - m_values.start) * span.length : span.length;
    const double begin = m_frame.compressToFit ? span.start : 0.0;
    taper.startTaperEnd = m_values.taperStart * length + begin;
    taper.endTaperBegin = m_values.taperEnd * length + begin;
    taper.startTaperBegin = begin;
    taper.endTaperEnd = length + begin;
    return taper;
}

ProjectionSetup SampleDrawing::projection(const Vx_Matrix4& layerFromPath) const {
    ProjectionSetup setup{};
    MultiplyMatrix4(&layerFromPath, &m_cameraFromWorld, &setup.viewFromPath);
    setup.zoom = m_zoom;
    setup.horizontalAspect = 1.0;
    setup.scaleX = m_frame.geometry.scaleX;
    setup.scaleY = m_frame.geometry.scaleY;
    setup.width = m_frame.geometry.width;
    setup.height = m_frame.geometry.height;
    setup.layerFromPath = layerFromPath;
    setup.view = menuNumber(m_frame.args.view);
    setup.bend = m_values.bend;
    setup.bendAroundCenter = m_frame.args.bendAroundCenter ? 1 : 0;
    setup.bendAxis = m_values.bendAxis;
    return setup;
}

int SampleDrawing::drawRepeater() {
    if (!m_frame.args.enableRepeater || m_values.instances < 1) {
        return 0;
    }
    const int error = drawInstances(false);
    return error == 0 && m_frame.args.symmetricDoubler ? drawInstances(true) : error;
}

Vx_Matrix4 SampleDrawing::instanceLayer() const {
    const int flag = rotateTranslateFlag(m_frame);
    const Vx_Vector3 centre = m_frame.geometry.centre;
    const Vx_Vector3 origin{};
    Vx_Matrix4 layer;
    if (flag != 0) {
        BuildTranformMatrix(m_frame.host, &layer, origin, m_values.position, m_values.rotation,
                            flag);
    } else {
        BuildTranformMatrix(m_frame.host, &layer, origin, m_values.position - centre,
                            m_values.rotation, flag);
        addTranslation(&layer, centre);
    }
    return layer;
}

// The mirrored copies go the other way, but they scale in the same direction: meant.
Vx_Matrix4 SampleDrawing::stepMatrix(const Vx_Vector3& displacement, const Vx_Vector3& rotation,
                                     bool mirrored) const {
    Vx_Matrix4 scale;
    IdentityMatrix4(&scale);
    for (int i = 0; i < 3; ++i) {
        scale.m[i][i] = m_values.instanceScale;
    }
    Vx_Matrix4 step;
    BuildTranformMatrix(m_frame.host, &step, {}, mirrored ? -displacement : displacement,
                        mirrored ? -rotation : rotation, 1);
    MultiplyMatrix4(&scale, &step, &step);
    return step;
}

// The first copy is already one step away from the stroke and faded once.
int SampleDrawing::drawInstances(bool mirrored) {
    const Vx_Matrix4 layer = instanceLayer();
    Vx_Vector3 displacement = m_values.displacement * m_values.factor;
    Vx_Vector3 rotation = m_values.instanceRotation * m_values.factor;
    Vx_Matrix4 step = stepMatrix(displacement, rotation, mirrored);
    Vx_Matrix4 instance;
    IdentityMatrix4(&instance);
    addTranslation(&instance, -m_frame.geometry.centre);
    double intensity = m_values.drawingOpacity;
    for (int k = 0; k < m_values.instances; ++k) {
        MultiplyMatrix4(&instance, &step, &instance);
        Vx_Matrix4 layerFromPath;
        MultiplyMatrix4(&instance, &layer, &layerFromPath);
        intensity *= m_values.instanceOpacity;
        if (const int error = drawSpans(layerFromPath, intensity); error != 0) {
            return error;
        }
        if (m_values.factor != 1.0 && k < m_values.instances - 1) {
            displacement = displacement * m_values.factor;
            rotation = rotation * m_values.factor;
            step = stepMatrix(displacement, rotation, mirrored);
        }
    }
    return 0;
}

// 0, or the abort code of `progress`.
int measureOutline(const StrokeFrame& frame, unsigned long id, void* path, double sampleLength,
                   FrameChords* chords, PathInfoType* record) {
    if (OutlineChords* const kept = chords->enter(id, path, sampleLength); kept != nullptr) {
        return kept->measure(&record->length);
    }
    int abort = 0;
    record->length = GetBezierPathLen(frame.host, nullptr, path, frame.geometry.scaleX,
                                      frame.geometry.scaleY, sampleLength, &abort);
    return abort;
}

bool stretchIsEmpty(const SampleValues& values) {
    return values.end <= values.start || values.end + values.offset <= 0.0;
}

} // namespace

SampleValues sampleValues(const StrokeFrame& frame, const RenderArguments& p) {
    const FrameGeometry& g = frame.geometry;
    SampleValues v{};
    v.feather = p.feather * FRACTION_PER_PERCENT;
    v.thickness = p.thickness + p.thickness * v.feather * 0.5;
    v.start = p.start * FRACTION_PER_PERCENT;
    v.end = p.end * FRACTION_PER_PERCENT;
    v.offset = p.offset * FRACTION_PER_PERCENT;
    v.position = {p.positionX * g.width / g.scaleX, p.positionY * g.height / g.scaleY, p.positionZ};
    v.rotation = Vx_Vector3{p.rotationX, p.rotationY, p.rotationZ} * RADIANS_PER_DEGREE;
    v.instances = instanceCount(p.instances);
    v.instanceOpacity = p.repeaterOpacity * FRACTION_PER_PERCENT;
    v.instanceScale = p.repeaterScale * FRACTION_PER_PERCENT;
    v.factor = p.repeaterFactor;
    v.displacement = {p.displaceX, p.displaceY, p.displaceZ};
    v.instanceRotation = Vx_Vector3{p.repeaterRotationX, p.repeaterRotationY, p.repeaterRotationZ} *
                         RADIANS_PER_DEGREE;
    v.drawingOpacity = FULL_INTENSITY * (p.internalOpacity * FRACTION_PER_PERCENT);
    v.bend = p.bend;
    v.bendAxis = p.bendAxis * RADIANS_PER_DEGREE;
    v.zClipFront = p.zClipFront;
    v.zClipBack = p.zClipBack;
    v.taperStart = p.taperStart * FRACTION_PER_PERCENT;
    v.taperEnd = p.taperEnd * FRACTION_PER_PERCENT;
    v.startThickness = p.startThickness * FRACTION_PER_PERCENT;
    v.endThickness = p.endThickness * FRACTION_PER_PERCENT;
    v.startShape = p.startShape;
    v.endShape = p.endShape;
    v.globalStep = 0.2 * (p.adjustStep * FRACTION_PER_PERCENT) * v.thickness * g.diagonalScale;
    v.sampleLength = v.globalStep > 1.0 ? 1.0 : v.globalStep;
    return v;
}

SpanTable::~SpanTable() {
    if (m_records != nullptr) {
        m_host->unlockMemory(m_memory);
    }
    if (m_memory != nullptr) {
        m_host->deallocMemory(m_memory);
    }
}

int SpanTable::allocate(long records) {
    const auto most = std::numeric_limits<int>::max() / static_cast<long>(sizeof(PathInfoType));
    if (records > most) {
        return 1;
    }
    m_memory =
        m_host->allocMemory(static_cast<int>(records) * static_cast<int>(sizeof(PathInfoType)));
    if (m_memory == nullptr) {
        return 1;
    }
    m_records = static_cast<PathInfoType*>(m_host->lockMemory(m_memory));
    return m_records == nullptr ? 1 : 0;
}

int SpanTable::fill(const StrokeFrame& frame, const SampleValues& values, long time,
                    FrameChords* chords) {
    const double offsetFraction = m_host->math_fmod(values.offset, 1.0);
    long count = 0;
    m_host->getPathAPI()->NumPaths(nullptr, &count);
    if (count < 1) {
        return 0;
    }
    long extra = 0;
    if (frame.loop && values.end + offsetFraction > 1.0) {
        extra = frame.args.strokeSequentially ? 1 : count;
    }
    if (const int error = allocate(count + extra); error != 0) {
        return error;
    }
    if (const int error = measure(frame, values, time, count, chords); error != 0) {
        return error;
    }
    int appended = 0;
    CalcStartEnd(frame.args.strokeSequentially ? 1 : 0, values.start, values.end, m_records,
                 m_count, values.offset, offsetFraction, frame.loop ? 1 : 0,
                 frame.args.enableTaper ? 1 : 0, frame.compressToFit ? 1 : 0, &appended);
    m_count += appended;
    return 0;
}

// Outline identifiers are 1-based, so index 0 yields no outline and is passed over like any other
// that cannot be had.
int SpanTable::measure(const StrokeFrame& frame, const SampleValues& values, long time, long count,
                       FrameChords* chords) {
    PluginPath_API* const paths = m_host->getPathAPI();
    for (long i = 0; i <= count && m_count < count; ++i) {
        unsigned long id = 0;
        paths->PathInfo(nullptr, i, &id);
        void* path = nullptr;
        if (const int error =
                paths->CheckoutPath(nullptr, id, time, frame.timeStep, frame.timeScale, &path);
            error != 0) {
            return error;
        }
        if (path == nullptr) {
            continue;
        }
        bool open = false;
        paths->PathIsOpen(nullptr, path, &open);
        PathInfoType& record = m_records[m_count++];
        record = {static_cast<std::uint32_t>(id), 0.0, 0.0, 0.0, values.globalStep, open ? 0 : 1};
        const int abort = measureOutline(frame, id, path, values.sampleLength, chords, &record);
        if (frame.args.exactStepMatch) {
            const double steps = m_host->math_floor(0.5 + record.length / values.globalStep);
            record.step = steps > 0 ? record.length / steps : values.globalStep;
        }
        paths->CheckinPath(nullptr, id, false, path);
        if (abort != 0) {
            return abort;
        }
    }
    return 0;
}

int StampingSpanRenderer::drawSpan(void* path, OutlineChords* chords, const BrushStroke& stroke,
                                   const ProjectionSetup& projection) {
    ProjectionSetup setup = projection;
    setup.width = m_width;
    setup.height = m_height;
    return DrawBezierPathLin(m_host, m_matte, nullptr, path, stroke, setup, chords);
}

int drawSample(const StrokeFrame& frame, const RenderArguments& parameters, long time,
               SpanRenderer& renderer, FrameChords* chords) {
    const SampleValues values = sampleValues(frame, parameters);
    SpanTable spans(frame.host);
    SampleDrawing drawing(frame, values, spans, time, renderer, chords);
    if (const int error = drawing.placeCamera(); error != 0) {
        return error;
    }
    if (stretchIsEmpty(values) || frame.host->getPathAPI() == nullptr) {
        return 0;
    }
    if (const int error = spans.fill(frame, values, time, chords); error != 0) {
        return error;
    }
    if (const int error = drawing.drawStroke(); error != 0) {
        return error;
    }
    return drawing.drawRepeater();
}

} // namespace orbel
