#pragma once

#include "farm/Chunk.h"

#include <string>
#include <vector>

namespace orbel {

/// What a machine has said about a job before it was given any of its chunks.
struct MachineCheck {
    std::string machine;
    std::string problem; ///< why it cannot make the film, in a sentence; empty when it can
};

/// This machine, as the engine calls it.
[[nodiscard]] std::string machineName();

/// Looks whether this machine can make the film: the same program, every file that is read as the
/// job knows it, a scene that can be planned. Remembers what it finds in the job's folder.
[[nodiscard]] FilmResult runCheck(const Job& job, int threads);

/// What the machines found that looked for the newest submission, by their names.
[[nodiscard]] std::vector<MachineCheck> checksOf(const Job& job);

/// Makes room for what those of the next submission will find.
void forgetChecks(const Job& job);

} // namespace orbel
