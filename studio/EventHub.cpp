#include "studio/EventHub.h"

#include <algorithm>
#include <chrono>

namespace orbel::studio {

namespace {

constexpr std::size_t mostKept = 64;
constexpr std::chrono::milliseconds listenRest{500};
constexpr std::uint64_t restsBetweenSigns = 10;
constexpr const char* aliveLine = "{\"event\":\"alive\"}\n";

} // namespace

void EventHub::tell(const json& event) {
    const std::lock_guard lock(m_mutex);
    m_lines.push_back(textOf(event) + "\n");
    ++m_count;
    if (m_lines.size() > mostKept) {
        m_lines.pop_front();
    }
    m_told.notify_all();
}

std::string EventHub::next(std::uint64_t* seen, std::uint64_t* rests) {
    std::unique_lock lock(m_mutex);
    m_told.wait_for(lock, listenRest, [&] { return m_closed || m_count > *seen; });
    std::string lines;
    const auto missed = static_cast<std::size_t>(m_count - *seen);
    const std::size_t kept = std::min(missed, m_lines.size());
    for (std::size_t i = m_lines.size() - kept; i < m_lines.size(); ++i) {
        lines += m_lines[i];
    }
    *seen = m_count;
    if (lines.empty() && ++*rests % restsBetweenSigns == 0) {
        lines = aliveLine;
    }
    return lines;
}

void EventHub::listen(BodySink& sink, const std::function<bool()>& isGone) {
    std::uint64_t seen = 0;
    {
        const std::lock_guard lock(m_mutex);
        seen = m_count;
        ++m_listeners;
    }
    std::uint64_t rests = 0;
    bool sound = sink.write(aliveLine);
    while (sound && !isGone()) {
        const std::string lines = next(&seen, &rests);
        sound = lines.empty() || sink.write(lines);
        const std::lock_guard lock(m_mutex);
        sound = sound && !(m_closed && seen == m_count);
    }
    const std::lock_guard lock(m_mutex);
    --m_listeners;
}

int EventHub::listeners() {
    const std::lock_guard lock(m_mutex);
    return m_listeners;
}

void EventHub::close() {
    const std::lock_guard lock(m_mutex);
    m_closed = true;
    m_told.notify_all();
}

} // namespace orbel::studio
