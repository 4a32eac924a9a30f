#include "film/Profile.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace orbel {

namespace {

double seconds(StageTimes::Duration span) {
    return std::chrono::duration<double>(span).count();
}

} // namespace

std::string profileText(const StageTimes& times, long frames) {
    struct Line {
        const char* stage;
        StageTimes::Duration busy;
    };
    const std::array lines{Line{"reading", times.reading}, Line{"rendering", times.rendering},
                           Line{"writing", times.writing}, Line{"finishing", times.finishing}};
    const auto* const slowest = std::max_element(
        lines.begin(), lines.end(), [](const Line& a, const Line& b) { return a.busy < b.busy; });
    const double whole = std::max(seconds(times.whole), 1e-9);
    const auto count = static_cast<double>(std::max(frames, 1L));
    std::string text = "stage           busy    a frame   of the whole\n";
    for (const Line& line : lines) {
        const double busy = seconds(line.busy);
        std::array<char, 96> row{};
        std::snprintf(row.data(), row.size(), "%-10s %7.2f s %7.2f ms %10.0f %%%s\n", line.stage,
                      busy, busy * 1000 / count, busy * 100 / whole,
                      &line == slowest ? "   the others wait for this" : "");
        text += row.data();
    }
    return text;
}

} // namespace orbel
