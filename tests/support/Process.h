#pragma once

#include <csignal>
#include <sstream>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orbel::test {

using Arguments = std::vector<std::string>;

/// Arguments, then the words of a line, then more arguments, which may hold spaces.
inline Arguments words(Arguments all, const std::string& line, const Arguments& more = {}) {
    std::istringstream stream(line);
    for (std::string word; stream >> word;) {
        all.push_back(word);
    }
    all.insert(all.end(), more.begin(), more.end());
    return all;
}

/// A program with its arguments in a process of its own; what it says goes to a file.
class Process {
public:
    /// One that takes more than so many seconds is ended; 0 leaves it its time.
    Process(Arguments arguments, const std::string& log, unsigned seconds = 0) {
        std::vector<char*> argv;
        for (std::string& argument : arguments) {
            argv.push_back(argument.data());
        }
        argv.push_back(nullptr);
        m_process = fork();
        if (m_process == 0) {
            const int file = open(log.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
            const int nothing = open("/dev/null", O_RDONLY);
            dup2(nothing, STDIN_FILENO);
            dup2(file, STDOUT_FILENO);
            dup2(file, STDERR_FILENO);
            alarm(seconds);
            execvp(argv[0], argv.data());
            _exit(127);
        }
    }

    void signal(int number) const { kill(m_process, number); }

    /// The exit code; a signal's number, negative, when one ended it.
    [[nodiscard]] int wait() const {
        int status = 0;
        waitpid(m_process, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }

private:
    pid_t m_process = -1;
};

} // namespace orbel::test
