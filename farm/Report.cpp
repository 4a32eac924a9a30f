#include "farm/Report.h"

#include "farm/Task.h"
#include "media/FileHash.h"

#include <algorithm>
#include <filesystem>
#include <random>

namespace orbel {

namespace {

namespace fs = std::filesystem;

/// When chunks became complete, from the first to the last, in seconds.
struct Span {
    std::optional<fs::file_time_type> first;
    fs::file_time_type last;

    void add(fs::file_time_type time) {
        last = first ? std::max(last, time) : time;
        first = first ? std::min(*first, time) : time;
    }
    [[nodiscard]] double seconds() const {
        return first ? std::chrono::duration<double>(last - *first).count() : 0.0;
    }
};

void countChunks(const Job& job, JobStatus* status) {
    Span span;
    double work = 0.0;
    for (long chunk = 0; chunk < job.chunkCount(); ++chunk) {
        if (const std::optional<ChunkRecord> record = finishedChunk(job, chunk)) {
            ++status->chunksDone;
            status->framesDone += record->frames;
            work += record->seconds;
            std::error_code error;
            if (const auto time = fs::last_write_time(chunkFiles(job, chunk).front(), error);
                !error) {
                span.add(time);
            }
        }
    }
    if (status->chunksDone > 0) {
        const double each = work / static_cast<double>(status->chunksDone);
        status->framesPerSecond =
            static_cast<double>(status->framesDone) / std::max(span.seconds() + each, 1e-3);
    }
}

/// A frame of a chunk, as bytes that another rendering of it must have, too.
std::string frameBytes(const Job& job, const std::string& path, long first, long frame) {
    if (job.kind() == PartKind::Pictures) {
        return hashOfFiles({path});
    }
    return codedFrame(path, frame - first);
}

/// A job of one frame out of another's, in a folder that goes with it.
class Sample {
public:
    Sample(Job job, long frame) : m_job(std::move(job)) {
        std::string name = (fs::temp_directory_path() / "orbel-verify-XXXXXX").string();
        m_job.folder = mkdtemp(name.data()) == nullptr ? "" : name;
        m_job.frames = {frame, frame};
        m_job.chunkFrames = 1;
    }
    Sample(const Sample&) = delete;
    Sample& operator=(const Sample&) = delete;
    ~Sample() {
        std::error_code ignored;
        fs::remove_all(m_job.folder, ignored);
    }

    [[nodiscard]] std::string render(ScenePlan* plan, int threads) const {
        const FilmResult film = renderChunk(m_job, plan, 0, {threads, ""}, {});
        if (film.end != FilmEnd::Done) {
            throw MediaError(m_job.folder, "", film.problem ? film.problem->message : "interrupted",
                             "try again");
        }
        return frameBytes(m_job, chunkFiles(m_job, 0).front(), m_job.frames.first,
                          m_job.frames.first);
    }

private:
    Job m_job;
};

std::string recordedFrame(const Job& job, long frame) {
    const long chunk = (frame - job.frames.first) / job.chunkFrames;
    const long first = job.chunkRange(chunk).first;
    const std::vector<std::string> files = chunkFiles(job, chunk);
    const bool pictures = job.kind() == PartKind::Pictures;
    return frameBytes(job, files[pictures ? static_cast<std::size_t>(frame - first) : 0], first,
                      frame);
}

void verifySamples(const Job& job, int samples, int threads, VerifyResult* result) {
    if (samples < 1) {
        return;
    }
    ScenePlan plan = planJob(job, threads, job.frames);
    std::mt19937 random{std::random_device{}()};
    std::uniform_int_distribution<long> frames(job.frames.first, job.frames.last);
    for (int i = 0; i < samples; ++i) {
        const long frame = frames(random);
        ++result->sampled;
        if (Sample(job, frame).render(&plan, threads) != recordedFrame(job, frame)) {
            result->problems.push_back("frame " + std::to_string(frame) +
                                       " is not what this machine renders");
        }
    }
}

void verifyChunks(const Job& job, VerifyResult* result) {
    for (long chunk = 0; chunk < job.chunkCount(); ++chunk) {
        const std::optional<ChunkRecord> record = finishedChunk(job, chunk);
        if (!record) {
            result->problems.push_back("chunk " + std::to_string(chunk) + " is missing");
        } else if (!isSound(job, chunk, *record)) {
            result->problems.push_back("chunk " + std::to_string(chunk) + " is damaged");
        } else {
            ++result->chunks;
        }
    }
}

void verifyFilm(const Job& job, VerifyResult* result) {
    const std::optional<FilmRecord> film = finishedFilm(job);
    if (!film || job.kind() == PartKind::Pictures) {
        return;
    }
    try {
        if (hashOfFiles({*job.outputs.file}) != film->hash) {
            result->problems.push_back("the film " + *job.outputs.file + " is damaged");
        }
    } catch (const MediaError&) {
        result->problems.push_back("the film " + *job.outputs.file + " is missing");
    }
}

} // namespace

JobStatus statusOf(const Job& job) {
    JobStatus status;
    status.chunks = job.chunkCount();
    status.frames = job.frames.count();
    countChunks(job, &status);
    status.filmDone = finishedFilm(job).has_value();
    status.checks = checksOf(job);
    try {
        status.engine = engineState(job);
        status.lost = std::max(0L, status.chunks - status.chunksDone - status.engine->chunks);
    } catch (const MediaError& error) {
        status.silence = error.what();
    }
    if (status.framesPerSecond > 0.0 && status.engine && status.engine->running > 0) {
        status.secondsLeft =
            static_cast<double>(status.frames - status.framesDone) / status.framesPerSecond;
    }
    return status;
}

VerifyResult verifyJob(const Job& job, int samples, int threads) {
    VerifyResult result;
    verifyChunks(job, &result);
    verifyFilm(job, &result);
    if (result.problems.empty()) {
        verifySamples(job, samples, threads, &result);
    }
    return result;
}

} // namespace orbel
