#include "farm/Chunk.h"

#include "media/FileHash.h"
#include "media/PendingFile.h"
#include "media/RawDump.h"
#include "media/SequencePattern.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <unistd.h>

namespace orbel {

namespace {

using nlohmann::json;
namespace fs = std::filesystem;

constexpr long chunksOfAFolder = 1000;

std::string numbered(long number, int digits) {
    std::string text = std::to_string(number);
    return std::string(
               static_cast<std::size_t>(std::max(0, digits - static_cast<int>(text.size()))), '0') +
           text;
}

/// Without an ending.
std::string chunkStem(const Job& job, long chunk) {
    return job.folder + "/chunks/" + numbered(chunk / chunksOfAFolder, 3) + "/" +
           numbered(chunk, 6);
}

std::string endingOf(const Job& job) {
    return job.outputs.file ? partEnding(targetOf(*job.outputs.file)) : "";
}

std::string recordPath(const Job& job, long chunk) {
    return chunkStem(job, chunk) + ".done";
}

/// No two attempts have the same, on any machine.
std::string attemptName() {
    static std::atomic<int> count = 0;
    std::array<char, 256> host{};
    gethostname(host.data(), host.size() - 1);
    return std::string(host.data()) + "-" + std::to_string(getpid()) + "-" +
           std::to_string(++count);
}

std::vector<std::string> picturesIn(const Job& job, const std::string& folder,
                                    const FrameRange& range) {
    std::vector<std::string> files;
    for (long frame = range.first; frame <= range.last; ++frame) {
        const fs::path name = job.outputs.file
                                  ? fs::path(SequencePattern(*job.outputs.file).pathOf(frame))
                                  : fs::path(rawFrameName(frame));
        files.push_back((fs::path(folder) / name.filename()).string());
    }
    return files;
}

std::vector<std::string> filesOf(const Job& job, const std::string& path, const FrameRange& range) {
    return job.kind() == PartKind::Pictures ? picturesIn(job, path, range)
                                            : std::vector<std::string>{path};
}

/// Nothing when one is missing.
std::optional<std::uint64_t> sizeOf(const std::vector<std::string>& files) {
    std::uint64_t bytes = 0;
    std::error_code error;
    for (const std::string& file : files) {
        bytes += fs::file_size(file, error);
        if (error) {
            return std::nullopt;
        }
    }
    return bytes;
}

FilmRequest requestFor(const Job& job, const std::string& path, const ChunkOptions& options) {
    FilmRequest request;
    request.threads = options.threads;
    if (job.kind() != PartKind::Pictures) {
        request.outputs.file = job.outputs.file;
        request.outputs.part = path;
        request.outputs.film = options.film;
    } else if (job.outputs.file) {
        request.outputs.file = path + "/" + fs::path(*job.outputs.file).filename().string();
    } else {
        request.outputs.rawFolder = path;
    }
    return request;
}

/// One try at a chunk; what is not complete in the end goes.
class Attempt {
public:
    Attempt(const Job& job, long chunk, const ChunkOptions& options)
        : m_job(job),
          m_chunk(chunk),
          m_options(options),
          m_name(attemptName()),
          m_own(chunkStem(job, chunk) + "." + m_name + endingOf(job)),
          m_made(options.scratch.empty()
                     ? m_own
                     : options.scratch + "/orbel-" + fs::path(m_own).filename().string()) {
        fs::create_directories(fs::path(m_own).parent_path());
        if (job.kind() == PartKind::Pictures) {
            fs::create_directories(m_made);
        }
    }
    Attempt(const Attempt&) = delete;
    Attempt& operator=(const Attempt&) = delete;
    ~Attempt() {
        std::error_code ignored;
        fs::remove_all(m_made, ignored);
        fs::remove_all(m_own, ignored);
    }

    FilmResult render(ScenePlan* plan, const FilmCallbacks& callbacks) {
        const auto begin = std::chrono::steady_clock::now();
        plan->frames = m_job.chunkRange(m_chunk);
        FilmResult film = renderFilm(plan, requestFor(m_job, m_made, m_options), callbacks);
        if (film.end == FilmEnd::Done) {
            const auto took = std::chrono::steady_clock::now() - begin;
            keep(std::chrono::duration<double>(took).count());
        }
        return film;
    }

private:
    void keep(double seconds) {
        const FrameRange range = m_job.chunkRange(m_chunk);
        const std::vector<std::string> made = filesOf(m_job, m_made, range);
        ChunkRecord record;
        record.frames = range.count();
        record.bytes = sizeOf(made).value_or(0);
        record.hash = hashOfFiles(made);
        record.seconds = seconds;
        record.attempt = m_name;
        if (m_made != m_own) {
            fs::copy(m_made, m_own, fs::copy_options::recursive);
        }
        publish();
        writeRecord(record);
    }

    void publish() const {
        const std::string path = chunkPath(m_job, m_chunk);
        bool ready = true;
        if (m_job.kind() == PartKind::Pictures) {
            const std::vector<std::string> files = filesOf(m_job, m_own, m_job.chunkRange(m_chunk));
            ready = std::all_of(files.begin(), files.end(), syncPath);
            fs::remove_all(path); // of an earlier attempt
        }
        if (!ready || !publishFile(m_own, path)) {
            throw MediaError(path, "",
                             "the chunk cannot be written (" +
                                 std::generic_category().message(errno) + ")",
                             outOfRoom, MediaError::Passing);
        }
    }

    void writeRecord(const ChunkRecord& record) const {
        const json text{{"frames", record.frames},
                        {"bytes", record.bytes},
                        {"sha256", record.hash},
                        {"seconds", record.seconds},
                        {"attempt", record.attempt}};
        writeWholeFile(recordPath(m_job, m_chunk), text.dump(2) + "\n");
    }

    const Job& m_job;
    long m_chunk;
    const ChunkOptions& m_options;
    std::string m_name;
    std::string m_own;  ///< in the job's folder
    std::string m_made; ///< where it is rendered
};

FilmResult failed(const Job& job, long chunk, Problem problem, bool passing) {
    FilmResult film;
    film.end = FilmEnd::Failed;
    film.frames = job.chunkRange(chunk);
    film.problem = std::move(problem);
    film.passing = passing;
    return film;
}

} // namespace

std::string chunkPath(const Job& job, long chunk) {
    return chunkStem(job, chunk) + endingOf(job);
}

std::vector<std::string> chunkFiles(const Job& job, long chunk) {
    return filesOf(job, chunkPath(job, chunk), job.chunkRange(chunk));
}

std::optional<ChunkRecord> finishedChunk(const Job& job, long chunk) {
    std::ifstream stream(recordPath(job, chunk), std::ios::binary);
    const json text = json::parse(stream, nullptr, false);
    try {
        ChunkRecord record;
        record.frames = text.at("frames");
        record.bytes = text.at("bytes");
        record.hash = text.at("sha256");
        record.seconds = text.at("seconds");
        record.attempt = text.at("attempt");
        const bool whole = record.frames == job.chunkRange(chunk).count() &&
                           sizeOf(chunkFiles(job, chunk)) == record.bytes;
        return whole ? std::optional(record) : std::nullopt;
    } catch (const json::exception&) {
        return std::nullopt;
    }
}

std::vector<long> missingChunks(const Job& job) {
    std::vector<long> missing;
    for (long chunk = 0; chunk < job.chunkCount(); ++chunk) {
        if (!finishedChunk(job, chunk)) {
            missing.push_back(chunk);
        }
    }
    return missing;
}

bool isSound(const Job& job, long chunk, const ChunkRecord& record) {
    try {
        return hashOfFiles(chunkFiles(job, chunk)) == record.hash;
    } catch (const MediaError&) {
        return false;
    }
}

void forgetChunk(const Job& job, long chunk) {
    std::error_code ignored;
    fs::remove(recordPath(job, chunk), ignored);
}

void removeAttempts(const Job& job) {
    std::error_code error;
    std::vector<fs::path> left;
    for (fs::recursive_directory_iterator entry(job.folder + "/chunks", error), end;
         !error && entry != end; entry.increment(error)) {
        // 000012.mkv, 000012.done, 000012, and the numbered folders; attempts have one part more.
        const std::string name = entry->path().filename().string();
        if (entry.depth() == 1) {
            entry.disable_recursion_pending();
            if ((std::count(name.begin(), name.end(), '.') + (endingOf(job).empty() ? 1 : 0) > 1 &&
                 !name.ends_with(".done")) ||
                name.starts_with(".orbel-")) {
                left.push_back(entry->path());
            }
        }
    }
    for (const fs::path& path : left) {
        fs::remove_all(path, error);
    }
}

FilmResult renderChunk(const Job& job, ScenePlan* plan, long chunk, const ChunkOptions& options,
                       const FilmCallbacks& callbacks) {
    try {
        return Attempt(job, chunk, options).render(plan, callbacks);
    } catch (const MediaError& error) {
        return failed(job, chunk, problemOf(error), error.isPassing());
    } catch (const fs::filesystem_error& error) {
        return failed(job, chunk,
                      {error.path1().string(), "",
                       "the chunk cannot be written (" + error.code().message() + ")", outOfRoom},
                      true);
    }
}

} // namespace orbel
