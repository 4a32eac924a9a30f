#include "media/SequencePattern.h"

#include "media/MediaError.h"

#include <charconv>

namespace orbel {

namespace {

constexpr std::size_t longestField = 18;

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

} // namespace

SequencePattern::SequencePattern(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    m_folder = slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
    const std::string name = path.substr(m_folder.size());
    std::size_t at = 0;
    while (at < name.size()) {
        if (name[at] == '%') {
            at = readDirective(path, name, at);
        } else {
            (m_numbered ? m_after : m_before) += name[at++];
        }
    }
}

std::size_t SequencePattern::readDirective(const std::string& path, const std::string& name,
                                           std::size_t at) {
    std::size_t end = at + 1;
    if (end < name.size() && name[end] == '%') {
        (m_numbered ? m_after : m_before) += '%';
        return end + 1;
    }
    while (end < name.size() && isDigit(name[end])) {
        ++end;
    }
    if (end == name.size() || name[end] != 'd') {
        throw MediaError(path, "",
                         "\"" + name.substr(at, end + 1 - at) +
                             "\" in the file name is no frame number",
                         "write the number as %04d and a percent sign as %%");
    }
    if (m_numbered) {
        throw MediaError(path, "", "the file name has more than one place for the frame number",
                         "keep one of them, as in name-%04d.png");
    }
    m_numbered = true;
    m_zeros = name[at + 1] == '0';
    for (std::size_t i = at + 1; i < end && m_width <= longestField; ++i) {
        m_width = m_width * 10 + static_cast<std::size_t>(name[i] - '0');
    }
    if (m_width > longestField) {
        throw MediaError(path, "", "the frame number in the file name is too wide",
                         "use at most 18 digits, as in name-%04d.png");
    }
    return end + 1;
}

std::string SequencePattern::nameOf(long number) const {
    if (!m_numbered) {
        return m_before;
    }
    std::string digits = std::to_string(number);
    if (digits.size() < m_width) {
        const std::size_t sign = m_zeros && number < 0 ? 1 : 0;
        digits.insert(sign, m_width - digits.size(), m_zeros ? '0' : ' ');
    }
    return m_before + digits + m_after;
}

std::string SequencePattern::pathOf(long number) const {
    return m_folder + nameOf(number);
}

std::optional<long> SequencePattern::numberOf(const std::string& name) const {
    if (!m_numbered || name.size() < m_before.size() + m_after.size()) {
        return std::nullopt;
    }
    const char* first = name.data() + m_before.size();
    const char* last = name.data() + name.size() - m_after.size();
    while (first != last && *first == ' ') {
        ++first;
    }
    long number = 0;
    const auto [end, error] = std::from_chars(first, last, number);
    if (error != std::errc() || end != last || nameOf(number) != name) {
        return std::nullopt;
    }
    return number;
}

} // namespace orbel
