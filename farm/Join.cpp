#include "farm/Join.h"

#include "media/FilmParts.h"
#include "media/PendingFile.h"

#include <filesystem>

namespace orbel {

namespace {

namespace fs = std::filesystem;

bool isInterrupted(const FilmCallbacks& callbacks) {
    return callbacks.interrupted && callbacks.interrupted();
}

FilmResult interrupted(const Job& job) {
    FilmResult film;
    film.end = FilmEnd::Interrupted;
    film.frames = job.frames;
    return film;
}

/// Done when every chunk is there and sound.
FilmResult completeChunks(const Job& job, ScenePlan* plan, const ChunkOptions& options,
                          const FilmCallbacks& callbacks) {
    for (long chunk = 0; chunk < job.chunkCount(); ++chunk) {
        if (isInterrupted(callbacks)) {
            return interrupted(job);
        }
        const std::optional<ChunkRecord> record = finishedChunk(job, chunk);
        if (record && isSound(job, chunk, *record)) {
            continue;
        }
        forgetChunk(job, chunk);
        if (FilmResult film = renderChunk(job, plan, chunk, options, callbacks);
            film.end != FilmEnd::Done) {
            return film;
        }
    }
    return {};
}

FilmResult assemble(const Job& job, const WriterSpec& spec, const FilmCallbacks& callbacks) {
    FilmAssembly assembly(*job.outputs.file, spec);
    for (long chunk = 0; chunk < job.chunkCount(); ++chunk) {
        if (isInterrupted(callbacks)) {
            return interrupted(job);
        }
        assembly.append(chunkPath(job, chunk), job.chunkRange(chunk).count());
    }
    assembly.finish();
    return {};
}

/// A second name for the same file, where the file system has that; the chunk stays complete until
/// all are in place.
void place(const std::string& from, const std::string& to) {
    const std::string own = to + ".part";
    std::error_code error;
    fs::remove(own, error);
    fs::create_hard_link(from, own, error);
    if (error) {
        fs::copy_file(from, own, fs::copy_options::overwrite_existing);
    }
    if (!publishFile(own, to)) {
        throw MediaError(to, "",
                         "the picture cannot be written (" +
                             std::generic_category().message(errno) + ")",
                         outOfRoom, MediaError::Passing);
    }
}

FilmResult placePictures(const Job& job, const FilmCallbacks& callbacks) {
    const std::string folder = job.outputs.rawFolder.value_or(
        fs::path(job.outputs.file.value_or("")).parent_path().string());
    fs::create_directories(folder);
    const PendingFile sign(job.outputs.file ? *job.outputs.file : folder + "/frames");
    for (long chunk = 0; chunk < job.chunkCount(); ++chunk) {
        for (const std::string& file : chunkFiles(job, chunk)) {
            if (isInterrupted(callbacks)) {
                return interrupted(job);
            }
            place(file, folder + "/" + fs::path(file).filename().string());
        }
    }
    return {};
}

FilmResult failed(const Job& job, Problem problem, bool passing) {
    FilmResult film;
    film.end = FilmEnd::Failed;
    film.frames = job.frames;
    film.problem = std::move(problem);
    film.passing = passing;
    return film;
}

FilmResult join(const Job& job, const WriterSpec& spec, FilmAssembly* film,
                const FilmCallbacks& callbacks) {
    try {
        if (film != nullptr) {
            film->finish();
            return {};
        }
        return job.kind() == PartKind::Pictures ? placePictures(job, callbacks)
                                                : assemble(job, spec, callbacks);
    } catch (const MediaError& error) {
        return failed(job, problemOf(error), error.isPassing());
    } catch (const fs::filesystem_error& error) {
        return failed(job,
                      {error.path1().string(), "",
                       "the output cannot be written (" + error.code().message() + ")", outOfRoom},
                      true);
    }
}

WriterSpec specOf(const ScenePlan& plan, const ChunkOptions& options) {
    FilmRequest request;
    request.threads = options.threads;
    return writerSpec(plan, request.threadCount());
}

} // namespace

std::unique_ptr<FilmAssembly> beginFilm(const Job& job, const ScenePlan& plan,
                                        const ChunkOptions& options) {
    return job.kind() == PartKind::CoderInput
               ? std::make_unique<FilmAssembly>(*job.outputs.file, specOf(plan, options))
               : nullptr;
}

FilmResult joinFilm(const Job& job, ScenePlan* plan, const ChunkOptions& options,
                    const FilmCallbacks& callbacks) {
    FilmResult film;
    if (options.film == nullptr) {
        film = completeChunks(job, plan, options, callbacks);
    }
    if (film.end == FilmEnd::Done) {
        film = join(job, specOf(*plan, options), options.film, callbacks);
    }
    film.frames = job.frames;
    film.framesWritten = film.end == FilmEnd::Done ? job.frames.count() : 0;
    return film;
}

} // namespace orbel
