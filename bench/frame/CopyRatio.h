#pragma once

#include "bench/frame/Subject.h"

namespace orbel::bench {

/// Times of a subject and of one plain copy of its picture, taken in turn.
struct CopyRatio {
    double subjectMedian; ///< seconds
    double subjectShortest;
    double copyMedian;
    double copyShortest;

    /// How many copies of the picture the subject costs.
    [[nodiscard]] double median() const { return subjectMedian / copyMedian; }
    [[nodiscard]] double shortest() const { return subjectShortest / copyShortest; }
};

/// Runs a subject and a `memcpy` of as many bytes in turn, `runs` times after a few to warm up.
/// Both find the processor's own caches filled with other things.
[[nodiscard]] CopyRatio measure(Subject& subject, int runs);

} // namespace orbel::bench
