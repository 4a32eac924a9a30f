#include "studio/FolderWatch.h"

#include "studio/FileStamp.h"

#include <chrono>
#include <utility>

namespace orbel::studio {

namespace {

constexpr std::chrono::milliseconds lookInterval{500};
constexpr std::chrono::milliseconds lookStep{50};

} // namespace

FolderWatch::FolderWatch(SceneFolder* folder, EventHub* events,
                         std::function<std::set<std::string>()> scenes)
    : m_folder(folder),
      m_events(events),
      m_scenes(std::move(scenes)),
      m_folderStamp(stampOf(folder->path())) {
    m_thread = std::thread([this] {
        for (auto left = lookInterval; !m_ending; left -= lookStep) {
            if (left.count() <= 0) {
                look();
                left = lookInterval;
            }
            std::this_thread::sleep_for(lookStep);
        }
    });
}

FolderWatch::~FolderWatch() {
    m_ending = true;
    m_thread.join();
}

void FolderWatch::look() {
    for (const std::string& scene : m_scenes()) {
        lookAt(scene);
    }
    if (std::string stamp = stampOf(m_folder->path()); stamp != m_folderStamp) {
        m_folderStamp = std::move(stamp);
        m_events->tell({{"event", "files"}});
    }
}

void FolderWatch::lookAt(const std::string& scene) {
    try {
        const std::filesystem::path file = m_folder->pathOf(scene);
        std::string stamp = stampOf(file);
        std::optional<std::string>& known = m_stamps[scene];
        if (known == stamp) {
            return;
        }
        known = std::move(stamp); // the first one is told as well: a page may have read before it
        m_events->tell({{"event", "disk"},
                        {"name", scene},
                        {"revision", revisionOf(SceneFolder::read(file))}});
    } catch (const Refusal&) {
        // Became something that is no scene; whoever saves there will hear of it.
    }
}

} // namespace orbel::studio
