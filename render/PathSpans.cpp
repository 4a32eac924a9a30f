#include "render/PathSpans.h"

namespace orbel {

namespace {

void distributeAsOne(double start, double end, PathInfoType* paths, int numPaths, double offset) {
    double total = 0.0;
    for (int i = 0; i < numPaths; ++i) {
        total += paths[i].length;
    }
    double from = (start + offset) * total;
    double to = (end + offset) * total;
    if (from < 0.0) {
        from = 0.0;
    }
    if (from > total) {
        from = 0.0;
        to = 0.0;
    }
    if (to > total) {
        to = total;
    }
    double reached = 0.0;
    bool started = false;
    bool finished = false;
    for (int i = 0; i < numPaths; ++i) {
        PathInfoType& path = paths[i];
        path.start = 0.0;
        path.end = 0.0;
        if (finished) {
            continue;
        }
        const double next = reached + path.length;
        if (from >= reached && from <= next) {
            path.start = from - reached;
            started = true;
        }
        if (started && to >= reached && to <= next) {
            path.end = to - reached;
            finished = true;
        } else if (started) {
            path.end = path.length;
        }
        reached = next;
    }
}

// Open outlines end where a or b passes 1, closed ones already where it reaches 1: meant.
void distributeOnce(double a, double b, PathInfoType* path) {
    const bool closed = path->closed != 0;
    if (closed ? a >= 1.0 : a > 1.0) {
        path->start = 0.0;
        path->end = 0.0;
        return;
    }
    const bool endsWithin = closed ? b < 1.0 : !(b > 1.0);
    path->start = path->length * a;
    path->end = endsWithin ? path->length * b : path->length;
}

// The stretch of a looping outline; true when `extra` holds a second one. What runs past the end of
// an open outline re-enters from before its beginning, on a closed one it starts again.
bool distributeLooping(double a, double b, bool closedWraps, PathInfoType* path,
                       PathInfoType* extra) {
    const double length = path->length;
    path->start = length * a;
    path->end = length * b;
    const bool closed = path->closed != 0;
    if (!(b > 1.0) || (closed && !closedWraps)) {
        return false;
    }
    if (a < 1.0) {
        *extra = *path;
        extra->start = closed ? 0.0 : length * (a - 1);
        extra->end = length * (b - 1);
        path->end = length;
        return true;
    }
    path->start = length * (a - 1);
    path->end = length * (b - 1);
    return false;
}

} // namespace

void CalcStartEnd(int asOnePath, double start, double end, PathInfoType* paths, int numPaths,
                  double offset, double loopOffset, int loop, int wrapClosed, int noWrapClosed,
                  int* extraCount) {
    *extraCount = 0;
    if (asOnePath != 0) {
        distributeAsOne(start, end, paths, numPaths, offset);
        return;
    }
    const bool closedWraps = wrapClosed != 0 && noWrapClosed == 0;
    for (int i = 0; i < numPaths; ++i) {
        if (loop == 0) {
            distributeOnce(start + offset, end + offset, &paths[i]);
        } else if (distributeLooping(start + loopOffset, end + loopOffset, closedWraps, &paths[i],
                                     &paths[numPaths + *extraCount])) {
            ++*extraCount;
        }
    }
}

} // namespace orbel
