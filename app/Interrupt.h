#pragma once

#include <csignal>

namespace orbel::app {

/// While one lives, the first Ctrl-C or SIGTERM is only noted, so that the output can be completed;
/// the second ends the program as usual. One at a time.
class InterruptGuard {
public:
    InterruptGuard();
    InterruptGuard(const InterruptGuard&) = delete;
    InterruptGuard& operator=(const InterruptGuard&) = delete;
    ~InterruptGuard();

    /// The signal that came since the guard was made; 0 for none. Any thread.
    [[nodiscard]] static int signal();
    [[nodiscard]] static bool requested() { return signal() != 0; }

private:
    struct sigaction m_previousInterrupt = {};
    struct sigaction m_previousTerminate = {};
};

} // namespace orbel::app
