#pragma once

#include "farm/Job.h"

#include <memory>
#include <string>
#include <vector>

namespace orbel {

/// Chunks that are handed to an engine together, and the task that joins the film after them.
struct Submission {
    std::string program;              ///< this program, as the machines that render see it
    std::vector<long> chunks;         ///< ascending
    std::string list;                 ///< a file with their numbers, one a line
    int workers = 0;                  ///< tasks at the same time; 0: as many as there is room for
    int threads = 0;                  ///< of a task; 0: all of its machine
    std::vector<std::string> without; ///< machines to leave out
};

/// What an engine still has of a submission.
struct EngineState {
    long waiting = 0; ///< tasks
    long running = 0;
    long chunks = 0; ///< that these tasks are for, at most
    long held = 0;   ///< of those that wait: that wait for ever unless somebody lets them go
    std::string heldWhy;
    /// While tasks wait: machines that take none, and why, in words of the engine.
    std::vector<std::string> away;
};

/// Something that runs programs on machines. What it has done shows in the job's folder, so it is
/// asked for nothing but what is still to come. All throw MediaError when the engine refuses.
class Engine {
public:
    Engine() = default;
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;
    virtual ~Engine() = default;

    /// Hands in `orbel farm task` for every chunk and `orbel farm join` behind them, and, where
    /// there are several machines, `orbel farm check` before them. Returns what the engine calls
    /// them.
    [[nodiscard]] virtual std::vector<std::string> submit(const Job& job,
                                                          const Submission& submission) = 0;
    /// What `submit` would do, for people; does nothing.
    [[nodiscard]] virtual std::string describe(const Job& job, const Submission& submission) = 0;
    /// What an engine calls by these names now: it may have forgotten a job's tasks and given their
    /// names to another's, which is then left alone.
    [[nodiscard]] virtual EngineState state(const Job& job,
                                            const std::vector<std::string>& ids) = 0;
    /// Lets tasks go that are held.
    virtual void release(const Job& job, const std::vector<std::string>& ids) = 0;
    virtual void cancel(const Job& job, const std::vector<std::string>& ids) = 0;
};

/// The engine of this name: "slurm", or "local" for processes on this machine. Throws MediaError.
[[nodiscard]] std::unique_ptr<Engine> engineNamed(const std::string& name);

/// How often a task is tried before it counts as lost.
inline constexpr int mostAttempts = 3;

} // namespace orbel
