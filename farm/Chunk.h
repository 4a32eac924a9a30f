#pragma once

#include "farm/Job.h"

#include <optional>
#include <string>

namespace orbel {

/// What is known of a chunk that is complete.
struct ChunkRecord {
    long frames = 0;
    std::uint64_t bytes = 0;
    std::string hash;
    double seconds = 0.0; ///< that it took
    std::string attempt;  ///< who made it: host and process
};

/// How a chunk is rendered.
struct ChunkOptions {
    int threads = 0;
    std::string scratch{};        ///< folder for what is not complete yet; empty: in the job's own
    FilmAssembly* film = nullptr; ///< that takes the frames as they come; see `openPart`
};

/// The file of a complete chunk, or its folder of pictures. Chunks lie in folders of a thousand.
[[nodiscard]] std::string chunkPath(const Job& job, long chunk);

/// The record of a chunk that is complete as far as can be seen without reading it: it is there and
/// has its size.
[[nodiscard]] std::optional<ChunkRecord> finishedChunk(const Job& job, long chunk);
/// The chunks that are not complete, ascending.
[[nodiscard]] std::vector<long> missingChunks(const Job& job);

/// Whether every byte of a complete chunk is as it was written.
[[nodiscard]] bool isSound(const Job& job, long chunk, const ChunkRecord& record);
/// Takes a chunk for missing from now on.
void forgetChunk(const Job& job, long chunk);

/// Removes what attempts that were killed have left. Only while nobody renders for the job.
void removeAttempts(const Job& job);

/// The files of a chunk, in the order of their frames.
[[nodiscard]] std::vector<std::string> chunkFiles(const Job& job, long chunk);

/// Renders a chunk of a plan of the job's scene. It comes into being as a whole: under a name of
/// its own, counted, its bytes on the disk, then renamed, then recorded. Any number of programs may
/// render the same one at once: they write the same bytes. The plan's range is changed.
[[nodiscard]] FilmResult renderChunk(const Job& job, ScenePlan* plan, long chunk,
                                     const ChunkOptions& options, const FilmCallbacks& callbacks);

} // namespace orbel
