#pragma once

#include "host/PluginHost.h"

#include <limits>

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
/// the last chord reaches past the end. Always finite work.
double GetBezierPathLen(PluginHost_API* host, void** effectRef, void* path, double unused1,
                        double unused2, double step);

/// 1 when all vertices of the segments of both paths are exactly equal, else 0. A NaN is a
/// difference.
int CmpMask(PluginHost_API* host, void** effectRef, void* pathA, void* pathB);

/// 1 when every compared path is equal at the two times, else 0. With `allPaths` 0 only the one at
/// `pathIndex`. `arg1` and `arg2` go to `CheckoutPath` as time step and time scale.
int CmpMasks(PluginHost_API* host, void** effectRef, void** compareRef, int allPaths,
             long pathIndex, long timeA, long timeB, long arg1, long arg2);

/// Evaluates one path at many parameters; keeps the coefficients of the segment it is on.
class BezierSampler {
public:
    struct Point {
        double x;
        double y;
    };

    BezierSampler(PluginHost_API* host, void* const* effectRef, void* path, long numSegments);
    [[nodiscard]] Point at(double t);

private:
    struct Coefficients {
        double a;
        double b;
        double c;
        double p0;
        [[nodiscard]] double at(double u) const { return (a * u * u * u + b * u * u) + c * u + p0; }
    };
    static Coefficients coefficients(double p0, double p1, double p2, double p3);
    void fetch(long segment);

    PluginPath_API* m_paths;
    void* const* m_effectRef;
    void* m_path;
    long m_numSegments;
    long m_numVertices;
    long m_segment = std::numeric_limits<long>::min(); // none yet
    Coefficients m_x{};
    Coefficients m_y{};
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

    [[nodiscard]] Point begin() const { return m_begin; }
    [[nodiscard]] Point end() const { return m_end; }
    /// Length of the accepted chord.
    [[nodiscard]] double chord() const { return m_chord; }
    /// Path parameter reached.
    [[nodiscard]] double parameter() const { return m_t; }
    [[nodiscard]] long evaluations() const { return m_evaluations; }

private:
    void chooseIncrement();
    Trial accept(double squaredChord, const Point& end);

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
};

} // namespace orbel
