#pragma once

#include "studio/Json.h"

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <string>

namespace orbel::studio {

/// Tells every page that listens what happens. Any thread.
class EventHub {
public:
    void tell(const json& event);
    /// Writes events, one a line, until the page is gone or the hub is closed. A page that is too
    /// slow misses some.
    void listen(BodySink& sink, const std::function<bool()>& isGone);
    [[nodiscard]] int listeners();
    void close();

private:
    /// The lines after the one numbered `seen`; waits a while for the first.
    std::string next(std::uint64_t* seen, std::uint64_t* rests);

    std::mutex m_mutex;
    std::condition_variable m_told;
    std::deque<std::string> m_lines; ///< the last ones
    std::uint64_t m_count = 0;       ///< lines told so far
    int m_listeners = 0;
    bool m_closed = false;
};

} // namespace orbel::studio
