// Stands in for the peers whose libraries are not there.

#include "bench/frame/Subject.h"

namespace orbel::bench {

#ifndef ORBEL_BENCH_CAIRO
SubjectPtr cairoFrame(const FrameSize&, const StrokeKind&) {
    return nullptr;
}
#endif

#ifndef ORBEL_BENCH_QT
SubjectPtr qtFrame(const FrameSize&, const StrokeKind&) {
    return nullptr;
}
#endif

#ifndef ORBEL_BENCH_MYPAINT
SubjectPtr mypaintDabs(const FrameSize&, const StrokeKind&) {
    return nullptr;
}
#endif

} // namespace orbel::bench
