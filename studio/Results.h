#pragma once

#include "studio/Message.h"

#include <map>
#include <mutex>
#include <string>
#include <string_view>

namespace orbel::studio {

/// Finished films and pictures that the page shows. A browser cannot send the token for them, so
/// each has a secret name of its own. Any thread.
class Results {
public:
    static constexpr std::string_view folder = "/result/";

    /// Gives the secret name, valid for as long as the studio runs.
    [[nodiscard]] std::string add(const std::string& file);
    /// Whether the path is `/result/` and a name that was given.
    [[nodiscard]] bool has(std::string_view path);
    /// The file, or the part of it that the head asks for.
    [[nodiscard]] Answer answer(const RequestHead& head, std::string_view path);

private:
    [[nodiscard]] std::string fileOf(std::string_view path);

    std::mutex m_mutex;
    std::map<std::string, std::string, std::less<>> m_files;
};

} // namespace orbel::studio
