#pragma once

#include "farm/Engine.h"

namespace orbel {

/// What a Slurm cluster runs for a job: plain shell, so that a machine on which this program does
/// not start can be told and left out, too. A task that died or says "try again" is put back into
/// the queue, twice at most, and not on a machine where it has failed already.

/// Looks on one machine each whether it can make the film, and leaves those out that cannot of the
/// jobs that wait for this one. Fails when none can.
[[nodiscard]] std::string checkScript(const Job& job, const Submission& submission);

/// One chunk for each task of an array, which begins with this line of the list.
[[nodiscard]] std::string taskScript(const Job& job, const Submission& submission, long offset);

[[nodiscard]] std::string joinScript(const Job& job, const Submission& submission);

} // namespace orbel
