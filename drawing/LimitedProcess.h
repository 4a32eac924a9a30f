#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace orbel {

struct ProcessLimits {
    double seconds = 10.0;                            ///< by the clock on the wall
    std::size_t memory = std::size_t{1} << 30;        ///< bytes, with what the caller holds
    std::size_t answerBytes = std::size_t{256} << 20; ///< a longer answer is none
    std::function<bool()> stopped; ///< asked many times a second; true ends the work. May be empty
};

enum class ProcessEnd {
    Answered,
    OutOfTime,
    OutOfMemory,
    Crashed,
    Stopped,
    NotStarted, ///< the system has no process or pipe to give
};

struct ProcessResult {
    ProcessEnd end = ProcessEnd::NotStarted;
    std::string answer; ///< what the work returned; empty unless it answered
};

/// Runs `work` in a copy of this process that is ended when it asks for too much, and returns what
/// it answered. The copy has one thread, no voice (standard error goes nowhere) and leaves no core.
///
/// Libraries with locks of their own that `work` calls must not be in use by other threads of the
/// caller at that moment: whoever uses GLib, Pango or librsvg does so in here alone.
[[nodiscard]] ProcessResult runLimited(const std::function<std::string()>& work,
                                       const ProcessLimits& limits);

} // namespace orbel
