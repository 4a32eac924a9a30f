#include "app/Progress.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ostream>
#include <string_view>

#include <unistd.h>

namespace orbel::app {

namespace {

constexpr std::size_t barWidth = 30;
constexpr std::chrono::milliseconds barInterval{100};
constexpr std::chrono::seconds lineInterval{5};
constexpr long linesInAll = 10;

double seconds(Progress::Clock::duration span) {
    return std::chrono::duration<double>(span).count();
}

std::string oneDecimal(double value) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.1f", value);
    return text.data();
}

/// "0:07", "1:02:03"
std::string clockText(double span) {
    const long whole = std::lround(std::min(span, 1e9));
    std::array<char, 48> text{};
    if (whole < 3600) {
        std::snprintf(text.data(), text.size(), "%ld:%02ld", whole / 60, whole % 60);
    } else {
        std::snprintf(text.data(), text.size(), "%ld:%02ld:%02ld", whole / 3600, whole / 60 % 60,
                      whole % 60);
    }
    return text.data();
}

} // namespace

Progress::Progress(std::ostream& out, ProgressStyle style, long total)
    : m_out(out), m_style(style), m_total(total), m_start(Clock::now()), m_toldAt(m_start) {}

void Progress::frameDone(Clock::time_point now) {
    ++m_done;
    if (m_style == ProgressStyle::Silent || !isDue(now)) {
        return;
    }
    m_told = m_done;
    m_toldAt = now;
    if (m_style == ProgressStyle::Bar) {
        drawBar(now);
    } else {
        m_out << "frame " << m_done << " of " << m_total << state(now) << std::endl;
    }
}

bool Progress::isDue(Clock::time_point now) const {
    if (m_style == ProgressStyle::Bar) {
        return m_told == 0 || m_done == m_total || now - m_toldAt >= barInterval;
    }
    if (m_done == m_total) {
        return false; // the summary says it
    }
    const bool tenth = (m_done - m_told) * linesInAll >= m_total;
    return now - m_toldAt >= lineInterval || (tenth && now - m_toldAt >= barInterval);
}

std::string Progress::state(Clock::time_point now) const {
    const double elapsed = seconds(now - m_start);
    if (elapsed <= 0.0) {
        return {};
    }
    const double rate = static_cast<double>(m_done) / elapsed;
    const double left = static_cast<double>(m_total - m_done) / rate;
    return ", " + oneDecimal(rate) + " frames/s, " + clockText(left) + " left";
}

void Progress::drawBar(Clock::time_point now) {
    const auto filled = static_cast<std::size_t>(m_done * static_cast<long>(barWidth) / m_total);
    std::string line = "[";
    line.append(filled, '#').append(barWidth - filled, '.').append("] ");
    line += std::to_string(m_done) + "/" + std::to_string(m_total) + state(now);
    const std::size_t length = line.size();
    line.resize(std::max(length, m_barLength), ' '); // covers what a longer line left
    m_barLength = length;
    m_out << '\r' << line << std::flush;
}

void Progress::finish() {
    if (m_barLength > 0) {
        m_out << '\n' << std::flush;
        m_barLength = 0;
    }
}

std::string Progress::summary(Clock::time_point now) const {
    const double elapsed = seconds(now - m_start);
    std::string text = std::to_string(m_done) + (m_done == 1 ? " frame in " : " frames in ") +
                       oneDecimal(elapsed) + " s";
    if (elapsed > 0.0) {
        text += " (" + oneDecimal(static_cast<double>(m_done) / elapsed) + " frames/s)";
    }
    return text;
}

ProgressStyle progressStyle(bool quiet) {
    if (quiet) {
        return ProgressStyle::Silent;
    }
    const char* const terminal = std::getenv("TERM");
    const bool dumb = terminal == nullptr || std::string_view(terminal) == "dumb";
    return isatty(STDERR_FILENO) == 1 && !dumb ? ProgressStyle::Bar : ProgressStyle::Lines;
}

} // namespace orbel::app
