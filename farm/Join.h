#pragma once

#include "farm/Chunk.h"

namespace orbel {

/// Puts a film together from its chunks. Every one of them is looked at byte by byte first; one
/// that is missing or damaged is rendered (again) rather than joined. The output comes into being
/// as a whole, with the bytes of a film that is made in one go; the job stays as it is.
[[nodiscard]] FilmResult joinFilm(const Job& job, ScenePlan* plan, const ChunkOptions& options,
                                  const FilmCallbacks& callbacks);

} // namespace orbel
