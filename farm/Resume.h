#pragma once

#include "farm/Chunk.h"

namespace orbel {

/// A chunk that costs little when it is lost, and little to begin with: 5 % at most beside a film
/// that is made in one go.
inline constexpr long usualChunkFrames = 60;

struct ResumeOptions {
    long chunkFrames = 0; ///< 0: as the job was begun, or `usualChunkFrames`
    bool restart = false; ///< throw away what an earlier run has left
};

struct ResumeCallbacks : FilmCallbacks {
    /// Called once, before the first frame: how many frames an earlier run has left complete.
    std::function<void(long frames)> found;
};

/// Makes the film of a plan in chunks that outlive the program, in a folder beside the output
/// (`film.mp4.orbel`). Called again after whatever end, it renders what is missing and puts the
/// film together; then the folder goes. The bytes are those of `renderFilm`. A folder that was
/// begun for another scene, range, size or program, or with other files, is refused.
[[nodiscard]] FilmResult resumeFilm(const Scene& scene, ScenePlan* plan, const FilmRequest& request,
                                    const ResumeOptions& options, const ResumeCallbacks& callbacks);

/// The folder of a job, made or found to be the one of the same film. Throws MediaError for one
/// that is not.
void openJob(const Job& job, bool restart);

} // namespace orbel
