#include "farm/Task.h"

#include "farm/Command.h"
#include "farm/Join.h"
#include "farm/Submit.h"
#include "media/FileHash.h"
#include "media/PendingFile.h"

#include <nlohmann/json.hpp>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

namespace orbel {

namespace {

using nlohmann::json;
namespace fs = std::filesystem;

/// Chunks that one machine may render at the end while all others have nothing to do.
constexpr std::size_t mostRepairs = 8;

std::string filmRecordPath(const Job& job) {
    return job.folder + "/film.done";
}

FilmRequest requestFor(const Job& job, int threads) {
    FilmRequest request;
    request.outputs = job.outputs;
    request.threads = threads;
    return request;
}

FilmResult refused(const Job& job, Problem problem, bool passing) {
    FilmResult film;
    film.end = FilmEnd::Refused;
    film.frames = job.frames;
    film.problem = std::move(problem);
    film.passing = passing;
    return film;
}

/// What another machine has just written may take a moment to be seen here.
std::vector<long> missingForGood(const Job& job) {
    std::vector<long> missing = missingChunks(job);
    for (int i = 0; i < 3 && !missing.empty(); ++i) {
        std::this_thread::sleep_for(std::chrono::seconds(1));
        missing = missingChunks(job);
    }
    return missing;
}

void recordFilm(const Job& job) {
    json record = json::object();
    if (job.kind() != PartKind::Pictures) {
        record["bytes"] = fs::file_size(*job.outputs.file);
        record["sha256"] = hashOfFiles({*job.outputs.file});
    }
    writeWholeFile(filmRecordPath(job), record.dump(2) + "\n");
}

FilmResult join(const Job& job, const ChunkOptions& options, const FilmCallbacks& callbacks) {
    if (const std::vector<long> missing = missingForGood(job); missing.size() > mostRepairs) {
        // Trying again here would change nothing.
        return refused(job,
                       {job.folder, "", std::to_string(missing.size()) + " chunks are missing",
                        "type \"orbel farm resume " + shellQuoted(job.folder) + "\""},
                       false);
    }
    ScenePlan plan = planJob(job, options.threads, job.frames);
    FilmResult film = joinFilm(job, &plan, options, callbacks);
    if (film.end == FilmEnd::Done) {
        recordFilm(job);
    }
    return film;
}

} // namespace

ScenePlan planJob(const Job& job, int threads, const FrameRange& shown) {
    if (const std::vector<std::string> changed = changesSince(job, shown); !changed.empty()) {
        throw MediaError(job.folder, "",
                         "this is not as it was when the job was made: " + changed[0],
                         "put that back, or submit anew with --restart");
    }
    Problems problems;
    std::optional<ScenePlan> plan = planFilm(sceneOf(job), requestFor(job, threads), &problems);
    if (!plan) {
        const Problem& first = problems.items().front();
        throw MediaError(first.file, first.place, first.message, first.remedy);
    }
    if (!(plan->frames == job.frames) || !(plan->size == job.size)) {
        throw MediaError(job.folder, "", "the scene has another size or range here than in the job",
                         "submit anew with --restart");
    }
    plan->shapeText = job.shapeText;
    return *std::move(plan);
}

long chunkInList(const std::string& list, long index) {
    std::ifstream lines(list);
    long chunk = -1;
    for (long line = 0; line <= index && lines >> chunk; ++line) {
    }
    if (!lines || index < 0) {
        throw MediaError(list, "line " + std::to_string(index + 1), "there is no such task",
                         "is the folder of the job visible on this machine?", MediaError::Passing);
    }
    return chunk;
}

FilmResult runTask(const Job& job, long chunk, const ChunkOptions& options,
                   const FilmCallbacks& callbacks) {
    if (finishedChunk(job, chunk)) {
        return {};
    }
    FilmResult film;
    try {
        ScenePlan plan = planJob(job, options.threads, job.chunkRange(chunk));
        film = renderChunk(job, &plan, chunk, options, callbacks);
    } catch (const MediaError& error) {
        film = refused(job, problemOf(error), true); // another machine may see what this one lacks
    }
    if (film.problem) {
        noteFailure(job, chunk, sentence(*film.problem));
    }
    return film;
}

FilmResult runJoin(const Job& job, const ChunkOptions& options, const FilmCallbacks& callbacks) {
    try {
        return join(job, options, callbacks);
    } catch (const MediaError& error) {
        return refused(job, problemOf(error), error.isPassing());
    } catch (const fs::filesystem_error& error) {
        return refused(job, {error.path1().string(), "", error.code().message(), outOfRoom}, true);
    }
}

std::optional<FilmRecord> finishedFilm(const Job& job) {
    std::ifstream stream(filmRecordPath(job), std::ios::binary);
    const json record = json::parse(stream, nullptr, false);
    if (!record.is_object()) {
        return std::nullopt;
    }
    return FilmRecord{record.value("bytes", std::uint64_t{0}), record.value("sha256", "")};
}

} // namespace orbel
