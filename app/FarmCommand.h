#pragma once

#include "app/SceneOptions.h"

#include <iosfwd>
#include <optional>
#include <string>

namespace orbel::app {

/// What `orbel farm` is asked to do.
struct FarmOptions {
    std::string command; ///< submit, status, resume, cancel, verify; check, task, join, supervise
    std::string scene;
    std::string job; ///< the job's folder
    std::optional<std::string> output;
    std::optional<std::string> rawFolder;
    SceneOptions overrides;
    std::string engine = "slurm";
    std::string program; ///< as the machines that render see it; empty: this one
    std::string list;
    std::string scratch;
    long chunk = 0;
    long index = 0;
    int nodes = 0;
    int threads = 0;
    int sample = 0;
    bool dryRun = false;
    bool restart = false;
    bool json = false;
};

/// Makes a film on many machines. What it has to say goes to `out`, problems to `err`. Returns an
/// `ExitCode`.
int farmCommand(const FarmOptions& options, std::ostream& out, std::ostream& err);

} // namespace orbel::app
