#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

namespace orbel {

/// The code of a program that is not there.
inline constexpr int noSuchCommand = 127;

/// How another program ended, and what it said.
struct CommandResult {
    int code = 0;
    std::string out;
    std::string err;
};

/// Runs a program and waits for it; `input` is what it reads.
[[nodiscard]] CommandResult runCommand(const std::vector<std::string>& arguments,
                                       const std::string& input);

/// Starts a program whose words are added to a log; 0 when that fails. `ownGroup` puts it and what
/// it starts into a process group and session of their own.
[[nodiscard]] pid_t startCommand(const std::vector<std::string>& arguments, const std::string& log,
                                 bool ownGroup);

/// A word for a shell, whatever is in it; in quotes where it needs them.
[[nodiscard]] std::string shellQuoted(const std::string& word);

} // namespace orbel
