#include "farm/Job.h"

#include "film/BuildInfo.h"
#include "media/FileHash.h"
#include "media/MediaError.h"
#include "media/PendingFile.h"
#include "media/SequencePattern.h"
#include "scene/SceneReader.h"
#include "scene/SceneShapes.h"
#include "scene/SceneWriter.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace orbel {

namespace {

using nlohmann::json;
namespace fs = std::filesystem;

constexpr int jobVersion = 1;

std::string absolute(const std::string& path) {
    return fs::absolute(path).lexically_normal().string();
}

std::optional<std::string> absolute(const std::optional<std::string>& path) {
    return path ? std::optional(absolute(*path)) : std::nullopt;
}

std::string descriptionOf(const std::string& folder) {
    return folder + "/job.json";
}

/// The scene with paths that hold in every folder, and without a shape that has been converted.
Scene settled(Scene scene) {
    if (auto* const raw = std::get_if<RawInput>(&scene.input)) {
        raw->path = absolute(raw->path);
    } else if (auto* const media = std::get_if<MediaInput>(&scene.input)) {
        media->path = absolute(media->path);
    }
    scene.shape = scene.needsConversion() ? std::nullopt : absolute(scene.shape);
    scene.import.reset();
    scene.lettering.reset();
    return scene;
}

/// A file that a scene names, not looked at yet.
JobFile named(const std::string& path) {
    JobFile file;
    file.path = path;
    return file;
}

/// The files behind a name that may be a numbered sequence, in order.
std::vector<JobFile> filesBehind(const std::string& path) {
    if (fs::exists(path) || path.find('%') == std::string::npos) {
        return {named(path)};
    }
    const SequencePattern pattern(path);
    std::vector<std::pair<long, std::string>> numbered;
    for (const fs::directory_entry& entry : fs::directory_iterator(pattern.folder())) {
        if (const auto number = pattern.numberOf(entry.path().filename().string())) {
            numbered.emplace_back(*number, entry.path().string());
        }
    }
    std::sort(numbered.begin(), numbered.end());
    std::vector<JobFile> files;
    for (const auto& [number, file] : numbered) {
        files.push_back(named(file));
        files.back().picture = number - numbered.front().first;
    }
    return files;
}

std::vector<JobFile> filesOf(const Scene& scene) {
    std::vector<JobFile> files;
    if (const auto* const raw = std::get_if<RawInput>(&scene.input)) {
        files.push_back(named(raw->path));
    } else if (const auto* const media = std::get_if<MediaInput>(&scene.input)) {
        files = filesBehind(media->path);
    }
    if (scene.shape) {
        files.push_back(named(*scene.shape));
    }
    for (const int preset : chosenPresets(scene)) {
        files.push_back(named(absolute(presetFile(preset))));
    }
    return files;
}

/// Everything but the hash.
JobFile glanceAt(JobFile file) {
    std::error_code error;
    file.bytes = fs::file_size(file.path, error);
    if (!error) {
        file.modified = fs::last_write_time(file.path, error).time_since_epoch().count();
    }
    if (error) {
        throw MediaError(file.path, "", "the file cannot be read (" + error.message() + ")",
                         "check the file and its permissions");
    }
    return file;
}

std::string rememberedHash(const Job& job, const JobFile& seen) {
    for (const JobFile& known : job.files) {
        if (known.path == seen.path && known.bytes == seen.bytes &&
            known.modified == seen.modified) {
            return known.hash;
        }
    }
    return {};
}

json toJson(const JobFile& file) {
    return {{"path", file.path},
            {"bytes", file.bytes},
            {"modified", file.modified},
            {"sha256", file.hash},
            {"picture", file.picture ? json(*file.picture) : json()}};
}

JobFile fileFrom(const json& value) {
    JobFile file{value.at("path"), value.at("bytes"), value.at("modified"), value.at("sha256"), {}};
    if (const json& picture = value.at("picture"); !picture.is_null()) {
        file.picture = picture.get<long>();
    }
    return file;
}

std::optional<std::string> textFrom(const json& value, const char* key) {
    const auto found = value.find(key);
    return found == value.end() || found->is_null() ? std::nullopt
                                                    : std::optional(found->get<std::string>());
}

std::string textOf(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

std::string frameWords(const FrameRange& frames) {
    return std::to_string(frames.first) + " to " + std::to_string(frames.last);
}

} // namespace

long Job::chunkCount() const {
    return (frames.count() + chunkFrames - 1) / chunkFrames;
}

FrameRange Job::chunkRange(long chunk) const {
    const long first = frames.first + chunk * chunkFrames;
    return {first, std::min(frames.last, first + chunkFrames - 1)};
}

PartKind Job::kind() const {
    return outputs.file ? partKind(targetOf(*outputs.file)) : PartKind::Pictures;
}

std::string jobFolderOf(const FilmOutputs& outputs) {
    std::string name = absolute(outputs.file.value_or(outputs.rawFolder.value_or("")));
    while (name.size() > 1 && name.back() == '/') {
        name.pop_back();
    }
    return name + ".orbel";
}

Job makeJob(const Scene& scene, const ScenePlan& plan, const FilmOutputs& outputs, long chunkFrames,
            const Job* known) {
    Job job;
    job.folder = jobFolderOf(outputs);
    job.outputs.file = absolute(outputs.file);
    job.outputs.rawFolder = absolute(outputs.rawFolder);
    const Scene own = settled(scene);
    job.scene = sceneText(own);
    job.shapeText = plan.shapeText;
    job.frames = plan.frames;
    job.size = plan.size;
    job.build = buildIdentity();
    job.chunkFrames = chunkFrames;
    for (const JobFile& file : filesOf(own)) {
        JobFile seen = glanceAt(file);
        seen.hash = known == nullptr ? "" : rememberedHash(*known, seen);
        seen.hash = seen.hash.empty() ? hashOfFiles({file.path}) : seen.hash;
        job.files.push_back(std::move(seen));
    }
    return job;
}

void writeJob(const Job& job) {
    json files = json::array();
    std::transform(job.files.begin(), job.files.end(), std::back_inserter(files), toJson);
    const json description{{"orbel-job", jobVersion},
                           {"build", job.build},
                           {"output", job.outputs.file ? json(*job.outputs.file) : json()},
                           {"raw", job.outputs.rawFolder ? json(*job.outputs.rawFolder) : json()},
                           {"frames", {job.frames.first, job.frames.last}},
                           {"size", {job.size.width, job.size.height}},
                           {"chunk", job.chunkFrames},
                           {"files", files},
                           {"shapeText", job.shapeText},
                           {"scene", json::parse(job.scene)}};
    writeWholeFile(descriptionOf(job.folder),
                   description.dump(2, ' ', false, json::error_handler_t::replace) + "\n");
}

bool holdsJob(const std::string& folder) {
    std::error_code error;
    return fs::is_regular_file(descriptionOf(folder), error);
}

Job readJob(const std::string& folder) {
    const std::string file = descriptionOf(folder);
    if (!holdsJob(folder)) {
        throw MediaError(folder, "", "there is no job in this folder",
                         "name the folder that was made beside the film, film.mp4.orbel");
    }
    try {
        const json description = json::parse(textOf(file));
        if (description.at("orbel-job") != jobVersion) {
            throw MediaError(file, "", "the job was made by another version of this program",
                             "go on with that one, or begin anew with --restart");
        }
        Job job;
        job.folder = absolute(folder);
        job.build = description.at("build");
        job.outputs.file = textFrom(description, "output");
        job.outputs.rawFolder = textFrom(description, "raw");
        job.frames = {description.at("frames").at(0), description.at("frames").at(1)};
        job.size = {description.at("size").at(0), description.at("size").at(1)};
        job.chunkFrames = description.at("chunk");
        job.shapeText = description.at("shapeText");
        job.scene = description.at("scene").dump(2, ' ', false) + "\n";
        for (const json& item : description.at("files")) {
            job.files.push_back(fileFrom(item));
        }
        if (job.chunkFrames < 1 || job.frames.count() < 1 || job.outputs.none()) {
            throw MediaError(file, "", "the job is damaged", "begin anew with --restart");
        }
        return job;
    } catch (const json::exception&) {
        throw MediaError(file, "", "the job is damaged", "begin anew with --restart");
    }
}

Scene sceneOf(const Job& job) {
    Problems problems;
    std::optional<Scene> scene = readScene(job.scene, job.folder + "/scene.json", &problems);
    if (!scene || !problems.empty()) {
        throw MediaError(job.folder, "", "the scene in this job cannot be read",
                         "begin anew with --restart");
    }
    scene->frames = job.frames;
    return *std::move(scene);
}

std::vector<std::string> differences(const Job& begun, const Job& asked) {
    std::vector<std::string> found;
    const auto compare = [&found](const auto& a, const auto& b, const std::string& words) {
        if (!(a == b)) {
            found.push_back(words);
        }
    };
    compare(begun.scene, asked.scene, "the scene");
    compare(begun.shapeText, asked.shapeText, "the shape");
    compare(begun.frames, asked.frames,
            "the frames (" + frameWords(begun.frames) + ", now " + frameWords(asked.frames) + ")");
    compare(begun.size, asked.size, "the size");
    compare(begun.chunkFrames, asked.chunkFrames,
            "the frames of a chunk (" + std::to_string(begun.chunkFrames) + ")");
    compare(begun.build, asked.build, "the program (" + begun.build + ")");
    compare(begun.outputs.file, asked.outputs.file, "the output");
    compare(begun.outputs.rawFolder, asked.outputs.rawFolder, "the raw folder");
    compare(begun.files.size(), asked.files.size(), "the number of files that the scene reads");
    for (std::size_t i = 0; i < std::min(begun.files.size(), asked.files.size()); ++i) {
        compare(begun.files[i].hash, asked.files[i].hash, "the file " + asked.files[i].path);
    }
    return found;
}

std::vector<std::string> changesSince(const Job& job, const FrameRange& frames) {
    std::vector<std::string> found;
    if (job.build != buildIdentity()) {
        found.push_back("the program (" + job.build + ")");
    }
    for (const JobFile& known : job.files) {
        if (known.picture && (*known.picture < frames.first || *known.picture > frames.last)) {
            continue;
        }
        try {
            const JobFile now = glanceAt(known);
            const bool same = now.bytes == known.bytes && (now.modified == known.modified ||
                                                           hashOfFiles({known.path}) == known.hash);
            if (!same) {
                found.push_back("the file " + known.path);
            }
        } catch (const MediaError&) {
            found.push_back("the file " + known.path + ", which is gone");
        }
    }
    return found;
}

} // namespace orbel
