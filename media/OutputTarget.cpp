#include "media/OutputTarget.h"

#include "media/MediaError.h"
#include "media/PendingFile.h"
#include "media/SequencePattern.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include <unistd.h>

namespace orbel {

namespace {

constexpr std::array<std::pair<const char*, OutputKind>, 10> endings{{
    {".png", OutputKind::Png},
    {".tif", OutputKind::Tiff},
    {".tiff", OutputKind::Tiff},
    {".exr", OutputKind::Exr},
    {".mp4", OutputKind::Mp4},
    {".mov", OutputKind::Mov},
    {".mkv", OutputKind::Mkv},
    {".gif", OutputKind::Gif},
    {".webp", OutputKind::WebP},
    {".apng", OutputKind::Apng},
}};

std::string endingOf(const std::string& path) {
    std::string ending = std::filesystem::path(path).extension().string();
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return ending;
}

OutputKind kindOf(const std::string& path) {
    const std::string ending = endingOf(path);
    for (const auto& [known, kind] : endings) {
        if (ending == known) {
            return kind;
        }
    }
    throw MediaError(path, "",
                     ending.empty() ? "the output name has no ending"
                                    : "the ending \"" + ending + "\" is not known",
                     "use .png, .tif, .tiff, .exr, .mp4, .mov, .mkv, .gif, .webp or .apng");
}

std::string errorWords(int code) {
    return std::generic_category().message(code);
}

void checkFile(const std::string& path) {
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) {
        throw MediaError(path, "", "is a folder", "name a file");
    }
    if (std::filesystem::exists(path, error) && access(path.c_str(), W_OK) != 0) {
        throw MediaError(path, "",
                         "the file exists and cannot be written (" + errorWords(errno) + ")",
                         "change its permissions or choose another name");
    }
}

std::string numberedName(const std::string& path) {
    const std::filesystem::path whole(path);
    return whole.stem().string() + "-%04d" + whole.extension().string();
}

} // namespace

OutputTarget targetOf(const std::string& path) {
    OutputTarget target;
    target.kind = kindOf(path);
    target.isFilm = target.kind != OutputKind::Png && target.kind != OutputKind::Tiff &&
                    target.kind != OutputKind::Exr;
    target.isSequence = !target.isFilm && SequencePattern(path).isNumbered();
    return target;
}

OutputTarget checkOutput(const std::string& path, long frames) {
    const OutputTarget target = targetOf(path);
    std::string file = path;
    if (!target.isFilm) {
        const SequencePattern pattern(path);
        if (frames > 1 && !target.isSequence) {
            throw MediaError(path, "",
                             "one picture cannot hold " + std::to_string(frames) + " frames",
                             "give a numbered name such as " + numberedName(path) +
                                 ", or a film ending in .mp4, .mov, .mkv, .gif, .webp or .apng");
        }
        file = pattern.pathOf(0);
    }
    const std::filesystem::path folder = std::filesystem::path(path).parent_path();
    checkTakesFiles(folder.empty() ? "." : folder.string(), path);
    if (!target.isSequence) {
        checkFile(file);
    }
    return target;
}

} // namespace orbel
