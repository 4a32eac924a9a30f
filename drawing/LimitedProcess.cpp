#include "drawing/LimitedProcess.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <exception>
#include <new>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orbel {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds askInterval{20};
constexpr int answeredCode = 0;
constexpr int memoryCode = 3;
constexpr int failedCode = 4;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool sanitized = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
constexpr bool sanitized = true;
#else
constexpr bool sanitized = false;
#endif
#else
constexpr bool sanitized = false;
#endif

void limit(__rlimit_resource resource, std::size_t value) {
    const rlimit both{value, value};
    static_cast<void>(setrlimit(resource, &both));
}

/// Addresses that the copy may use. What it holds from its caller counts as used, with what it will
/// hold of the libraries, unless that is more than half of its room.
std::size_t addressesFor(std::size_t memory) {
    std::size_t mapped = 0;
    std::size_t held = 0;
    if (std::FILE* const file = std::fopen("/proc/self/statm", "re")) {
        // NOLINTNEXTLINE(cert-err34-c): the kernel's own text
        if (std::fscanf(file, "%zu %zu", &mapped, &held) != 2) {
            mapped = held = 0;
        }
        static_cast<void>(std::fclose(file));
    }
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    constexpr std::size_t libraries = std::size_t{24} << 20;
    return mapped * page + memory - std::min(held * page + libraries, memory / 2);
}

void limitThisProcess(const ProcessLimits& limits) {
    prctl(PR_SET_PDEATHSIG, SIGKILL); // nobody would wait for the answer
    limit(RLIMIT_CORE, 0);
    limit(RLIMIT_CPU, static_cast<std::size_t>(std::ceil(limits.seconds)) + 1);
    if (!sanitized) { // a sanitizer's shadow alone is terabytes of addresses
        limit(RLIMIT_AS, addressesFor(limits.memory));
    }
    for (const int signal : {SIGINT, SIGTERM, SIGPIPE, SIGABRT, SIGSEGV, SIGTRAP}) {
        std::signal(signal, SIG_DFL);
    }
    const int nowhere = open("/dev/null", O_RDWR | O_CLOEXEC);
    if (nowhere >= 0) {
        dup2(nowhere, STDIN_FILENO);
        dup2(nowhere, STDOUT_FILENO);
        dup2(nowhere, STDERR_FILENO);
    }
}

bool writeAll(int file, const std::string& text) {
    std::size_t done = 0;
    while (done < text.size()) {
        const ssize_t written = ::write(file, text.data() + done, text.size() - done);
        if (written < 0 && errno != EINTR) {
            return false;
        }
        done += written > 0 ? static_cast<std::size_t>(written) : 0;
    }
    return true;
}

int answerInto(int file, const std::function<std::string()>& work) {
    try {
        return writeAll(file, work()) ? answeredCode : failedCode;
    } catch (const std::bad_alloc&) {
        return memoryCode;
    } catch (const std::exception&) {
        return failedCode;
    }
}

bool isStopped(const ProcessLimits& limits) {
    return limits.stopped && limits.stopped();
}

/// Reads until the other side closes. False when time or room ran out, or nobody waits any more.
bool readAll(int file, const ProcessLimits& limits, std::string* answer) {
    using std::chrono::milliseconds;
    const auto end = Clock::now() + std::chrono::duration<double>(limits.seconds);
    std::array<char, std::size_t{1} << 16> chunk{};
    while (answer->size() <= limits.answerBytes && !isStopped(limits)) {
        auto left = std::chrono::duration_cast<milliseconds>(end - Clock::now());
        if (left.count() <= 0) {
            return false;
        }
        left = limits.stopped ? std::min(left, askInterval) : left;
        pollfd wanted{file, POLLIN, 0};
        const int ready = poll(&wanted, 1, static_cast<int>(left.count()) + 1);
        if (ready == 0 || (ready < 0 && errno == EINTR)) {
            continue;
        }
        if (ready < 0) {
            return false;
        }
        const ssize_t got = read(file, chunk.data(), chunk.size());
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            return true;
        }
        answer->append(chunk.data(), static_cast<std::size_t>(got));
    }
    return false;
}

/// What ended the copy. A library that gets no memory aborts, so the largest size that it reached
/// tells that from a fault.
ProcessEnd endOf(int status, const rusage& usage, const ProcessLimits& limits) {
    if (WIFEXITED(status)) {
        const int code = WEXITSTATUS(status);
        return code == answeredCode ? ProcessEnd::Answered
               : code == memoryCode ? ProcessEnd::OutOfMemory
                                    : ProcessEnd::Crashed;
    }
    if (WTERMSIG(status) == SIGXCPU || WTERMSIG(status) == SIGKILL) {
        return ProcessEnd::OutOfTime;
    }
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-union-access): the C library's own record
    const std::size_t reached = static_cast<std::size_t>(usage.ru_maxrss) * 1024;
    return reached > limits.memory / 4 ? ProcessEnd::OutOfMemory : ProcessEnd::Crashed;
}

} // namespace

ProcessResult runLimited(const std::function<std::string()>& work, const ProcessLimits& limits) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        return {};
    }
    const pid_t copy = fork();
    if (copy == 0) {
        close(ends[0]);
        limitThisProcess(limits);
        _exit(answerInto(ends[1], work));
    }
    close(ends[1]);
    ProcessResult result;
    if (copy > 0) {
        const bool complete = readAll(ends[0], limits, &result.answer);
        if (!complete) {
            kill(copy, SIGKILL);
        }
        int status = 0;
        rusage usage{};
        while (wait4(copy, &status, 0, &usage) < 0 && errno == EINTR) {
        }
        result.end = complete            ? endOf(status, usage, limits)
                     : isStopped(limits) ? ProcessEnd::Stopped
                                         : ProcessEnd::OutOfTime;
        if (result.answer.size() > limits.answerBytes) {
            result.end = ProcessEnd::OutOfMemory;
        }
    }
    close(ends[0]);
    if (result.end != ProcessEnd::Answered) {
        result.answer.clear();
    }
    return result;
}

} // namespace orbel
