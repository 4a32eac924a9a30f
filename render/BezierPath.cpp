#include "render/BezierPath.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace orbel {

namespace {

// Brackets of the step search: these values themselves mean that no bracket is known.
constexpr double NO_HIGH = 1000.0;
constexpr double NO_LOW = -1000.0;
constexpr double FIRST_INCREMENT = 0.01;
constexpr double LARGEST_INCREMENT = 5000.0;

// Outlines that never fit a chord (infinite, NaN or collapsed ones) must not stall a frame.
constexpr int TRIALS_PER_CHORD = 20000;

// A walk ends where an outline leads further out than any picture at any scale reaches: what is
// out there is never seen, and would take as long as it is long.
constexpr double LARGEST_COORDINATE = 16777216.0;

// Segments of an outline that are remembered.
constexpr long LARGEST_KEPT = 1L << 20;

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
                             long numSegments, OutlineMemory* memory)
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
    if (memory != nullptr && numSegments > 0 && numSegments < LARGEST_KEPT &&
        memory->take(static_cast<std::size_t>(m_numVertices) * sizeof(Segment))) {
        keepSegments();
    }
}

BezierSampler::Coefficients BezierSampler::coefficients(double p0, double p1, double p2,
                                                        double p3) {
    const double c = 3 * (p1 - p0);
    const double b = 3 * (p2 - p1) - c;
    const double a = p3 - p0 - c - b;
    return {a, b, c, p0};
}

BezierSampler::Segment BezierSampler::join(const Vx_PathVertex& from, const Vx_PathVertex& to) {
    return {coefficients(from.x, from.tanOutX, to.tanInX, to.x),
            coefficients(from.y, from.tanOutY, to.tanInY, to.y)};
}

Vx_PathVertex BezierSampler::vertex(long index) {
    Vx_PathVertex vertex{};
    m_paths->PathVertexInfo(m_effectRef, m_path, index, &vertex);
    return vertex;
}

void BezierSampler::enter(long segment) {
    const long first =
        m_numSegments > 0 ? (segment % m_numVertices + m_numVertices) % m_numVertices : 0;
    const long second = m_numSegments > 0 ? (first + 1) % m_numVertices : 0;
    m_segment = m_kept.empty() ? join(vertex(first), vertex(second))
                               : m_kept[static_cast<std::size_t>(first)];
    m_number = segment;
}

int BezierSampler::at(const double* parameters, int count, double* x, double* y) {
    const long segment = static_cast<long>(saturateTo<int>(parameters[0]));
    if (segment != m_number) {
        enter(segment);
    }
    const auto begin = static_cast<double>(segment);
    int within = 0;
    while (within < count && parameters[within] < begin + 1.0) {
        ++within;
    }
    const Segment s = m_segment;
    for (int i = 0; i < within; ++i) {
        const double u = parameters[i] - begin;
        x[i] = s.x.at(u);
        y[i] = s.y.at(u);
    }
    return within;
}

void BezierSampler::keepSegments() {
    m_kept.reserve(static_cast<std::size_t>(m_numVertices));
    const Vx_PathVertex first = vertex(0);
    Vx_PathVertex from = first;
    for (long i = 1; i < m_numVertices; ++i) {
        const Vx_PathVertex to = vertex(i);
        m_kept.push_back(join(from, to));
        from = to;
    }
    m_kept.push_back(join(from, first));
}

bool BezierSampler::isSameCurve(const BezierSampler& other) const {
    const auto bytes = [](const BezierSampler& s) { return std::as_bytes(std::span(s.m_kept)); };
    return !m_kept.empty() && m_numSegments == other.m_numSegments &&
           std::ranges::equal(bytes(*this), bytes(other));
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
    if (!(targetLength >= SMALLEST_DISTANCE)) {
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
    if (m_increment > LARGEST_INCREMENT || m_trials >= TRIALS_PER_CHORD) {
        return Trial::Ended;
    }
    ++m_trials;
    const Trial trial = judge(m_path->at(m_t + m_increment));
    if (trial != Trial::Ended) {
        ++m_evaluations;
    }
    return trial;
}

ChordWalk::Trial ChordWalk::judge(const Point& end) {
    if (std::fabs(end.x) > LARGEST_COORDINATE || std::fabs(end.y) > LARGEST_COORDINATE) {
        return Trial::Ended;
    }
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

// On most of an outline one increment leads to many chords in a row, each at the first trial. These
// are found together, in arrays: the same numbers, several at a time.
bool ChordWalk::findAhead() {
    if (m_trials != 0 || m_increment > LARGEST_INCREMENT) {
        return false;
    }
    Ahead& a = m_ahead;
    a.t[0] = m_t;
    a.x[0] = m_end.x;
    a.y[0] = m_end.y;
    for (std::size_t i = 0; i < MOST_AHEAD; ++i) {
        a.t[i + 1] = a.t[i] + m_increment;
    }
    a.next = 0;
    a.end = findAcceptable(m_path->at(&a.t[1], a.most, &a.x[1], &a.y[1]));
    a.most = a.end == a.most ? std::min(2 * a.most, MOST_AHEAD) : std::max(a.end, 1);
    return a.end > 0;
}

// How many points from the first on end chords that need no second look.
int ChordWalk::findAcceptable(int count) {
    Ahead& a = m_ahead;
    std::array<double, MOST_AHEAD> squared{};
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
        const double dx = a.x[i + 1] - a.x[i];
        const double dy = a.y[i + 1] - a.y[i];
        squared[i] = dx * dx + dy * dy;
        a.length[i] = std::sqrt(squared[i]);
    }
    std::size_t i = 0;
    while (i < static_cast<std::size_t>(count) && squared[i] >= m_shortest &&
           squared[i] <= m_longest && std::fabs(a.x[i + 1]) <= LARGEST_COORDINATE &&
           std::fabs(a.y[i + 1]) <= LARGEST_COORDINATE && a.t[i + 1] > a.t[i]) {
        ++i;
    }
    return static_cast<int>(i);
}

bool ChordWalk::search() {
    Trial trial = tryChord();
    while (trial == Trial::Rejected) {
        trial = tryChord();
    }
    return trial == Trial::Accepted;
}

double GetBezierPathLen(PluginHost_API* host, void** effectRef, void* path, double /*unused1*/,
                        double /*unused2*/, double step, int* abortCode) {
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
    const int abort = sumChords(host, segments, &walk, &length);
    if (abortCode != nullptr) {
        *abortCode = abort;
    }
    return length;
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
