#pragma once

#include "farm/Engine.h"

namespace orbel {

/// The same tasks as processes of this machine, under a process of their own that outlives the one
/// that submits: for people without a cluster, and for tests.
class LocalEngine final : public Engine {
public:
    std::vector<std::string> submit(const Job& job, const Submission& submission) override;
    std::string describe(const Job& job, const Submission& submission) override;
    EngineState state(const Job& job, const std::vector<std::string>& ids) override;
    void release(const Job& /*job*/, const std::vector<std::string>& /*ids*/) override {}
    void cancel(const Job& job, const std::vector<std::string>& ids) override;
};

/// What that process does: a task for each line of the list, so many at once, each tried again as
/// often as it may be, then the film. Returns the exit code of the last.
int superviseTasks(const Job& job, const std::string& list, int workers, int threads);

} // namespace orbel
