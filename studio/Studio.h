#pragma once

#include "studio/HttpServer.h"
#include "studio/Json.h"
#include "studio/Preview.h"
#include "studio/SceneFolder.h"
#include "studio/Secrets.h"

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace orbel::studio {

struct StudioSettings {
    std::string place;      ///< a scene file, there or not, or a folder; empty for the current one
    std::uint16_t port = 0; ///< 0: any that is free
};

/// `[{message, remedy, pointer, line, column}]`; line and column for errors of syntax alone.
[[nodiscard]] json problemsJson(const Problems& problems);

/// Serves the page and does what it asks. Lives as long as the page can be used.
class Studio final : private HttpService {
public:
    /// Throws std::system_error when the port cannot be had, Refusal when there is no such folder.
    explicit Studio(const StudioSettings& settings);
    Studio(const Studio&) = delete;
    Studio& operator=(const Studio&) = delete;
    ~Studio();

    [[nodiscard]] std::uint16_t port() const { return m_server->port(); }
    /// The address that opens the page once.
    [[nodiscard]] std::string address();

    // --- For the routes ---
    [[nodiscard]] Secrets& secrets() { return m_secrets; }
    [[nodiscard]] SceneFolder& folder() { return m_folder; }
    [[nodiscard]] Preview& preview() { return m_preview; }
    [[nodiscard]] const std::string& table() const { return m_table; }
    /// The name of the scene that a tab works on.
    [[nodiscard]] std::string sceneOf(const std::string& tab);
    void setScene(const std::string& tab, const std::string& name);

private:
    [[nodiscard]] std::optional<Answer> refuse(const RequestHead& head) override;
    [[nodiscard]] std::uint64_t bodyLimit(const RequestHead& head) override;
    [[nodiscard]] Answer answer(const Request& request) override;

    Secrets m_secrets;
    SceneFolder m_folder;
    std::string m_firstScene;
    std::string m_table;
    Preview m_preview;
    std::mutex m_mutex;
    std::map<std::string, std::string> m_scenes; ///< by tab
    std::unique_ptr<HttpServer> m_server;
};

} // namespace orbel::studio
