#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace orbel {

/// What the program returns to the shell: whether the same may go well another time. The table for
/// users stands in README.md.
enum ExitCode : int {
    EXIT_DONE = 0,
    EXIT_RENDERING_FAILED = 1, ///< never: some frames may be finished
    EXIT_BAD_INPUT = 2,        ///< never: nothing was written
    EXIT_TRY_AGAIN = 75,       ///< a full disk, another writer: some frames may be finished
    EXIT_INTERRUPTED = 130,    ///< by Ctrl-C: what was rendered is complete and readable
    EXIT_TERMINATED = 143,     ///< by SIGTERM: so it is
};

/// Something wrong, told so that whoever reads it can put it right.
struct Problem {
    std::string file;    ///< or "command line"
    std::string place;   ///< JSON pointer, line and column, frame or option; may be empty
    std::string message; ///< what is wrong
    std::string remedy;  ///< what to do; may be empty
};

/// Problems in the order in which they were found. After two hundred the rest is only counted.
class Problems {
public:
    void add(Problem problem);
    [[nodiscard]] bool empty() const { return m_items.empty(); }
    [[nodiscard]] const std::vector<Problem>& items() const { return m_items; }
    /// Found, but not kept.
    [[nodiscard]] std::size_t left() const { return m_left; }
    /// Nothing more will be kept: time to stop looking.
    [[nodiscard]] bool full() const;

private:
    std::vector<Problem> m_items;
    std::size_t m_left = 0;
};

/// One sentence: `FILE (PLACE): MESSAGE; REMEDY`, control characters made visible.
[[nodiscard]] std::string sentence(const Problem& problem);

/// Every problem on a line of its own, then how many were left out. The one way out for problems.
void print(const Problems& problems, std::ostream& out);

/// Where a value stands in a document or among the options, for whoever finds it wrong.
class Site {
public:
    /// `problems` is borrowed.
    Site(std::string file, std::string place, Problems* problems)
        : m_file(std::move(file)), m_place(std::move(place)), m_problems(problems) {}

    /// The place of a member: the JSON pointer grown by one step.
    [[nodiscard]] Site at(std::string_view key) const;
    [[nodiscard]] Site at(std::size_t index) const;

    void report(std::string message, std::string remedy) const;
    /// Nothing more will be kept of what is reported.
    [[nodiscard]] bool full() const { return m_problems->full(); }

private:
    std::string m_file;
    std::string m_place;
    Problems* m_problems;
};

/// Text from outside, in quotes, cut to a readable length.
[[nodiscard]] std::string inQuotes(std::string_view text);

/// The shortest text that reads back as the same number.
[[nodiscard]] std::string numberText(double value);

} // namespace orbel
