#pragma once

#include "farm/Engine.h"

namespace orbel {

/// Tasks of a Slurm cluster: arrays for the chunks, a job that joins when they have ended. Needs no
/// accounting. A task that died or says "try again" is put back into the queue, twice at most.
class SlurmEngine final : public Engine {
public:
    std::vector<std::string> submit(const Job& job, const Submission& submission) override;
    std::string describe(const Job& job, const Submission& submission) override;
    EngineState state(const std::vector<std::string>& ids) override;
    void cancel(const std::vector<std::string>& ids) override;
};

} // namespace orbel
