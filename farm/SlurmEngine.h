#pragma once

#include "farm/Engine.h"

namespace orbel {

/// Tasks of a Slurm cluster: a job that looks whether its machines can make the film, arrays for
/// the chunks behind it, and a job that joins when they have ended. Needs no accounting.
class SlurmEngine final : public Engine {
public:
    std::vector<std::string> submit(const Job& job, const Submission& submission) override;
    std::string describe(const Job& job, const Submission& submission) override;
    EngineState state(const Job& job, const std::vector<std::string>& ids) override;
    void release(const Job& job, const std::vector<std::string>& ids) override;
    void cancel(const Job& job, const std::vector<std::string>& ids) override;
};

} // namespace orbel
