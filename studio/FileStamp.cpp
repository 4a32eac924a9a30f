#include "studio/FileStamp.h"

#include "media/MediaError.h"
#include "media/SequencePattern.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <system_error>

#include <sys/stat.h>

namespace orbel::studio {

namespace {

namespace fs = std::filesystem;

std::optional<SequencePattern> patternOf(const std::string& file) {
    try {
        SequencePattern pattern(file);
        return pattern.isNumbered() ? std::optional(std::move(pattern)) : std::nullopt;
    } catch (const MediaError&) {
        return std::nullopt;
    }
}

} // namespace

std::string stampOf(const fs::path& file) {
    struct stat state = {};
    if (stat(file.c_str(), &state) != 0) {
        return "";
    }
    return std::to_string(state.st_ino) + "/" + std::to_string(state.st_size) + "/" +
           std::to_string(state.st_mtim.tv_sec) + "." + std::to_string(state.st_mtim.tv_nsec);
}

std::string fileOf(const SceneInput& input) {
    if (const auto* const raw = std::get_if<RawInput>(&input)) {
        return raw->path;
    }
    const auto* const media = std::get_if<MediaInput>(&input);
    return media == nullptr ? "" : media->path;
}

bool isSequence(const std::string& file) {
    return patternOf(file).has_value();
}

std::string stampOfInput(const std::string& file) {
    const std::optional<SequencePattern> pattern = patternOf(file);
    if (!pattern) {
        return stampOf(file);
    }
    std::uint64_t sum = 0; // of the files in whatever order
    std::error_code error;
    const fs::path folder = pattern->folder().empty() ? "." : pattern->folder();
    for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
        const std::string name = at->path().filename().string();
        if (pattern->numberOf(name)) {
            sum += std::hash<std::string>{}(name + "/" + stampOf(at->path()));
        }
    }
    return std::to_string(sum);
}

} // namespace orbel::studio
