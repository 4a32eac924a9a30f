#include "farm/Command.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sys/wait.h>
#include <unistd.h>

namespace orbel {

namespace {

std::vector<char*> argvOf(std::vector<std::string>& arguments) {
    std::vector<char*> argv;
    argv.reserve(arguments.size() + 1);
    for (std::string& argument : arguments) {
        argv.push_back(argument.data());
    }
    argv.push_back(nullptr);
    return argv;
}

/// In the child, between fork and exec: nothing but system calls.
void redirect(int input, int out, int err) {
    dup2(input, STDIN_FILENO);
    dup2(out, STDOUT_FILENO);
    dup2(err, STDERR_FILENO);
}

/// A file without a name, for what one program says to another.
class Scratch {
public:
    Scratch() {
        std::string name = (std::filesystem::temp_directory_path() / "orbel-XXXXXX").string();
        m_file = mkostemp(name.data(), O_CLOEXEC);
        unlink(name.c_str());
    }
    explicit Scratch(const std::string& text) : Scratch() {
        const ssize_t written = write(m_file, text.data(), text.size());
        static_cast<void>(written); // what is missing, the program that reads will miss, too
        lseek(m_file, 0, SEEK_SET);
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;
    ~Scratch() { close(m_file); }

    [[nodiscard]] int file() const { return m_file; }
    [[nodiscard]] std::string text() const {
        std::string all;
        std::array<char, 4096> block{};
        lseek(m_file, 0, SEEK_SET);
        for (ssize_t count = 0; (count = read(m_file, block.data(), block.size())) > 0;) {
            all.append(block.data(), static_cast<std::size_t>(count));
        }
        return all;
    }

private:
    int m_file = -1;
};

} // namespace

CommandResult runCommand(const std::vector<std::string>& arguments, const std::string& input) {
    std::vector<std::string> words = arguments;
    const std::vector<char*> argv = argvOf(words);
    const Scratch in(input);
    const Scratch out;
    const Scratch err;
    const pid_t child = fork();
    if (child == 0) {
        redirect(in.file(), out.file(), err.file());
        execvp(argv[0], argv.data());
        _exit(noSuchCommand);
    }
    CommandResult result;
    int status = 0;
    while (child > 0 && waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    result.code = child > 0 && WIFEXITED(status) ? WEXITSTATUS(status) : noSuchCommand;
    result.out = out.text();
    result.err = err.text();
    return result;
}

pid_t startCommand(const std::vector<std::string>& arguments, const std::string& log,
                   bool ownGroup) {
    std::vector<std::string> words = arguments;
    const std::vector<char*> argv = argvOf(words);
    const int out = open(log.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
    const int nothing = open("/dev/null", O_RDONLY | O_CLOEXEC);
    const pid_t child = out < 0 ? -1 : fork();
    if (child == 0) {
        if (ownGroup) {
            setsid();
        }
        redirect(nothing, out, out);
        execvp(argv[0], argv.data());
        _exit(noSuchCommand);
    }
    close(out);
    close(nothing);
    return child > 0 ? child : 0;
}

std::string shellQuoted(const std::string& word) {
    constexpr const char* plain =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789/._-+:,@%=";
    if (!word.empty() && word.find_first_not_of(plain) == std::string::npos) {
        return word;
    }
    std::string quoted(1, '\'');
    for (const char c : word) {
        if (c == '\'') {
            quoted.append("'\\''");
        } else {
            quoted.push_back(c);
        }
    }
    quoted.push_back('\'');
    return quoted;
}

} // namespace orbel
