#include "app/Interrupt.h"

#include <atomic>

namespace orbel::app {

namespace {

// A signal handler has nothing but a global to write to.
std::atomic<bool> interrupted = false;
static_assert(std::atomic<bool>::is_always_lock_free);

} // namespace

InterruptGuard::InterruptGuard() {
    interrupted = false;
    struct sigaction action = {};
    action.sa_handler = [](int /*signal*/) { interrupted = true; };
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
    sigemptyset(&action.sa_mask);
    sigaction(SIGINT, &action, &m_previous);
}

InterruptGuard::~InterruptGuard() {
    sigaction(SIGINT, &m_previous, nullptr);
}

bool InterruptGuard::requested() {
    return interrupted;
}

} // namespace orbel::app
