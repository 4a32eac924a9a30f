#pragma once

#include "studio/EventHub.h"
#include "studio/Preview.h"
#include "studio/SceneFolder.h"

#include <atomic>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <thread>

namespace orbel::studio {

/// Looks twice a second whether somebody changed a scene, the folder or a file that is on show,
/// and tells the pages: `{"event": "disk", name, revision}`; `{"event": "files", changed}` for
/// another list of files, or with `changed` other contents of those on show.
class FolderWatch {
public:
    /// Borrows everything; `scenes` gives the names of the scenes that pages work on.
    FolderWatch(SceneFolder* folder, EventHub* events, Preview* preview,
                std::function<std::set<std::string>()> scenes);
    FolderWatch(const FolderWatch&) = delete;
    FolderWatch& operator=(const FolderWatch&) = delete;
    ~FolderWatch();

private:
    void look();
    void lookAt(const std::string& scene);
    /// Whether a file on show is another than it was.
    bool filesChanged();
    bool listChanged();

    SceneFolder* m_folder;
    EventHub* m_events;
    Preview* m_preview;
    std::function<std::set<std::string>()> m_scenes;
    std::map<std::string, std::optional<std::string>> m_stamps; ///< of scenes seen
    std::map<std::string, std::string> m_fileStamps;            ///< of files on show
    std::string m_folderStamp;
    json m_list; ///< of the folder
    std::atomic<bool> m_ending = false;
    std::thread m_thread;
};

} // namespace orbel::studio
