#include "farm/SlurmEngine.h"

#include "farm/Command.h"
#include "farm/SlurmScripts.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <set>
#include <sstream>

namespace orbel {

namespace {

/// What a cluster takes in one array where it does not say.
constexpr long usualArray = 1000;

constexpr const char* lookAtIt = "look at the cluster (sinfo, scontrol ping), then try again";
/// Nothing begins here by itself: who types this may sit on a machine that is there to submit only.
constexpr const char* orHere = "render on this machine alone with --engine local";

std::string firstLine(const std::string& text) {
    return text.substr(0, text.find('\n'));
}

/// Where it ends is why; what comes before are attempts.
std::string lastLine(std::string text) {
    while (text.ends_with('\n')) {
        text.pop_back();
    }
    return text.substr(text.rfind('\n') + 1);
}

[[noreturn]] void refuse(const std::string& command, const std::string& words,
                         const std::string& remedy = lookAtIt) {
    const std::string why = lastLine(words);
    throw MediaError("Slurm", command,
                     why.empty() ? "it fails without a word" : "it refuses: " + why, remedy,
                     MediaError::Passing);
}

std::string run(const std::vector<std::string>& arguments, const std::string& input) {
    CommandResult result = runCommand(arguments, input);
    if (result.code != 0) {
        refuse(arguments.front(), result.err);
    }
    return std::move(result.out);
}

/// A command that waits for a controller that is away does so for long; this one answers at once.
void requireController() {
    const CommandResult ping = runCommand({"scontrol", "ping"}, "");
    if (ping.code == noSuchCommand) {
        throw MediaError("Slurm", "scontrol", "there is no such command on this machine",
                         std::string("submit where the cluster is, or ") + orHere);
    }
    if (ping.code != 0 && ping.out.find(" is UP") == std::string::npos) {
        refuse("scontrol ping", ping.err.empty() ? firstLine(ping.out) : ping.err,
               std::string(lookAtIt) + ", or " + orHere);
    }
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

/// The partition that jobs go to when they name none, as these do not.
std::string partition() {
    if (const char* const named = std::getenv("SBATCH_PARTITION")) {
        return named;
    }
    std::istringstream all(runCommand({"sinfo", "-h", "-o", "%P"}, "").out);
    for (std::string name; all >> name;) {
        if (name.ends_with('*')) {
            return name.substr(0, name.size() - 1);
        }
    }
    return {};
}

/// The machines there that answer.
std::set<std::string> machines() {
    std::vector<std::string> words{"sinfo", "-h", "-N", "-t", "idle,mix,alloc,comp", "-o", "%N"};
    if (const std::string name = partition(); !name.empty()) {
        words.insert(words.end(), {"-p", name});
    }
    std::istringstream nodes(runCommand(words, "").out);
    return {std::istream_iterator<std::string>(nodes), {}};
}

/// The submission without machines that this cluster does not know, or with all of them when
/// nothing would remain.
Submission settled(const Submission& submission) {
    Submission own = submission;
    own.without.clear();
    if (submission.without.empty()) {
        return own;
    }
    const std::set<std::string> all = machines();
    std::copy_if(submission.without.begin(), submission.without.end(),
                 std::back_inserter(own.without),
                 [&all](const std::string& machine) { return all.contains(machine); });
    if (own.without.size() == all.size()) {
        own.without.clear();
    }
    return own;
}

std::vector<std::string> common(const Job& job, const Submission& submission,
                                const std::string& log) {
    std::vector<std::string> words{
        "sbatch",
        "--parsable",
        "--requeue",
        "--open-mode=append",
        "--chdir=" + job.folder,
        "--output=" + (log.empty() ? "/dev/null" : job.folder + "/logs/" + log),
        "--job-name=orbel-" + std::filesystem::path(job.folder).stem().string()};
    if (!submission.without.empty()) {
        words.push_back("--exclude=" + joined(submission.without, ','));
    }
    return words;
}

/// On as many machines as are free, one at least.
std::vector<std::string> checkCommand(const Job& job, const Submission& submission) {
    const auto most = std::min(machines().size(), submission.chunks.size());
    std::vector<std::string> words = common(job, submission, "");
    words.insert(
        words.end(),
        {"--hold", "--nodes=1-" + std::to_string(std::max<std::size_t>(most, 1)), "--spread-job"});
    return words;
}

void dependOn(std::vector<std::string>* words, const std::string& condition) {
    words->push_back("--dependency=" + condition);
    words->emplace_back("--kill-on-invalid-dep=yes");
}

std::vector<std::string> taskCommand(const Job& job, const Submission& submission, long count,
                                     const std::string& check) {
    std::vector<std::string> words = common(job, submission, "task-%A-%a-%N.log");
    dependOn(&words, "afterok:" + check);
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
                                     const std::string& check,
                                     const std::vector<std::string>& arrays) {
    std::vector<std::string> words = common(job, submission, "join-%j.log");
    dependOn(&words,
             "afterok:" + check + (arrays.empty() ? "" : ",afterany:" + joined(arrays, ':')));
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
    requireController();
    const Submission own = settled(submission);
    std::vector<std::string> ids;
    std::vector<std::string> arrays;
    try {
        // Held until the others wait for it: it may change what they wait for.
        ids.push_back(idIn(run(checkCommand(job, own), checkScript(job, own))));
        const std::string check = ids.front();
        forEachArray(own, [&](long offset, long count) {
            arrays.push_back(
                idIn(run(taskCommand(job, own, count, check), taskScript(job, own, offset))));
            ids.push_back(arrays.back());
        });
        ids.push_back(idIn(run(joinCommand(job, own, check, arrays), joinScript(job, own))));
        static_cast<void>(run({"scontrol", "release", check}, ""));
    } catch (const MediaError&) {
        if (!ids.empty()) {
            cancel(job, ids);
        }
        throw;
    }
    return ids;
}

std::string SlurmEngine::describe(const Job& job, const Submission& submission) {
    const Submission own = settled(submission);
    std::ostringstream text;
    const auto add = [&text](const std::vector<std::string>& command, const std::string& script) {
        text << "$ " << joined(command, ' ') << '\n' << script << '\n';
    };
    std::vector<std::string> arrays;
    add(checkCommand(job, own), checkScript(job, own));
    forEachArray(own, [&](long offset, long count) {
        add(taskCommand(job, own, count, "CHECK"), taskScript(job, own, offset));
        arrays.push_back("ARRAY" + std::to_string(arrays.size() + 1));
    });
    add(joinCommand(job, own, "CHECK", arrays), joinScript(job, own));
    text << "$ scontrol release CHECK\n";
    return text.str();
}

namespace {

/// A line of the queue.
struct QueuedTask {
    std::string id; ///< "12_3" in an array
    std::string state;
    std::string reason;

    [[nodiscard]] bool isHeld() const {
        return waits() && (reason.find("held") != std::string::npos ||
                           reason.find("Held") != std::string::npos);
    }
    [[nodiscard]] bool waits() const {
        return isOneOf({"PENDING", "CONFIGURING", "REQUEUED", "REQUEUE_HOLD", "SPECIAL_EXIT"});
    }
    [[nodiscard]] bool runs() const {
        return isOneOf({"RUNNING", "COMPLETING", "SUSPENDED", "STOPPED", "SIGNALING"});
    }

private:
    [[nodiscard]] bool isOneOf(std::initializer_list<const char*> states) const {
        return std::find(states.begin(), states.end(), state) != states.end();
    }
};

std::vector<QueuedTask> queueOf(const Job& job, const std::vector<std::string>& ids) {
    const CommandResult queue =
        runCommand({"squeue", "-h", "-r", "-o", "%i|%T|%r|%Z", "-j", joined(ids, ',')}, "");
    // A single job that is long gone is an error, too; it neither waits nor runs.
    if (queue.code != 0 && queue.err.find("Invalid job id") == std::string::npos) {
        refuse("squeue", queue.err);
    }
    std::vector<QueuedTask> tasks;
    std::istringstream lines(queue.out);
    QueuedTask task;
    std::string folder;
    while (std::getline(lines, task.id, '|') && std::getline(lines, task.state, '|') &&
           std::getline(lines, task.reason, '|') && std::getline(lines, folder)) {
        // A controller that lost its memory begins to count anew.
        if (folder == job.folder) {
            tasks.push_back(task);
        }
    }
    return tasks;
}

/// Machines that are drained or down: "n2 (Duplicate jobid)".
std::vector<std::string> machinesAway() {
    std::vector<std::string> words{"sinfo", "-h", "-N", "-t", "drain,down,fail", "-o", "%N|%E"};
    if (const std::string name = partition(); !name.empty()) {
        words.insert(words.end(), {"-p", name});
    }
    std::istringstream lines(runCommand(words, "").out);
    std::vector<std::string> away;
    std::string name;
    std::string reason;
    while (std::getline(lines, name, '|') && std::getline(lines, reason)) {
        away.push_back(name.append(" (").append(reason).append(")"));
    }
    return away;
}

} // namespace

EngineState SlurmEngine::state(const Job& job, const std::vector<std::string>& ids) {
    EngineState state;
    for (const QueuedTask& task : queueOf(job, ids)) {
        state.waiting += task.waits() ? 1 : 0;
        state.running += task.runs() ? 1 : 0;
        state.chunks += task.id.find('_') != std::string::npos ? 1 : 0;
        if (task.isHeld()) {
            ++state.held;
            state.heldWhy = task.reason;
        }
    }
    if (state.waiting > 0) {
        state.away = machinesAway();
    }
    return state;
}

void SlurmEngine::release(const Job& job, const std::vector<std::string>& ids) {
    for (const QueuedTask& task : queueOf(job, ids)) {
        if (task.isHeld()) {
            static_cast<void>(run({"scontrol", "release", task.id}, ""));
        }
    }
}

void SlurmEngine::cancel(const Job& job, const std::vector<std::string>& ids) {
    std::set<std::string> own;
    for (const QueuedTask& task : queueOf(job, ids)) {
        own.insert(task.id.substr(0, task.id.find('_')));
    }
    if (!own.empty()) {
        std::vector<std::string> words{"scancel"};
        words.insert(words.end(), own.begin(), own.end());
        static_cast<void>(run(words, ""));
    }
}

} // namespace orbel
