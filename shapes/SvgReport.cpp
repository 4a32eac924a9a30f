#include "shapes/SvgReport.h"

#include <cstdio>

namespace orbel {

namespace {

constexpr int maxNotices = 1000;

} // namespace

void SvgReport::setObserver(SvgReaderObserver* observer) {
    m_observer = observer;
    m_remaining = maxNotices;
}

void SvgReport::add(SvgIssue issue, std::string_view text, std::string_view subject) {
    if (!wanted()) {
        return;
    }
    --m_remaining;
    std::string message(text);
    if (const auto place = message.find('%'); place != std::string::npos) {
        message.replace(place, 2, subject);
    }
    m_observer->notice({issue, m_line, std::move(message)});
}

void SvgReport::add(SvgIssue issue, std::string_view text, char subject) {
    char number[8];
    std::string_view shown(&subject, 1);
    if (subject < 0x20 || subject > 0x7e) {
        std::snprintf(number, sizeof number, "\\x%02x", static_cast<unsigned char>(subject));
        shown = number;
    }
    add(issue, text, shown);
}

} // namespace orbel
