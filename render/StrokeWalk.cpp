#include "render/StrokeWalk.h"

#include "host/Numeric.h"
#include "render/BezierPath.h"
#include "render/OutlineChords.h"
#include "render/StampSpots.h"

#include <array>

namespace orbel {

namespace {

// No stretch within the ranges of the parameters is longer than two laps of its outline. An end
// that is never reached must not stall a frame.
constexpr double LAPS_PER_WALK = 4;

// Stamps that march on between two calls of `progress`; only very fine dynamic steps are that many.
constexpr long STAMPS_PER_PROGRESS = 1000;

class StrokeWalk {
public:
    StrokeWalk(PluginHost_API* host, void* const* effectRef, void* path, const BrushStroke& stroke,
               const ProjectionSetup& projection, StampSink& sink, OutlineChords* chords)
        : m_host(host),
          m_effectRef(effectRef),
          m_path(path),
          m_stroke(stroke),
          m_projection(projection),
          m_sink(sink),
          m_chords(chords),
          m_step(stroke.step),
          m_dynamic(stroke.taper.enabled != 0 && stroke.taper.stepAdjustMethod == STEP_DYNAMIC) {}

    /// What was placed until the end, or until something went wrong, is handed on.
    int run() {
        const int status = walkPath();
        handOn();
        return status;
    }

private:
    int walkPath();
    int walk(OutlineChords* outline);
    int stampChord(const ChordReader& chords, bool* advances);
    int askOn(const ChordReader& chords);
    void place(double x, double y, double factor);
    void placeOn(const ChordReader& chords, double s);
    void handOn();
    [[nodiscard]] double fadeAt(double depth) const;
    void adjustStep(double x, double y, double factor);
    [[nodiscard]] bool isOffScreen(double planeX, double planeY) const;
    [[nodiscard]] double startFactor() const {
        return m_stroke.taper.enabled != 0 ? m_stroke.taper.startThickness : 1.0;
    }
    [[nodiscard]] double endFactor() const {
        return m_stroke.taper.enabled != 0 ? m_stroke.taper.endThickness : 1.0;
    }
    [[nodiscard]] bool reachedEnd() const { return m_distance > m_stroke.endDist - 0.2 * m_step; }
    void stampVertex(long index, double factor);
    void capEnd();

    PluginHost_API* m_host;
    void* const* m_effectRef;
    void* m_path;
    const BrushStroke& m_stroke;
    const ProjectionSetup& m_projection;
    StampSink& m_sink;
    OutlineChords* m_chords; // null when nobody has walked this outline yet
    long m_segments = 0;
    bool m_open = false;
    double m_step;           // current distance between stamps
    double m_distance = 0.0; // path distance of the chord's beginning
    double m_lastStamp = 0.0;
    long m_unasked = 0; // stamp distances passed, drawn or not, since `progress` was asked
    bool m_dynamic;
    StampSpots m_spots; // placed, not yet handed on
};

int StrokeWalk::walkPath() {
    PluginPath_API* const paths = m_host->getPathAPI();
    if (const int status = paths->PathNumSegments(m_effectRef, m_path, &m_segments); status != 0) {
        return status;
    }
    if (m_segments <= 0) {
        stampVertex(0, startFactor());
        return 0;
    }
    if (const int status = paths->PathIsOpen(m_effectRef, m_path, &m_open); status != 0) {
        return status;
    }
    const double target = m_stroke.sampleLength;
    if (m_chords != nullptr && m_chords->numSegments() == m_segments &&
        m_chords->targetLength() == target) {
        return walk(m_chords);
    }
    OutlineChords chords(m_host, m_effectRef, m_path, m_segments, target, nullptr);
    return walk(&chords);
}

int StrokeWalk::walk(OutlineChords* outline) {
    ChordReader chords(outline);
    if (!(m_stroke.startDist > 0.0) && !(m_stroke.endDist < 0.0)) {
        place(chords.end().x, chords.end().y, startFactor());
    }
    if (m_dynamic) {
        m_step = m_stroke.taper.startThickness * m_stroke.step;
        m_step = m_step < 0.5 ? 0.5 : m_step;
    }
    const double farthest = LAPS_PER_WALK * m_stroke.pathLength;
    for (bool goesOn = true; goesOn;) {
        const long before = chords.evaluations();
        if (const int abort = nextChord(m_host, m_segments, &chords, &goesOn); abort != 0) {
            return abort;
        }
        if (!goesOn) {
            break;
        }
        if (isToldOf(before, chords.evaluations())) {
            m_unasked = 0;
        }
        if (const int abort = stampChord(chords, &goesOn); abort != 0) {
            return abort;
        }
        const double begin = m_distance;
        m_distance += chords.length();
        goesOn = goesOn && !reachedEnd() && m_distance > begin && m_distance <= farthest;
    }
    capEnd();
    return 0;
}

// Where a chord has more stamps than evaluations to tell of, the host is asked all the same.
int StrokeWalk::askOn(const ChordReader& chords) {
    if (++m_unasked < STAMPS_PER_PROGRESS) {
        return 0;
    }
    m_unasked = 0;
    return m_host->progress(truncateTo<long>(900 * chords.parameter()), 1000 * m_segments);
}

// Places the stamps that fall on the accepted chord. `advances` is false when they no longer do.
int StrokeWalk::stampChord(const ChordReader& chords, bool* advances) {
    for (;;) {
        const double s = m_lastStamp + m_step;
        *advances = s > m_lastStamp && m_step >= SMALLEST_DISTANCE;
        if (!*advances || !(s > m_distance) || s > m_distance + chords.length()) {
            return 0;
        }
        if (!(s < m_stroke.startDist) && !(s > m_stroke.endDist)) {
            placeOn(chords, s);
        }
        m_lastStamp = s;
        if (s >= m_stroke.endDist) {
            return 0;
        }
        if (const int abort = askOn(chords); abort != 0) {
            return abort;
        }
    }
}

// Places the stamp at a path distance on the chord.
void StrokeWalk::placeOn(const ChordReader& chords, double s) {
    const ChordReader::Point a = chords.begin();
    const ChordReader::Point b = chords.end();
    const double along = s - m_distance;
    const double factor = taperFactor(m_host, m_stroke.taper, s);
    m_spots.add(a.x, a.y, b.x - a.x, b.y - a.y, along, chords.length(),
                m_stroke.thickness * factor);
    if (m_spots.count == StampSpots::capacity) {
        handOn();
    }
    if (m_dynamic) {
        adjustStep(a.x + (b.x - a.x) * along / chords.length(),
                   a.y + (b.y - a.y) * along / chords.length(), factor);
    }
}

void StrokeWalk::place(double x, double y, double factor) {
    m_spots.addPoint(x, y, m_stroke.thickness * factor);
    if (m_spots.count == StampSpots::capacity) {
        handOn();
    }
}

// Projects what has been placed and hands on what can be seen of it.
void StrokeWalk::handOn() {
    projectSpots(m_host, m_projection, &m_spots);
    std::array<Stamp, StampSpots::capacity> stamps{};
    std::size_t seen = 0;
    for (std::size_t i = 0; i < m_spots.count; ++i) {
        const double radius = m_spots.radius[i];
        const double z = m_spots.depth[i];
        if (radius > 0.0 && z > m_stroke.nearZ && z < m_stroke.farZ) {
            stamps[seen++] = {m_spots.x[i], m_spots.y[i], radius, m_stroke.feather,
                              m_stroke.intensity * fadeAt(z)};
        }
    }
    m_spots.count = 0;
    m_sink.stampAll({stamps.data(), seen});
}

double StrokeWalk::fadeAt(double depth) const {
    if (!(depth > m_stroke.fadeZ)) {
        return 1.0;
    }
    const double range = m_stroke.farZ - m_stroke.fadeZ;
    const double reciprocal = range > 0.0 ? 1.0 / range : 0.0;
    return 1.0 - (depth - m_stroke.fadeZ) * reciprocal;
}

// Thin parts get closer stamps, but never closer than what shows on the screen.
void StrokeWalk::adjustStep(double x, double y, double factor) {
    m_step = m_stroke.step * factor;
    if (!(factor < 1.0)) {
        return;
    }
    const double planeX = x / m_projection.scaleX;
    const double planeY = y / m_projection.scaleY;
    const double pixels = projectedSize(m_host, planeX, planeY, 1.0, m_projection);
    if (pixels * m_step < 0.3) {
        m_step = 0.3 / pixels;
    }
    if (m_step < 0.5 && isOffScreen(planeX, planeY)) {
        m_step = 0.5;
    }
}

bool StrokeWalk::isOffScreen(double planeX, double planeY) const {
    double x = planeX;
    double y = planeY;
    double z = 0.0;
    double size = 1.0;
    project(m_host, &x, &y, &z, &size, m_projection);
    return x < -10 || x > m_projection.width + 10 || y < -10 || y > m_projection.height + 10 ||
           z < 0;
}

void StrokeWalk::stampVertex(long index, double factor) {
    double x = 0.0;
    double y = 0.0;
    if (GetVertex(m_host, m_effectRef, m_path, index, &x, &y) == 0) {
        place(x, y, factor);
    }
}

// The last stamp of an open outline that is drawn to its end sits on the last anchor.
void StrokeWalk::capEnd() {
    if (m_stroke.endDist == m_stroke.pathLength && m_open &&
        m_lastStamp < m_stroke.endDist - 0.2 * m_step) {
        stampVertex(m_segments, endFactor());
    }
}

} // namespace

int DrawBezierPathLin(PluginHost_API* host, StampSink& matte, void* const* effectRef, void* path,
                      const BrushStroke& stroke, const ProjectionSetup& projection,
                      OutlineChords* chords) {
    return StrokeWalk(host, effectRef, path, stroke, projection, matte, chords).run();
}

} // namespace orbel
