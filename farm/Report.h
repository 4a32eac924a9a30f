#pragma once

#include "farm/Check.h"
#include "farm/Submit.h"

#include <optional>
#include <string>
#include <vector>

namespace orbel {

/// How far a job is: what its folder shows first, and what the engine still has second.
struct JobStatus {
    long chunks = 0;
    long chunksDone = 0;
    long framesDone = 0;
    long frames = 0;
    std::optional<EngineState> engine; ///< absent when it does not answer
    std::string silence;               ///< why it does not
    long lost = 0;                     ///< chunks that are neither there nor to come
    std::vector<MachineCheck> checks;
    bool filmDone = false;
    double framesPerSecond = 0.0; ///< 0 when it cannot be told yet
    std::optional<double> secondsLeft;
};

[[nodiscard]] JobStatus statusOf(const Job& job);

struct VerifyResult {
    long chunks = 0;                   ///< that are sound
    long sampled = 0;                  ///< frames that were rendered again
    std::vector<std::string> problems; ///< empty: everything is as it should be
};

/// Reads every chunk and the film, and compares them with their records; then renders so many
/// frames, chosen by chance, again and compares them byte by byte. Throws MediaError.
[[nodiscard]] VerifyResult verifyJob(const Job& job, int samples, int threads);

} // namespace orbel
