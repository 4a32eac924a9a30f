#pragma once

#include "host/Numeric.h"
#include "host/PluginHost.h"

#include <array>
#include <cstddef>
#include <limits>
#include <vector>

namespace orbel {

/// Fetches the anchor of vertex `index`; the outputs stay when there is no such vertex. Returns the
/// path's status.
int GetVertex(PluginHost_API* host, void* const* effectRef, void* path, long index, double* x,
              double* y);

/// The point at parameter `t`: its integer part is the segment, its fraction the parameter within.
/// A parameter beyond the end wraps around; on an open path it first runs from the last anchor back
/// to the first.
void EvalBezier(PluginHost_API* host, void* const* effectRef, void* path, long numSegments,
                double t, double* x, double* y);

/// Length of a path as a sum of chords of 0.4 to 0.8 `step` each. Deliberately no exact arc length:
/// the last chord reaches past the end. Asks `progress` as a draw does; when the host wants no
/// more, its answer goes to `abortCode` (null: it is dropped) and the result is what was summed.
double GetBezierPathLen(PluginHost_API* host, void** effectRef, void* path, double unused1,
                        double unused2, double step, int* abortCode = nullptr);

/// Path distances below this are none: it is what rounding leaves of some thousand pixels.
inline constexpr double SMALLEST_DISTANCE = 1e-12;

/// 1 when all vertices of the segments of both paths are exactly equal, else 0. A NaN is a
/// difference.
int CmpMask(PluginHost_API* host, void** effectRef, void* pathA, void* pathB);

/// 1 when every compared path is equal at the two times, else 0. With `allPaths` 0 only the one at
/// `pathIndex`. `arg1` and `arg2` go to `CheckoutPath` as time step and time scale.
int CmpMasks(PluginHost_API* host, void** effectRef, void** compareRef, int allPaths,
             long pathIndex, long timeA, long timeB, long arg1, long arg2);

/// Bytes that what is remembered of outlines may still take, shared by all outlines of a frame.
class OutlineMemory {
public:
    explicit OutlineMemory(std::size_t bytes) : m_left(bytes) {}
    /// False when less than that is left; then nothing is taken.
    bool take(std::size_t bytes) {
        if (bytes > m_left) {
            return false;
        }
        m_left -= bytes;
        return true;
    }
    void giveBack(std::size_t bytes) { m_left += bytes; }

private:
    std::size_t m_left;
};

/// Evaluates one path at many parameters. Keeps the coefficients of the segment it is on, or those
/// of all segments; then the path is asked no more.
class BezierSampler {
public:
    struct Point {
        double x;
        double y;
    };

    /// With a `memory` every vertex is fetched now, and only once, as far as the memory allows it.
    BezierSampler(PluginHost_API* host, void* const* effectRef, void* path, long numSegments,
                  OutlineMemory* memory = nullptr);
    [[nodiscard]] Point at(double t) {
        const long segment = static_cast<long>(saturateTo<int>(t));
        if (segment != m_number) {
            enter(segment);
        }
        const double u = t - static_cast<double>(segment);
        return {m_segment.x.at(u), m_segment.y.at(u)};
    }

    /// What `at` gives for up to `count` parameters, as long as they lie in the segment of the
    /// first one; none is below it. Gives how many do.
    int at(const double* parameters, int count, double* x, double* y);

    /// Bytes taken from the memory; its owner gives them back.
    [[nodiscard]] std::size_t keptBytes() const { return m_kept.size() * sizeof(Segment); }
    /// Whether both keep all their segments and these are the same to the last bit.
    [[nodiscard]] bool isSameCurve(const BezierSampler& other) const;
    /// Goes on with another handle of the same outline.
    void setPath(void* path) { m_path = path; }
    [[nodiscard]] long numSegments() const { return m_numSegments; }

private:
    struct Coefficients {
        double a;
        double b;
        double c;
        double p0;
        [[nodiscard]] double at(double u) const { return (a * u * u * u + b * u * u) + c * u + p0; }
    };
    struct Segment {
        Coefficients x;
        Coefficients y;
    };
    static Coefficients coefficients(double p0, double p1, double p2, double p3);
    static Segment join(const Vx_PathVertex& from, const Vx_PathVertex& to);
    [[nodiscard]] Vx_PathVertex vertex(long index);
    void keepSegments();
    void enter(long segment);

    PluginPath_API* m_paths;
    void* const* m_effectRef;
    void* m_path;
    long m_numSegments;
    long m_numVertices;
    long m_number = std::numeric_limits<long>::min(); // none yet
    Segment m_segment{};
    std::vector<Segment> m_kept;
};

/// Walks a path in chords of 0.4 to 0.8 of a target length, by doubling, halving and bisecting the
/// step of the path parameter. Every measurement and every draw of a path makes the very same
/// chords.
class ChordWalk {
public:
    using Point = BezierSampler::Point;
    enum class Trial {
        Rejected, ///< too long or too short: try again
        Accepted, ///< `chord` leads to `end`
        Ended,    ///< no further chord can be found
    };

    ChordWalk(PluginHost_API* host, BezierSampler* path, double targetLength);
    /// One evaluation of the path.
    Trial tryChord();
    /// Tries until a chord is accepted; false when no further chord can be found. Not to be mixed
    /// with single trials.
    bool next() {
        if (m_ahead.next < m_ahead.end || findAhead()) {
            takeAhead();
            return true;
        }
        return search();
    }

    [[nodiscard]] Point begin() const { return m_begin; }
    [[nodiscard]] Point end() const { return m_end; }
    /// Length of the accepted chord.
    [[nodiscard]] double length() const { return m_chord; }
    /// Path parameter reached.
    [[nodiscard]] double parameter() const { return m_t; }
    /// Evaluations that led to a chord or on to the next trial.
    [[nodiscard]] long evaluations() const { return m_evaluations; }

private:
    static constexpr int MOST_AHEAD = 16;
    /// Chords that the increment as it is leads to one after the other, found together.
    struct Ahead {
        std::array<double, MOST_AHEAD + 1> t{}; // the first of these is where they begin
        std::array<double, MOST_AHEAD + 1> x{};
        std::array<double, MOST_AHEAD + 1> y{};
        std::array<double, MOST_AHEAD> length{};
        int next = 0; // of those that are not taken yet
        int end = 0;
        int most = 1; // worth looking for
    };

    void chooseIncrement();
    Trial judge(const Point& end);
    Trial accept(double squaredChord, const Point& end);
    bool search();
    [[nodiscard]] bool findAhead();
    [[nodiscard]] int findAcceptable(int count);
    void takeAhead() {
        const auto i = static_cast<std::size_t>(m_ahead.next++);
        m_begin = m_end;
        m_end = {m_ahead.x[i + 1], m_ahead.y[i + 1]};
        m_t = m_ahead.t[i + 1];
        m_chord = m_ahead.length[i];
        ++m_evaluations;
    }

    PluginHost_API* m_host;
    BezierSampler* m_path;
    double m_shortest; // squared
    double m_longest;  // squared
    double m_t = 0.0;
    double m_increment;
    double m_high;
    double m_low;
    double m_chord = 0.0;
    Point m_begin;
    Point m_end;
    long m_evaluations = 0;
    int m_trials = 0;
    Ahead m_ahead;
};

/// Evaluations of a path from one call of `progress` to the next.
inline constexpr long EVALUATIONS_PER_PROGRESS = 100;

/// Whether the host is to be told when so many evaluations have become so many.
[[nodiscard]] inline bool isToldOf(long before, long after) {
    return after == before + 1
               ? after % EVALUATIONS_PER_PROGRESS == 0
               : after / EVALUATIONS_PER_PROGRESS > before / EVALUATIONS_PER_PROGRESS;
}

/// Goes on to the next chord of a `ChordWalk`, or of a reader of one, and tells the host of every
/// hundredth evaluation that this took, with the parameter that had been reached then. `found` is
/// false when no further chord can be found. The host's answer when it wants no more, else 0.
template<class Chords>
int nextChord(PluginHost_API* host, long numSegments, Chords* chords, bool* found) {
    const double reached = chords->parameter();
    const long before = chords->evaluations();
    *found = chords->next();
    const long after = chords->evaluations();
    if (!isToldOf(before, after)) {
        return 0;
    }
    for (long told = before - before % EVALUATIONS_PER_PROGRESS + EVALUATIONS_PER_PROGRESS;
         told <= after; told += EVALUATIONS_PER_PROGRESS) {
        const double parameter = *found && told == after ? chords->parameter() : reached;
        const int abort = host->progress(truncateTo<long>(900 * parameter), 1000 * numSegments);
        if (abort != 0) {
            return abort;
        }
    }
    return 0;
}

/// Sums the chords that lead once along an outline of `numSegments`. 0, or the host's answer when
/// it wants no more.
template<class Chords>
int sumChords(PluginHost_API* host, long numSegments, Chords* chords, double* sum) {
    *sum = 0.0;
    for (bool found = true;;) {
        if (const int abort = nextChord(host, numSegments, chords, &found); abort != 0) {
            return abort;
        }
        const double before = *sum;
        if (found) {
            *sum += chords->length();
        }
        if (!(*sum > before) || chords->parameter() >= static_cast<double>(numSegments)) {
            return 0; // without a chord, and where a NaN is all that will come of it, too
        }
    }
}

} // namespace orbel
