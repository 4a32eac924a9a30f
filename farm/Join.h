#pragma once

#include "farm/Chunk.h"

namespace orbel {

/// The film of a job whose chunks are all rendered here, from the first one on, where it pays to
/// code it meanwhile: to be given to every `renderChunk`, and to `joinFilm` in the end. Null where
/// that brings nothing. Throws MediaError.
[[nodiscard]] std::unique_ptr<FilmAssembly> beginFilm(const Job& job, const ScenePlan& plan,
                                                      const ChunkOptions& options);

/// Puts a film together from its chunks. Every one of them is looked at byte by byte first; one
/// that is missing or damaged is rendered (again) rather than joined. The output comes into being
/// as a whole, with the bytes of a film that is made in one go; the job stays as it is. Only ends
/// the film of `options`, where there is one.
[[nodiscard]] FilmResult joinFilm(const Job& job, ScenePlan* plan, const ChunkOptions& options,
                                  const FilmCallbacks& callbacks);

} // namespace orbel
