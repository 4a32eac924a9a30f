#include "app/Interrupt.h"

#include <atomic>

namespace orbel::app {

namespace {

// A signal handler has nothing but a global to write to.
std::atomic<int> noted = 0;
static_assert(std::atomic<int>::is_always_lock_free);

} // namespace

InterruptGuard::InterruptGuard() {
    noted = 0;
    struct sigaction action = {};
    action.sa_handler = [](int signal) { noted = signal; };
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, &m_previousInterrupt);
    sigaction(SIGTERM, &action, &m_previousTerminate);
}

InterruptGuard::~InterruptGuard() {
    sigaction(SIGINT, &m_previousInterrupt, nullptr);
    sigaction(SIGTERM, &m_previousTerminate, nullptr);
}

int InterruptGuard::signal() {
    return noted;
}

} // namespace orbel::app
