#include "render/BezierPath.h"

#include "host/Numeric.h"

namespace orbel {

namespace {

// Brackets of the step search: these values themselves mean that no bracket is known.
constexpr double NO_HIGH = 1000.0;
constexpr double NO_LOW = -1000.0;
constexpr double FIRST_INCREMENT = 0.01;
constexpr double LARGEST_INCREMENT = 5000.0;

// Outlines that never fit a chord (infinite, NaN or collapsed ones) must not stall a frame.
constexpr int TRIALS_PER_CHORD = 20000;
constexpr long EVALUATIONS_PER_WALK = 1L << 26;

// How many outline indices beyond the last are tried before a comparison gives up.
constexpr long FAILED_CHECKOUTS = 1L << 16;

} // namespace

int GetVertex(PluginHost_API* host, void* const* effectRef, void* path, long index, double* x,
              double* y) {
    Vx_PathVertex vertex{};
    const int status = host->getPathAPI()->PathVertexInfo(effectRef, path, index, &vertex);
    if (status == 0) {
        *x = vertex.x;
        *y = vertex.y;
    }
    return status;
}

void EvalBezier(PluginHost_API* host, void* const* effectRef, void* path, long numSegments,
                double t, double* x, double* y) {
    const BezierSampler::Point point = BezierSampler(host, effectRef, path, numSegments).at(t);
    *x = point.x;
    *y = point.y;
}

BezierSampler::BezierSampler(PluginHost_API* host, void* const* effectRef, void* path,
                             long numSegments)
    : m_paths(host->getPathAPI()),
      m_effectRef(effectRef),
      m_path(path),
      m_numSegments(numSegments),
      m_numVertices(numSegments) {
    bool open = false;
    m_paths->PathIsOpen(effectRef, path, &open);
    if (open) {
        ++m_numVertices;
    }
}

BezierSampler::Point BezierSampler::at(double t) {
    const long segment = static_cast<long>(saturateTo<int>(t));
    if (segment != m_segment) {
        fetch(segment);
    }
    const double u = t - static_cast<double>(segment);
    return {m_x.at(u), m_y.at(u)};
}

BezierSampler::Coefficients BezierSampler::coefficients(double p0, double p1, double p2,
                                                        double p3) {
    const double c = 3 * (p1 - p0);
    const double b = 3 * (p2 - p1) - c;
    const double a = p3 - p0 - c - b;
    return {a, b, c, p0};
}

void BezierSampler::fetch(long segment) {
    long first = 0;
    long second = 0;
    if (m_numSegments > 0) {
        first = (segment % m_numVertices + m_numVertices) % m_numVertices;
        second = (first + 1) % m_numVertices;
    }
    Vx_PathVertex from{};
    Vx_PathVertex to{};
    m_paths->PathVertexInfo(m_effectRef, m_path, first, &from);
    m_paths->PathVertexInfo(m_effectRef, m_path, second, &to);
    m_x = coefficients(from.x, from.tanOutX, to.tanInX, to.x);
    m_y = coefficients(from.y, from.tanOutY, to.tanInY, to.y);
    m_segment = segment;
}

ChordWalk::ChordWalk(PluginHost_API* host, BezierSampler* path, double targetLength)
    : m_host(host),
      m_path(path),
      m_shortest(0.16 * targetLength * targetLength),
      m_longest(0.64 * targetLength * targetLength),
      m_increment(FIRST_INCREMENT),
      m_high(NO_HIGH),
      m_low(NO_LOW),
      m_begin(path->at(0.0)),
      m_end(m_begin) {
    if (!(targetLength > 0.0 && m_shortest > 0.0)) { // the square may underflow
        m_trials = TRIALS_PER_CHORD;
    }
}

void ChordWalk::chooseIncrement() {
    if (m_high != NO_HIGH) {
        m_increment = m_low != NO_LOW ? (m_high + m_low) / 2 : m_increment / 2;
    } else if (m_low != NO_LOW) {
        m_increment = 2 * m_increment;
    }
}

ChordWalk::Trial ChordWalk::tryChord() {
    if (m_trials == 0) {
        m_begin = m_end;
    }
    chooseIncrement();
    if (m_increment > LARGEST_INCREMENT || m_trials >= TRIALS_PER_CHORD ||
        m_evaluations >= EVALUATIONS_PER_WALK) {
        return Trial::Ended;
    }
    ++m_trials;
    ++m_evaluations;
    const Point end = m_path->at(m_t + m_increment);
    const double dx = end.x - m_begin.x;
    const double dy = end.y - m_begin.y;
    const double squaredChord = dx * dx + dy * dy;
    if (squaredChord > m_longest) {
        m_high = m_high > m_increment ? m_increment : m_high;
        return Trial::Rejected;
    }
    if (squaredChord < m_shortest) {
        m_low = m_increment > m_low ? m_increment : m_low;
        return Trial::Rejected;
    }
    return accept(squaredChord, end);
}

ChordWalk::Trial ChordWalk::accept(double squaredChord, const Point& end) {
    const double t = m_t + m_increment;
    if (!(t > m_t)) {
        return Trial::Ended;
    }
    m_t = t;
    m_end = end;
    m_chord = m_host->math_sqrt(squaredChord);
    m_high = NO_HIGH;
    m_low = NO_LOW;
    m_trials = 0;
    return Trial::Accepted;
}

double GetBezierPathLen(PluginHost_API* host, void** effectRef, void* path, double /*unused1*/,
                        double /*unused2*/, double step) {
    PluginPath_API* const paths = host->getPathAPI();
    long segments = 0;
    bool open = false;
    if (paths->PathNumSegments(effectRef, path, &segments) != 0 || segments <= 0 ||
        paths->PathIsOpen(effectRef, path, &open) != 0) {
        return 0.0;
    }
    BezierSampler sampler(host, effectRef, path, segments);
    ChordWalk walk(host, &sampler, step);
    double length = 0.0;
    for (;;) {
        const ChordWalk::Trial trial = walk.tryChord();
        if (trial == ChordWalk::Trial::Ended) {
            return length;
        }
        if (trial == ChordWalk::Trial::Accepted) {
            length += walk.chord();
            if (walk.parameter() >= static_cast<double>(segments)) {
                return length;
            }
        }
    }
}

int CmpMask(PluginHost_API* host, void** effectRef, void* pathA, void* pathB) {
    PluginPath_API* const paths = host->getPathAPI();
    long countA = 0;
    long countB = 0;
    if (paths->PathNumSegments(effectRef, pathA, &countA) != 0 ||
        paths->PathNumSegments(effectRef, pathB, &countB) != 0 || countA != countB) {
        return 0;
    }
    for (long i = 0; i < countA; ++i) {
        Vx_PathVertex a{};
        Vx_PathVertex b{};
        paths->PathVertexInfo(effectRef, pathA, i, &a);
        paths->PathVertexInfo(effectRef, pathB, i, &b);
        if (!(a == b)) {
            return 0;
        }
    }
    return 1;
}

int CmpMasks(PluginHost_API* host, void** effectRef, void** compareRef, int allPaths,
             long pathIndex, long timeA, long timeB, long arg1, long arg2) {
    PluginPath_API* const paths = host->getPathAPI();
    long count = 0;
    paths->NumPaths(effectRef, &count);
    long index = 1;
    if (allPaths == 0) {
        count = 1;
        index = pathIndex;
    }
    const long lastIndex = index + count + FAILED_CHECKOUTS;
    bool equal = true;
    for (; count >= 1 && equal && index < lastIndex; ++index) {
        const auto id = static_cast<unsigned long>(index);
        void* pathA = nullptr;
        void* pathB = nullptr;
        paths->CheckoutPath(effectRef, id, timeA, arg1, arg2, &pathA);
        paths->CheckoutPath(effectRef, id, timeB, arg1, arg2, &pathB);
        if (pathA != nullptr && pathB != nullptr) {
            equal = CmpMask(host, compareRef, pathA, pathB) != 0;
            --count;
            paths->CheckinPath(effectRef, id, false, pathA);
            paths->CheckinPath(effectRef, id, false, pathB);
        }
    }
    return equal ? 1 : 0;
}

} // namespace orbel
