#include "farm/SlurmEngine.h"

#include "farm/Command.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <sstream>

namespace orbel {

namespace {

/// What a cluster takes in one array where it does not say.
constexpr long usualArray = 1000;

std::string firstLine(const std::string& text) {
    return text.substr(0, text.find('\n'));
}

[[noreturn]] void refuse(const std::string& command, const std::string& words) {
    const std::string why = words.empty() ? "the command is missing" : words;
    throw MediaError("Slurm", command, "it refuses: " + firstLine(why),
                     "look at the cluster (sinfo, scontrol ping), then try again",
                     MediaError::Passing);
}

std::string run(const std::vector<std::string>& arguments, const std::string& input) {
    CommandResult result = runCommand(arguments, input);
    if (result.code != 0) {
        refuse(arguments.front(), result.err);
    }
    return std::move(result.out);
}

/// The largest array that the cluster takes.
long largestArray() {
    const CommandResult result = runCommand({"scontrol", "show", "config"}, "");
    const std::size_t at = result.out.find("MaxArraySize");
    const std::size_t digits = result.out.find_first_of("0123456789", at);
    long size = 0;
    if (at == std::string::npos || digits == std::string::npos) {
        return usualArray;
    }
    std::from_chars(result.out.data() + digits, result.out.data() + result.out.size(), size);
    return std::max(1L, size - 1); // the largest index is one below it
}

std::string joined(const std::vector<std::string>& words, char separator) {
    std::string text;
    for (const std::string& word : words) {
        if (!text.empty()) {
            text.push_back(separator);
        }
        text.append(word);
    }
    return text;
}

/// The program's words, and what becomes of a task that could go well another time.
std::string taskScript(const Job& job, const Submission& submission, long offset) {
    std::ostringstream script;
    script << "#!/bin/sh\n"
           << shellQuoted(submission.program) << " farm task " << shellQuoted(job.folder)
           << " --list " << shellQuoted(submission.list) << " --index $((SLURM_ARRAY_TASK_ID + "
           << offset << "))"
           << " --threads "
           << (submission.threads > 0 ? std::to_string(submission.threads)
                                      : "\"${SLURM_CPUS_ON_NODE:-1}\"")
           << " --scratch \"${TMPDIR:-/tmp}\"\ncode=$?\n"
           << "case $code in 130|143) exit $code ;; esac\n" // somebody wants it to end
           << "if [ $code -ge 75 ] && [ \"${SLURM_RESTART_COUNT:-0}\" -lt " << mostAttempts - 1
           << " ]; then\n"
           << "    scontrol requeue \"$SLURM_JOB_ID\" && sleep 30\n"
           << "fi\nexit $code\n";
    return script.str();
}

std::string joinScript(const Job& job, const Submission& submission) {
    return "#!/bin/sh\nexec " + shellQuoted(submission.program) + " farm join " +
           shellQuoted(job.folder) + "\n";
}

/// Machines that can be left out: none when nothing would remain.
std::vector<std::string> excludable(const std::vector<std::string>& machines) {
    if (machines.empty()) {
        return {};
    }
    std::istringstream nodes(runCommand({"sinfo", "-h", "-N", "-o", "%N"}, "").out);
    std::vector<std::string> found;
    bool othersRemain = false;
    for (std::string node; nodes >> node;) {
        const bool named = std::find(machines.begin(), machines.end(), node) != machines.end();
        othersRemain = othersRemain || !named;
        if (named && std::find(found.begin(), found.end(), node) == found.end()) {
            found.push_back(node);
        }
    }
    return othersRemain ? found : std::vector<std::string>{};
}

std::vector<std::string> common(const Job& job, const Submission& submission,
                                const std::string& log) {
    std::vector<std::string> words{"sbatch",
                                   "--parsable",
                                   "--requeue",
                                   "--open-mode=append",
                                   "--chdir=" + job.folder,
                                   "--output=" + job.folder + "/logs/" + log,
                                   "--job-name=orbel-" +
                                       std::filesystem::path(job.folder).stem().string()};
    if (const std::vector<std::string> without = excludable(submission.without); !without.empty()) {
        words.push_back("--exclude=" + joined(without, ','));
    }
    return words;
}

std::vector<std::string> taskCommand(const Job& job, const Submission& submission, long count) {
    std::vector<std::string> words = common(job, submission, "task-%A-%a-%N.log");
    std::string array = "--array=0-";
    array.append(std::to_string(count - 1));
    if (submission.workers > 0) {
        array.append(1, '%').append(std::to_string(submission.workers));
    }
    words.push_back(std::move(array));
    if (submission.threads > 0) {
        words.push_back("--cpus-per-task=" + std::to_string(submission.threads));
    }
    return words;
}

std::vector<std::string> joinCommand(const Job& job, const Submission& submission,
                                     const std::vector<std::string>& after) {
    std::vector<std::string> words = common(job, submission, "join-%j.log");
    if (!after.empty()) {
        words.push_back("--dependency=afterany:" + joined(after, ':'));
    }
    return words;
}

/// Calls `action` with the first index and the length of every array.
template<typename Action>
void forEachArray(const Submission& submission, const Action& action) {
    const auto total = static_cast<long>(submission.chunks.size());
    const long most = largestArray();
    for (long offset = 0; offset < total; offset += most) {
        action(offset, std::min(most, total - offset));
    }
}

std::string idIn(const std::string& answer) {
    const std::string line = firstLine(answer);
    return line.substr(0, line.find(';'));
}

} // namespace

std::vector<std::string> SlurmEngine::submit(const Job& job, const Submission& submission) {
    std::vector<std::string> ids;
    try {
        forEachArray(submission, [&](long offset, long count) {
            ids.push_back(idIn(
                run(taskCommand(job, submission, count), taskScript(job, submission, offset))));
        });
        ids.push_back(idIn(run(joinCommand(job, submission, ids), joinScript(job, submission))));
    } catch (const MediaError&) {
        if (!ids.empty()) {
            cancel(ids);
        }
        throw;
    }
    return ids;
}

std::string SlurmEngine::describe(const Job& job, const Submission& submission) {
    std::ostringstream text;
    std::vector<std::string> ids;
    forEachArray(submission, [&](long offset, long count) {
        text << "$ " << joined(taskCommand(job, submission, count), ' ') << '\n'
             << taskScript(job, submission, offset) << '\n';
        ids.push_back("ARRAY" + std::to_string(ids.size() + 1));
    });
    text << "$ " << joined(joinCommand(job, submission, ids), ' ') << '\n'
         << joinScript(job, submission);
    return text.str();
}

EngineState SlurmEngine::state(const std::vector<std::string>& ids) {
    EngineState state;
    const CommandResult queue =
        runCommand({"squeue", "-h", "-r", "-o", "%A %T", "-j", joined(ids, ',')}, "");
    // A single job that is long gone is an error, too; it neither waits nor runs.
    if (queue.code != 0 && queue.err.find("Invalid job id") == std::string::npos) {
        refuse("squeue", queue.err);
    }
    std::istringstream lines(queue.out);
    std::string id;
    std::string word;
    while (lines >> id >> word) {
        const bool waits = word == "PENDING" || word == "CONFIGURING" || word == "REQUEUED";
        const bool runs = word == "RUNNING" || word == "COMPLETING" || word == "SUSPENDED";
        state.waiting += waits ? 1 : 0;
        state.running += runs ? 1 : 0;
    }
    return state;
}

void SlurmEngine::cancel(const std::vector<std::string>& ids) {
    std::vector<std::string> words{"scancel"};
    words.insert(words.end(), ids.begin(), ids.end());
    static_cast<void>(run(words, ""));
}

} // namespace orbel
