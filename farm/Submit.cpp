#include "farm/Submit.h"

#include "farm/Check.h"
#include "farm/LocalEngine.h"
#include "farm/SlurmEngine.h"
#include "media/PendingFile.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>

namespace orbel {

namespace {

using nlohmann::json;
namespace fs = std::filesystem;

std::string recordsOf(const Job& job) {
    return job.folder + "/submissions.json";
}

std::vector<std::string> failedMachines(const Job& job) {
    std::set<std::string> machines;
    std::error_code error;
    for (const fs::directory_entry& entry :
         fs::directory_iterator(job.folder + "/failures", error)) {
        const std::string name = entry.path().filename().string();
        machines.insert(name.substr(name.find('@') + 1));
    }
    return {machines.begin(), machines.end()};
}

Submission submissionFor(const Job& job, const SubmitOptions& options, std::size_t number) {
    std::error_code error;
    Submission submission;
    submission.program = options.program.empty()
                             ? fs::read_symlink("/proc/self/exe", error).string()
                             : options.program;
    submission.chunks = missingChunks(job);
    submission.list = job.folder + "/submission-" + std::to_string(number) + ".list";
    submission.workers = options.workers;
    submission.threads = options.threads;
    submission.without = failedMachines(job);
    return submission;
}

void record(const Job& job, const std::vector<SubmissionRecord>& records) {
    json list = json::array();
    for (const SubmissionRecord& item : records) {
        list.push_back({{"engine", item.engine}, {"ids", item.ids}});
    }
    writeWholeFile(recordsOf(job), list.dump(2) + "\n");
}

std::string listed(const std::vector<long>& chunks) {
    std::string text;
    for (const long chunk : chunks) {
        text += std::to_string(chunk) + "\n";
    }
    return text;
}

} // namespace

std::unique_ptr<Engine> engineNamed(const std::string& name) {
    if (name == "slurm") {
        return std::make_unique<SlurmEngine>();
    }
    if (name == "local") {
        return std::make_unique<LocalEngine>();
    }
    throw MediaError(name, "", "there is no such engine", "use slurm or local");
}

std::vector<SubmissionRecord> submissionsOf(const Job& job) {
    std::vector<SubmissionRecord> records;
    std::ifstream stream(recordsOf(job), std::ios::binary);
    const json list = json::parse(stream, nullptr, false);
    if (list.is_array()) {
        for (const json& item : list) {
            records.push_back(
                {item.value("engine", ""), item.value("ids", std::vector<std::string>{})});
        }
    }
    return records;
}

long submitMissing(const Job& job, const SubmitOptions& options) {
    // Two programs that submit at once would both find the same chunks missing.
    const PendingFile sign(job.folder + "/submitting");
    if (const EngineState state = engineState(job); state.waiting + state.running > 0) {
        throw MediaError(job.folder, "", "tasks of this job still wait or run",
                         R"(look with "orbel farm status", or end them with "orbel farm cancel")",
                         MediaError::Passing);
    }
    std::vector<SubmissionRecord> records = submissionsOf(job);
    const Submission submission = submissionFor(job, options, records.size());
    fs::create_directories(job.folder + "/logs");
    forgetChecks(job);
    writeWholeFile(submission.list, listed(submission.chunks));
    records.push_back({options.engine, engineNamed(options.engine)->submit(job, submission)});
    record(job, records);
    return static_cast<long>(submission.chunks.size());
}

std::string describeSubmission(const Job& job, const SubmitOptions& options) {
    const Submission submission = submissionFor(job, options, submissionsOf(job).size());
    return engineNamed(options.engine)->describe(job, submission);
}

EngineState engineState(const Job& job) {
    EngineState all;
    for (const SubmissionRecord& record : submissionsOf(job)) {
        const EngineState state = engineNamed(record.engine)->state(job, record.ids);
        all.waiting += state.waiting;
        all.running += state.running;
        all.held += state.held;
        all.heldWhy = state.held > 0 ? state.heldWhy : all.heldWhy;
        all.away = state.away.empty() ? all.away : state.away;
        all.chunks = std::max(all.chunks, state.chunks);
    }
    return all;
}

void releaseHeld(const Job& job) {
    for (const SubmissionRecord& record : submissionsOf(job)) {
        engineNamed(record.engine)->release(job, record.ids);
    }
}

void cancelJob(const Job& job) {
    for (const SubmissionRecord& record : submissionsOf(job)) {
        const std::unique_ptr<Engine> engine = engineNamed(record.engine);
        if (const EngineState state = engine->state(job, record.ids);
            state.waiting + state.running > 0) {
            engine->cancel(job, record.ids);
        }
    }
}

void noteFailure(const Job& job, long chunk, const std::string& why) {
    std::error_code error;
    fs::create_directories(job.folder + "/failures", error);
    std::ofstream(job.folder + "/failures/" + std::to_string(chunk) + "@" + machineName(),
                  std::ios::app)
        << why << '\n';
}

} // namespace orbel
