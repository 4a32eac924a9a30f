#pragma once

#include "studio/EventHub.h"
#include "studio/SceneFolder.h"

#include <atomic>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <thread>

namespace orbel::studio {

/// Looks twice a second whether somebody changed a scene or the folder, and tells the pages:
/// `{"event": "disk", name, revision}`, `{"event": "files"}`.
class FolderWatch {
public:
    /// Borrows everything; `scenes` gives the names of the scenes that pages work on.
    FolderWatch(SceneFolder* folder, EventHub* events,
                std::function<std::set<std::string>()> scenes);
    FolderWatch(const FolderWatch&) = delete;
    FolderWatch& operator=(const FolderWatch&) = delete;
    ~FolderWatch();

private:
    void look();
    void lookAt(const std::string& scene);

    SceneFolder* m_folder;
    EventHub* m_events;
    std::function<std::set<std::string>()> m_scenes;
    std::map<std::string, std::optional<std::string>> m_stamps; ///< of scenes seen
    std::string m_folderStamp;
    std::atomic<bool> m_ending = false;
    std::thread m_thread;
};

} // namespace orbel::studio
