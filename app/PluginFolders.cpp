#include "app/PluginFolders.h"

#include <cstdlib>
#include <string_view>

namespace orbel::app {

namespace {

using Folders = std::vector<std::string>;

std::string_view environment(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? "" : value;
}

/// The folders of a list with ":" between them; empty ones are left out.
Folders split(std::string_view list) {
    Folders folders;
    while (!list.empty()) {
        const std::size_t end = list.find(':');
        if (const std::string_view folder = list.substr(0, end); !folder.empty()) {
            folders.emplace_back(folder);
        }
        list.remove_prefix(end == std::string_view::npos ? list.size() : end + 1);
    }
    return folders;
}

Folders operator+(Folders first, const Folders& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

Folders inHome(const char* folder) {
    const std::string_view home = environment("HOME");
    return home.empty() ? Folders{} : Folders{std::string(home) + folder};
}

/// FFmpeg goes on after FREI0R_PATH; MLT and GStreamer look there alone.
Folders ffmpegFolders() {
    return split(environment("FREI0R_PATH")) + inHome("/.frei0r-1/lib") +
           Folders{"/usr/local/lib/frei0r-1", "/usr/lib/frei0r-1", "/usr/local/lib64/frei0r-1",
                   "/usr/lib64/frei0r-1"};
}

Folders mltFolders() {
    for (const char* const name : {"FREI0R_PATH", "MLT_FREI0R_PLUGIN_PATH"}) {
        if (std::getenv(name) != nullptr) {
            return split(environment(name));
        }
    }
    return Folders{"/usr/lib/frei0r-1", "/usr/lib64/frei0r-1", "/opt/local/lib/frei0r-1",
                   "/usr/local/lib/frei0r-1"} +
           inHome("/.frei0r-1/lib");
}

Folders gstreamerFolders() {
    if (!environment("FREI0R_PATH").empty()) {
        return split(environment("FREI0R_PATH"));
    }
    Folders folders = inHome("/.frei0r-1/lib");
    if (*ORBEL_ARCHITECTURE_LIBRARIES != '\0') {
        folders.emplace_back("/usr/lib/" ORBEL_ARCHITECTURE_LIBRARIES "/frei0r-1");
    }
    return std::move(folders) + Folders{"/usr/local/lib/frei0r-1", "/usr/lib/frei0r-1",
                                        "/usr/local/lib64/frei0r-1", "/usr/lib64/frei0r-1"};
}

} // namespace

std::vector<PluginHostFolders> frei0rHosts() {
    return {{"ffmpeg", ffmpegFolders(), "FREI0R_PATH"},
            {"MLT", mltFolders(), "FREI0R_PATH"},
            {"GStreamer", gstreamerFolders(), "FREI0R_PATH"}};
}

std::vector<PluginHostFolders> ofxHosts() {
    const Folders own = split(environment("OFX_PLUGIN_PATH"));
#ifdef __APPLE__
    return {{"OFX hosts", own + Folders{"/Library/OFX/Plugins"}, "OFX_PLUGIN_PATH"}};
#else
    return {
        {"OFX hosts", own + Folders{"/usr/OFX/Plugins"}, "OFX_PLUGIN_PATH"},
        {"MLT", Folders{"/usr/OFX/Plugins", "/usr/local/OFX/Plugins"} + own, "OFX_PLUGIN_PATH"}};
#endif
}

std::string ofxBinary(const std::string& folder) {
#if defined(__APPLE__)
    constexpr const char* architecture = "MacOS";
#elif defined(__x86_64__)
    constexpr const char* architecture = "Linux-x86-64";
#elif defined(__aarch64__)
    constexpr const char* architecture = "Linux-aarch64";
#else
    constexpr const char* architecture = "Linux-x86";
#endif
    return folder + "/Orbel.ofx.bundle/Contents/" + architecture + "/Orbel.ofx";
}

} // namespace orbel::app
