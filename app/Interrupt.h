#pragma once

#include <csignal>

namespace orbel::app {

/// While one lives, the first Ctrl-C is only noted, so that the output can be completed; the second
/// ends the program as usual. One at a time.
class InterruptGuard {
public:
    InterruptGuard();
    InterruptGuard(const InterruptGuard&) = delete;
    InterruptGuard& operator=(const InterruptGuard&) = delete;
    ~InterruptGuard();

    /// Whether Ctrl-C was pressed since the guard was made. Any thread.
    [[nodiscard]] static bool requested();

private:
    struct sigaction m_previous = {};
};

} // namespace orbel::app
