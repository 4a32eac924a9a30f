#include "studio/SceneFolder.h"

#include "media/MediaError.h"
#include "media/PendingFile.h"
#include "scene/Diagnostics.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <ctime>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <system_error>
#include <utility>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

namespace orbel::studio {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t mostListed = 2000;

using Ending = std::pair<std::string_view, FileKind>;
constexpr std::array<Ending, 20> endings{
    {{".svg", FileKind::Svg},      {".svgz", FileKind::Svg},     {".png", FileKind::Picture},
     {".jpg", FileKind::Picture},  {".jpeg", FileKind::Picture}, {".tif", FileKind::Picture},
     {".tiff", FileKind::Picture}, {".exr", FileKind::Picture},  {".bmp", FileKind::Picture},
     {".webp", FileKind::Picture}, {".mp4", FileKind::Clip},     {".mov", FileKind::Clip},
     {".mkv", FileKind::Clip},     {".gif", FileKind::Clip},     {".apng", FileKind::Clip},
     {".webm", FileKind::Clip},    {".avi", FileKind::Clip},     {".m4v", FileKind::Clip},
     {".raw", FileKind::Raw},      {".json", FileKind::Scene}}};

const char* wordOf(FileKind kind) {
    switch (kind) {
    case FileKind::Svg:
        return "svg";
    case FileKind::Picture:
        return "picture";
    case FileKind::Clip:
        return "clip";
    case FileKind::Raw:
        return "raw";
    case FileKind::Scene:
        return "scene";
    default:
        return "other";
    }
}

/// Nothing but a name: no way out of the folder, nothing hidden, nothing that no keyboard types.
bool isPlainName(const std::string& name) {
    return !name.empty() && name.size() <= 200 && name.front() != '.' &&
           std::none_of(name.begin(), name.end(), [](char c) {
               return c == '/' || c == '\\' || c == 0x7f || static_cast<unsigned char>(c) < 0x20;
           });
}

[[noreturn]] void refuseWriting(const fs::path& file, const MediaError& error) {
    const int code = error.code();
    if (code == EEXIST) {
        throw Refusal{409, inQuotes(file.filename().string()) + " exists already",
                      "choose another name, or overwrite it"};
    }
    const bool full = code == ENOSPC || code == EDQUOT || code == EFBIG;
    throw Refusal{full ? 507 : 500,
                  inQuotes(file.filename().string()) + " cannot be written (" +
                      std::generic_category().message(code) + ")",
                  full ? "free some room; what was there before is unharmed"
                       : "check the folder and its permissions"};
}

/// The last number in a name, as it is written, with what stands around it.
struct NumberedName {
    std::string before;
    std::string digits;
    std::string after;
};

std::optional<NumberedName> numbered(const std::string& name) {
    constexpr const char* digits = "0123456789";
    const std::size_t last = name.find_last_of(digits, name.rfind('.'));
    if (last == std::string::npos || name.find('%') != std::string::npos) {
        return std::nullopt;
    }
    const std::size_t begin = name.find_last_not_of(digits, last) + 1; // npos + 1 is 0
    if (last + 1 - begin > 9) {
        return std::nullopt;
    }
    return NumberedName{name.substr(0, begin), name.substr(begin, last + 1 - begin),
                        name.substr(last + 1)};
}

/// How many digits numbers are filled up to with zeros; 0 for not at all.
std::size_t filledWidth(const std::set<std::string>& numbers) {
    const auto filled = std::find_if(numbers.begin(), numbers.end(), [](const std::string& number) {
        return number.size() > 1 && number.front() == '0';
    });
    const std::size_t width = (filled == numbers.end() ? numbers.begin() : filled)->size();
    const bool alike = std::all_of(numbers.begin(), numbers.end(), [&](const std::string& number) {
        return number.size() == width;
    });
    return width > 1 && (alike || filled != numbers.end()) ? width : 0;
}

/// Pictures that differ in a number alone may be a film.
void addSequences(const std::vector<std::string>& names, json* files) {
    std::map<std::pair<std::string, std::string>, std::set<std::string>> alike;
    for (const std::string& name : names) {
        if (const auto found = numbered(name); found && kindOf(name) == FileKind::Picture) {
            alike[{found->before, found->after}].insert(found->digits);
        }
    }
    for (const auto& [around, numbers] : alike) {
        const std::size_t width = filledWidth(numbers);
        std::set<long> frames;
        for (const std::string& number : numbers) {
            if (number.size() >= width) {
                frames.insert(std::stol(number));
            }
        }
        if (frames.size() > 1) {
            const std::string place = width == 0 ? "%d" : "%0" + std::to_string(width) + "d";
            files->push_back({{"name", around.first + place + around.second},
                              {"kind", "sequence"},
                              {"first", *frames.begin()},
                              {"count", frames.size()}});
        }
    }
}

/// When the file was written: "2026-01-31T12:00:00Z".
std::string timeOf(const fs::path& file) {
    struct stat state = {};
    struct tm time = {};
    if (stat(file.c_str(), &state) != 0 || gmtime_r(&state.st_mtim.tv_sec, &time) == nullptr) {
        return "";
    }
    std::array<char, 32> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &time)};
}

} // namespace

FileKind kindOf(std::string_view name) {
    std::string small(name);
    std::transform(small.begin(), small.end(), small.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    const auto* const found =
        std::find_if(endings.begin(), endings.end(), [&](const Ending& ending) {
            return small.size() > ending.first.size() && small.ends_with(ending.first);
        });
    return found == endings.end() ? FileKind::Other : found->second;
}

std::string revisionOf(const std::optional<std::string>& bytes) {
    return bytes ? std::to_string(bytes->size()) + "-" +
                       std::to_string(std::hash<std::string>{}(*bytes))
                 : "";
}

SceneFolder::SceneFolder(fs::path folder) : m_folder(std::move(folder)) {}

fs::path SceneFolder::pathOf(const std::string& name) const {
    const auto unknown = [] {
        return Refusal{404, "there is no such file in the scene's folder",
                       "name a file, without a folder"};
    };
    if (!isPlainName(name)) {
        throw unknown();
    }
    fs::path file = m_folder / name;
    std::error_code error;
    const fs::path real = fs::weakly_canonical(file, error);
    if (error || real.parent_path() != fs::weakly_canonical(m_folder, error)) {
        throw unknown();
    }
    return file;
}

fs::path SceneFolder::pathOf(const std::string& name, std::initializer_list<FileKind> kinds) const {
    fs::path file = pathOf(name);
    if (std::find(kinds.begin(), kinds.end(), kindOf(name)) == kinds.end()) {
        throw Refusal{400, "the ending of " + inQuotes(name) + " does not fit",
                      "scenes end in .json, shapes in .svg"};
    }
    return file;
}

std::optional<std::string> SceneFolder::read(const fs::path& file) {
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    if (!fs::exists(status)) {
        return std::nullopt;
    }
    const std::string name = inQuotes(file.filename().string());
    if (!fs::is_regular_file(status)) {
        throw Refusal{400, name + " is not a file", "name a scene file"};
    }
    if (fs::file_size(file, error) > largestScene) {
        throw Refusal{400, name + " is larger than 16 MiB", "is it a scene?"};
    }
    std::ifstream stream(file, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    if (!stream.is_open() || stream.bad()) {
        throw Refusal{400, name + " cannot be read", "check its permissions"};
    }
    return bytes;
}

void SceneFolder::write(const fs::path& file, std::string_view bytes, Overwrite overwrite) {
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        throw Refusal{400, inQuotes(file.filename().string()) + " is not a file",
                      "choose another name"};
    }
    try {
        PendingFile pending(file.string(), Writers::Any);
        pending.write(bytes);
        pending.complete(overwrite == Overwrite::Yes ? Existing::Replaced : Existing::Kept);
    } catch (const MediaError& failure) {
        refuseWriting(file, failure);
    }
}

bool SceneFolder::holds(const fs::path& file, std::string_view bytes) {
    std::error_code error;
    if (!fs::is_regular_file(file, error) || fs::file_size(file, error) != bytes.size()) {
        return false;
    }
    std::ifstream stream(file, std::ios::binary);
    return std::equal(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>(),
                      bytes.begin(), bytes.end());
}

std::string SceneFolder::freeName(const std::string& name) const {
    const fs::path whole = name;
    std::string free = name;
    std::error_code error;
    for (int number = 2; fs::exists(fs::symlink_status(m_folder / free, error)); ++number) {
        free = whole.stem().string() + "-" + std::to_string(number) + whole.extension().string();
    }
    return free;
}

json SceneFolder::list() const {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator file(m_folder, error), end; !error && file != end;
         file.increment(error)) {
        std::string name = file->path().filename().string();
        std::error_code unknown;
        if (isPlainName(name) && kindOf(name) != FileKind::Other &&
            file->is_regular_file(unknown) && names.size() < mostListed) {
            names.push_back(std::move(name));
        }
    }
    std::sort(names.begin(), names.end());
    json files = json::array();
    for (const std::string& name : names) {
        files.push_back({{"name", name}, {"kind", wordOf(kindOf(name))}});
    }
    addSequences(names, &files);
    return files;
}

fs::path SceneFolder::journalOf(const std::string& scene) const {
    return m_folder / ("." + scene + ".orbel-journal");
}

json SceneFolder::journal(const std::string& scene) const {
    const fs::path file = journalOf(scene);
    const std::optional<std::string> text = read(file);
    return text ? json{{"text", *text}, {"savedAt", timeOf(file)}} : json(nullptr);
}

} // namespace orbel::studio
