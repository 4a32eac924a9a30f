#include "studio/Secrets.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>

#include <unistd.h>

namespace orbel::studio {

namespace {

constexpr std::size_t mostKeys = 64; // unused ones

} // namespace

std::string randomSecret() {
    std::array<unsigned char, 16> bytes{};
    if (getentropy(bytes.data(), bytes.size()) != 0) {
        throw std::system_error(errno, std::generic_category(), "no random numbers");
    }
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const unsigned char byte : bytes) {
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

bool isSame(std::string_view given, std::string_view secret) {
    unsigned difference = given.size() == secret.size() ? 0 : 1;
    for (std::size_t i = 0; i < secret.size(); ++i) {
        const char c = i < given.size() ? given[i] : '\0';
        difference |= c == secret[i] ? 0U : 1U;
    }
    return difference == 0;
}

std::string Secrets::makeKey() {
    const std::lock_guard lock(m_mutex);
    if (m_keys.size() == mostKeys) {
        m_keys.erase(m_keys.begin());
    }
    return *m_keys.insert(randomSecret()).first;
}

bool Secrets::useKey(std::string_view given) {
    const std::lock_guard lock(m_mutex);
    const auto found = std::find_if(m_keys.begin(), m_keys.end(),
                                    [&](const std::string& key) { return isSame(given, key); });
    if (found == m_keys.end()) {
        return false;
    }
    m_keys.erase(found);
    return true;
}

} // namespace orbel::studio
