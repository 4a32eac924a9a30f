#include "farm/Resume.h"

#include "farm/DiskEstimate.h"
#include "farm/Join.h"
#include "media/PendingFile.h"

#include <filesystem>

namespace orbel {

namespace {

namespace fs = std::filesystem;

std::string listed(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : ", ") + word;
    }
    return text;
}

long framesIn(const Job& job, const std::vector<long>& missing) {
    long frames = job.frames.count();
    for (const long chunk : missing) {
        frames -= job.chunkRange(chunk).count();
    }
    return frames;
}

/// One run over a job, from the first missing chunk to the film.
class Run {
public:
    Run(const Job& job, ScenePlan* plan, const FilmRequest& request,
        const ResumeCallbacks& callbacks)
        : m_job(job), m_plan(plan), m_callbacks(callbacks) {
        m_options.threads = request.threads;
    }

    FilmResult go() {
        const std::vector<long> missing = missingChunks(m_job);
        m_kept = framesIn(m_job, missing);
        if (m_callbacks.found) {
            m_callbacks.found(m_kept);
        }
        // What an earlier run has left is not coded again before there is anything new: a run that
        // is killed early, time and again, would come no further.
        std::unique_ptr<FilmAssembly> whole;
        if (m_kept == 0) {
            whole = beginFilm(m_job, *m_plan, m_options);
        }
        m_options.film = whole.get();
        for (const long chunk : missing) {
            FilmResult film = renderChunk(m_job, m_plan, chunk, m_options, m_callbacks);
            if (film.end != FilmEnd::Done) {
                return ended(std::move(film));
            }
            m_kept += m_job.chunkRange(chunk).count();
        }
        return ended(joinFilm(m_job, m_plan, m_options, m_callbacks));
    }

private:
    FilmResult ended(FilmResult film) {
        film.frames = m_job.frames;
        if (film.end != FilmEnd::Done) {
            film.framesWritten = m_kept;
            film.kept = m_job.folder;
        }
        return film;
    }

    const Job& m_job;
    ScenePlan* m_plan;
    const ResumeCallbacks& m_callbacks;
    ChunkOptions m_options;
    long m_kept = 0;
};

long chunkFrames(const ResumeOptions& options, const std::optional<Job>& known) {
    if (options.chunkFrames > 0) {
        return options.chunkFrames;
    }
    return known ? known->chunkFrames : usualChunkFrames;
}

FilmResult refused(const FrameRange& frames, Problem problem, bool passing) {
    FilmResult film;
    film.end = FilmEnd::Refused;
    film.frames = frames;
    film.problem = std::move(problem);
    film.passing = passing;
    return film;
}

FilmResult runJob(const Job& job, ScenePlan* plan, const FilmRequest& request,
                  const ResumeCallbacks& callbacks) {
    const FrameRange frames = plan->frames;
    if (auto problem = checkDisk(job, plan->format)) {
        return refused(frames, *std::move(problem), true);
    }
    const PendingFile sign(job.folder + "/running");
    removeAttempts(job);
    return Run(job, plan, request, callbacks).go();
}

} // namespace

void openJob(const Job& job, bool restart) {
    if (holdsJob(job.folder) && restart) {
        fs::remove_all(job.folder);
    } else if (holdsJob(job.folder)) {
        if (const auto changed = differences(readJob(job.folder), job); !changed.empty()) {
            throw MediaError(job.folder, "",
                             "this job was begun with something else: " + listed(changed),
                             "put that back, or begin anew with --restart");
        }
        return;
    }
    fs::create_directories(job.folder);
    writeJob(job);
}

FilmResult resumeFilm(const Scene& scene, ScenePlan* plan, const FilmRequest& request,
                      const ResumeOptions& options, const ResumeCallbacks& callbacks) {
    const FrameRange frames = plan->frames;
    try {
        const std::string folder = jobFolderOf(request.outputs);
        const std::optional<Job> known =
            holdsJob(folder) && !options.restart ? std::optional(readJob(folder)) : std::nullopt;
        Scene rendered = scene;
        rendered.format = plan->format;
        const Job job = makeJob(rendered, *plan, request.outputs, chunkFrames(options, known),
                                known ? &*known : nullptr);
        openJob(job, options.restart);
        FilmResult film = runJob(job, plan, request, callbacks);
        if (film.end == FilmEnd::Done) {
            fs::remove_all(folder);
        }
        return film;
    } catch (const MediaError& error) {
        return refused(frames, problemOf(error), error.isPassing());
    } catch (const fs::filesystem_error& error) {
        return refused(frames,
                       {error.path1().string(), "", error.code().message(),
                        "check the folder and its permissions"},
                       true);
    }
}

} // namespace orbel
