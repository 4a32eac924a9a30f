#pragma once

#include "host/PluginHost.h"

#include <cstdint>

namespace orbel {

/// One stretch of one outline to be drawn. Lengths and distances are in output pixels along the
/// outline, before the division by the render scale.
struct PathInfoType {
    std::uint32_t pathId; ///< identifier to check the outline out with
    double length;        ///< of the whole outline
    double start;         ///< where the drawn stretch begins
    double end;           ///< where it ends; nothing is drawn unless it lies behind the start
    double step;          ///< distance between brush stamps
    std::int32_t closed;  ///< 1 for a closed outline
};

/// Distributes the drawn stretch over `numPaths` measured outlines: fills their start and end, and
/// may append extra records behind them (at most `numPaths`, only with `loop`) for what wraps
/// around; `extraCount` tells how many. Start, end and offsets are fractions of a whole length.
/// With `asOnePath` all outlines count as one, laid end to end. `wrapClosed` and `noWrapClosed`
/// decide whether a closed outline wraps into a second stretch; the driver passes the taper
/// switches for them, which is meant.
void CalcStartEnd(int asOnePath, double start, double end, PathInfoType* paths, int numPaths,
                  double offset, double loopOffset, int loop, int wrapClosed, int noWrapClosed,
                  int* extraCount);

} // namespace orbel
