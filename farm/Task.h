#pragma once

#include "farm/Chunk.h"

#include <cstdint>

namespace orbel {

/// The plan of a job on the machine that renders it. Throws MediaError when a file is not as the
/// job knows it, when this is another program, or when the scene cannot be planned. Of an input of
/// pictures those of `shown` are looked at.
[[nodiscard]] ScenePlan planJob(const Job& job, int threads, const FrameRange& shown);

/// The chunk in a line of a list, from 0 on. Throws MediaError.
[[nodiscard]] long chunkInList(const std::string& list, long index);

/// One task of a farm: a chunk that is not complete yet. What goes wrong is remembered in the job.
[[nodiscard]] FilmResult runTask(const Job& job, long chunk, const ChunkOptions& options,
                                 const FilmCallbacks& callbacks);

/// The last task: puts the film together, and renders the few chunks that are damaged or were lost.
/// More than a few are a failure, since other machines can do that faster.
[[nodiscard]] FilmResult runJoin(const Job& job, const ChunkOptions& options,
                                 const FilmCallbacks& callbacks);

/// The film that was put together, as far as it was.
struct FilmRecord {
    std::uint64_t bytes = 0;
    std::string hash;
};
[[nodiscard]] std::optional<FilmRecord> finishedFilm(const Job& job);

} // namespace orbel
