#include "studio/FolderWatch.h"

#include "studio/FileStamp.h"

#include <chrono>
#include <utility>

namespace orbel::studio {

namespace {

constexpr std::chrono::milliseconds lookInterval{500};
constexpr std::chrono::milliseconds lookStep{50};

} // namespace

FolderWatch::FolderWatch(SceneFolder* folder, EventHub* events, Preview* preview,
                         std::function<std::set<std::string>()> scenes)
    : m_folder(folder),
      m_events(events),
      m_preview(preview),
      m_scenes(std::move(scenes)),
      m_folderStamp(stampOf(folder->path())),
      m_list(folder->list()) {
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
    const bool changed = filesChanged();
    if (changed) {
        m_preview->filesChanged();
    }
    if (listChanged() || changed) {
        m_events->tell({{"event", "files"}, {"changed", changed}});
    }
}

/// Hidden files, as journals are, come and go without a word.
bool FolderWatch::listChanged() {
    std::string stamp = stampOf(m_folder->path());
    if (stamp == m_folderStamp) {
        return false;
    }
    m_folderStamp = std::move(stamp);
    json list = m_folder->list();
    const bool changed = list != m_list;
    m_list = std::move(list);
    return changed;
}

bool FolderWatch::filesChanged() {
    bool changed = false;
    std::map<std::string, std::string> stamps;
    for (const std::string& file : m_preview->filesOnShow()) {
        const auto known = m_fileStamps.find(file);
        std::string stamp = stampOfInput(file);
        changed = changed || (known != m_fileStamps.end() && known->second != stamp);
        stamps.emplace(file, std::move(stamp));
    }
    m_fileStamps = std::move(stamps);
    return changed;
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
