#pragma once

#include <chrono>
#include <string>

namespace orbel {

/// Where the time of a rendering went. The stages work side by side, so that together they may have
/// been busy for longer than the whole took.
struct StageTimes {
    using Duration = std::chrono::steady_clock::duration;

    Duration reading{};   ///< decoding the input and bringing it to the frame's size and layout
    Duration rendering{}; ///< the effect
    Duration writing{};   ///< converting and encoding
    Duration finishing{}; ///< completing the outputs after the last frame
    Duration whole{};     ///< from the first frame's reading to the end
};

/// Adds the time between its making and its end to a sum.
class Stopwatch {
public:
    explicit Stopwatch(StageTimes::Duration* sum)
        : m_sum(sum), m_begin(std::chrono::steady_clock::now()) {}
    Stopwatch(const Stopwatch&) = delete;
    Stopwatch& operator=(const Stopwatch&) = delete;
    ~Stopwatch() { *m_sum += std::chrono::steady_clock::now() - m_begin; }

private:
    StageTimes::Duration* m_sum;
    std::chrono::steady_clock::time_point m_begin;
};

/// A table for people: a line for each stage with its time, its time per frame and its share of the
/// whole, the stage that the others waited for marked.
[[nodiscard]] std::string profileText(const StageTimes& times, long frames);

} // namespace orbel
