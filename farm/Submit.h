#pragma once

#include "farm/Chunk.h"
#include "farm/DiskEstimate.h"
#include "farm/Engine.h"

namespace orbel {

struct SubmitOptions {
    std::string engine = "slurm";
    std::string program; ///< empty: this one
    long chunkFrames = 0;
    int workers = 0;
    int threads = 0;
    bool restart = false;
};

/// What was handed to an engine for a job, as its folder remembers it.
struct SubmissionRecord {
    std::string engine;
    std::vector<std::string> ids;
};

/// The submissions of a job, oldest first.
[[nodiscard]] std::vector<SubmissionRecord> submissionsOf(const Job& job);

/// Hands in what a job still lacks; returns how many chunks that are. Machines on which tasks have
/// failed are left out where others remain to be had. Throws MediaError, also when an earlier
/// submission still waits or runs.
long submitMissing(const Job& job, const SubmitOptions& options);

/// What `submitMissing` would hand in, for people.
[[nodiscard]] std::string describeSubmission(const Job& job, const SubmitOptions& options);

/// What all engines still have of a job.
[[nodiscard]] EngineState engineState(const Job& job);
/// Lets tasks go that an engine holds.
void releaseHeld(const Job& job);
void cancelJob(const Job& job);

/// Remembers that a task failed on this machine.
void noteFailure(const Job& job, long chunk, const std::string& why);

} // namespace orbel
