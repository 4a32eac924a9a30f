#pragma once

#include <mutex>
#include <set>
#include <string>
#include <string_view>

namespace orbel::studio {

/// 128 random bits as 32 hexadecimal digits. Throws std::system_error when the system has none.
[[nodiscard]] std::string randomSecret();

/// Takes as long for a text that is nearly right as for one that is all wrong.
[[nodiscard]] bool isSame(std::string_view given, std::string_view secret);

/// What opens the studio: one token for as long as it runs, and keys that each hand it out once.
/// Any thread.
class Secrets {
public:
    Secrets() : m_token(randomSecret()) {}

    [[nodiscard]] const std::string& token() const { return m_token; }
    [[nodiscard]] bool isToken(std::string_view given) const { return isSame(given, m_token); }
    [[nodiscard]] std::string makeKey();
    /// True the first time for a key that was made.
    [[nodiscard]] bool useKey(std::string_view given);

private:
    const std::string m_token;
    std::mutex m_mutex;
    std::set<std::string> m_keys;
};

} // namespace orbel::studio
