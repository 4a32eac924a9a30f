#include "farm/LocalEngine.h"

#include "farm/Command.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <deque>
#include <filesystem>
#include <fstream>
#include <limits>
#include <map>
#include <thread>

#include <sys/wait.h>

namespace orbel {

namespace {

namespace fs = std::filesystem;

constexpr int firstPassingCode = 75;

std::string thisProgram() {
    std::error_code error;
    return fs::read_symlink("/proc/self/exe", error).string();
}

std::vector<std::string> supervisor(const Job& job, const Submission& submission) {
    return {submission.program, "farm",
            "supervise",        job.folder,
            "--list",           submission.list,
            "--nodes",          std::to_string(std::max(1, submission.workers)),
            "--threads",        std::to_string(submission.threads)};
}

pid_t processOf(const std::string& id) {
    return static_cast<pid_t>(std::strtol(id.c_str(), nullptr, 10));
}

/// Tasks of one list on their way.
class Tasks {
public:
    Tasks(const Job& job, std::string list, int threads)
        : m_job(job), m_list(std::move(list)), m_threads(threads) {
        std::ifstream lines(m_list);
        long chunk = 0;
        for (long index = 0; lines >> chunk; ++index) {
            m_waiting.push_back({index, 1});
        }
    }

    void run(int workers) {
        while (!m_waiting.empty() || !m_running.empty()) {
            while (!m_waiting.empty() && static_cast<int>(m_running.size()) < workers) {
                startNext();
            }
            int status = 0;
            const pid_t ended = waitpid(-1, &status, 0);
            if (const auto task = m_running.find(ended); task != m_running.end()) {
                settle(task->second, status);
                m_running.erase(task);
            } else if (ended < 0 && errno != EINTR) {
                return;
            }
        }
    }

private:
    struct Task {
        long index;
        int attempt;
    };

    void startNext() {
        const Task task = m_waiting.front();
        m_waiting.pop_front();
        const std::string log = m_job.folder + "/logs/task-" + std::to_string(task.index) + "-" +
                                std::to_string(task.attempt) + ".log";
        const pid_t process =
            startCommand({thisProgram(), "farm", "task", m_job.folder, "--list", m_list, "--index",
                          std::to_string(task.index), "--threads", std::to_string(m_threads)},
                         log, false);
        if (process > 0) {
            m_running[process] = task;
        }
    }

    void settle(const Task& task, int status) {
        const bool passing = !WIFEXITED(status) || WEXITSTATUS(status) >= firstPassingCode;
        if (passing && task.attempt < mostAttempts) {
            m_waiting.push_back({task.index, task.attempt + 1});
        }
    }

    const Job& m_job;
    std::string m_list;
    int m_threads;
    std::deque<Task> m_waiting;
    std::map<pid_t, Task> m_running;
};

} // namespace

std::vector<std::string> LocalEngine::submit(const Job& job, const Submission& submission) {
    const pid_t process =
        startCommand(supervisor(job, submission), job.folder + "/logs/supervisor.log", true);
    if (process == 0) {
        throw MediaError(job.folder, "", "no process can be started for this job", "try again",
                         MediaError::Passing);
    }
    return {std::to_string(process)};
}

std::string LocalEngine::describe(const Job& job, const Submission& submission) {
    std::string text = "$";
    for (const std::string& word : supervisor(job, submission)) {
        text.append(1, ' ').append(shellQuoted(word));
    }
    return text + "\n";
}

EngineState LocalEngine::state(const Job& job, const std::vector<std::string>& ids) {
    EngineState state;
    for (const std::string& id : ids) {
        std::ifstream words("/proc/" + id + "/cmdline", std::ios::binary);
        const std::string line{std::istreambuf_iterator<char>(words), {}};
        if (line.find("supervise" + std::string(1, '\0') + job.folder) != std::string::npos) {
            ++state.running;
            state.chunks = std::numeric_limits<long>::max(); // all that are missing
        }
    }
    return state;
}

void LocalEngine::cancel(const Job& job, const std::vector<std::string>& ids) {
    for (const std::string& id : ids) {
        if (state(job, {id}).running > 0) {
            kill(-processOf(id), SIGTERM);
        }
    }
}

int superviseTasks(const Job& job, const std::string& list, int workers, int threads) {
    Tasks(job, list, threads).run(std::max(1, workers));
    const pid_t process = startCommand({thisProgram(), "farm", "join", job.folder},
                                       job.folder + "/logs/join.log", false);
    int status = 0;
    while (process > 0 && waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    return process > 0 && WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}

} // namespace orbel
