#pragma once

#include "studio/EventHub.h"
#include "studio/ExportQueue.h"
#include "studio/FolderWatch.h"
#include "studio/HttpServer.h"
#include "studio/Json.h"
#include "studio/Preview.h"
#include "studio/Results.h"
#include "studio/SceneFolder.h"
#include "studio/Secrets.h"

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>

namespace orbel::studio {

struct StudioSettings {
    std::string place;      ///< a scene file, there or not, or a folder; empty for the current one
    std::uint16_t port = 0; ///< 0: any that is free
    HttpLimits limits;
    Conversions::Maker convertShape; ///< for scenes whose shape is a drawing or a text
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
    /// Asks the pages to keep what they have, and waits until they have or a moment has passed.
    void end();

    // --- For the routes ---
    [[nodiscard]] Secrets& secrets() { return m_secrets; }
    [[nodiscard]] SceneFolder& folder() { return m_folder; }
    [[nodiscard]] Preview& preview() { return m_preview; }
    [[nodiscard]] EventHub& events() { return m_events; }
    [[nodiscard]] ExportQueue& exports() { return m_exports; }
    [[nodiscard]] Results& results() { return m_results; }
    [[nodiscard]] Conversions& conversions() { return m_conversions; }
    [[nodiscard]] const std::string& table() const { return m_table; }
    /// `{families, hands}` that texts can be written with, as they are installed at the first call.
    [[nodiscard]] const json& letters();
    /// The name of the scene that a tab works on.
    [[nodiscard]] std::string sceneOf(const std::string& tab);
    void setScene(const std::string& tab, const std::string& name);
    /// A page has kept what it has.
    void pageEnded() { ++m_pagesEnded; }

private:
    [[nodiscard]] std::set<std::string> scenesInUse();
    [[nodiscard]] std::optional<Answer> refuse(const RequestHead& head) override;
    [[nodiscard]] std::uint64_t bodyLimit(const RequestHead& head) override;
    [[nodiscard]] Answer answer(const Request& request) override;

    Secrets m_secrets;
    SceneFolder m_folder;
    std::string m_firstScene;
    std::string m_table;
    std::once_flag m_lettersOnce;
    json m_letters;
    Conversions m_conversions;
    Preview m_preview{&m_conversions};
    std::mutex m_mutex;
    std::map<std::string, std::string> m_scenes; ///< by tab
    std::atomic<int> m_pagesEnded = 0;
    EventHub m_events;
    Results m_results;
    ExportQueue m_exports{&m_folder, &m_events, &m_conversions, &m_preview};
    std::unique_ptr<FolderWatch> m_watch;
    std::unique_ptr<HttpServer> m_server;
};

} // namespace orbel::studio
