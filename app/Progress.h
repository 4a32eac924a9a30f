#pragma once

#include <chrono>
#include <iosfwd>
#include <string>

namespace orbel::app {

/// How progress is told.
enum class ProgressStyle {
    Silent,
    Lines, ///< now and then a line, for logs
    Bar,   ///< one line that is written over, for terminals
};

/// Tells how far a rendering is. One thread at a time.
class Progress {
public:
    using Clock = std::chrono::steady_clock;

    Progress(std::ostream& out, ProgressStyle style, long total);

    /// One more frame is out.
    void frameDone(Clock::time_point now);
    /// Ends the line of the bar, if there is one.
    void finish();
    [[nodiscard]] long done() const { return m_done; }
    /// "60 frames in 4.8 s (12.5 frames/s)"
    [[nodiscard]] std::string summary(Clock::time_point now) const;

private:
    [[nodiscard]] bool isDue(Clock::time_point now) const;
    [[nodiscard]] std::string state(Clock::time_point now) const;
    void drawBar(Clock::time_point now);

    std::ostream& m_out;
    ProgressStyle m_style;
    long m_total;
    long m_done = 0;
    long m_told = 0; ///< frames done when it was last told
    Clock::time_point m_start;
    Clock::time_point m_toldAt;
    std::size_t m_barLength = 0;
};

/// The style for the error stream: a bar on a terminal, lines elsewhere.
[[nodiscard]] ProgressStyle progressStyle(bool quiet);

} // namespace orbel::app
