#pragma once

#include "film/Film.h"
#include "media/FilmParts.h"
#include "scene/Scene.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orbel {

/// A file that a scene reads, by content.
struct JobFile {
    std::string path;
    std::uint64_t bytes = 0;
    std::int64_t modified = 0; ///< in nanoseconds; a shortcut only: other contents count as changed
    std::string hash;
    std::optional<long> picture; ///< its place in the input, from 0 on, where that is a sequence
};

/// A film that is made in chunks of frames: what it is made of, and how it is cut. Everything that
/// its bytes depend on is in here.
struct Job {
    std::string folder;    ///< absolute; the outputs' folder of the job
    FilmOutputs outputs;   ///< absolute
    std::string scene;     ///< the scene's text, with absolute paths
    std::string shapeText; ///< what a drawing or text was converted to; no node converts again
    FrameRange frames;
    FrameSize size;
    std::string build; ///< `buildIdentity` of who made the job
    long chunkFrames = 0;
    std::vector<JobFile> files;

    [[nodiscard]] long chunkCount() const;
    /// The frames of a chunk, from 0 on; all have `chunkFrames` but the last.
    [[nodiscard]] FrameRange chunkRange(long chunk) const;
    /// A single film of parts, or nothing for pictures and raw frames.
    [[nodiscard]] PartKind kind() const;
};

/// The folder beside an output in which its job is: `film.mp4.orbel`.
[[nodiscard]] std::string jobFolderOf(const FilmOutputs& outputs);

/// Describes the film of a plan as a job, reading every file to know it again; one that `known`, if
/// given, has with the same size and time is not read anew. Throws MediaError.
[[nodiscard]] Job makeJob(const Scene& scene, const ScenePlan& plan, const FilmOutputs& outputs,
                          long chunkFrames, const Job* known = nullptr);

/// Writes and reads the job's own description, `job.json` in its folder. Reading throws MediaError
/// for a folder without one and for one that this program does not understand.
void writeJob(const Job& job);
[[nodiscard]] Job readJob(const std::string& folder);
[[nodiscard]] bool holdsJob(const std::string& folder);

/// The scene of a job, ready to be planned. Throws MediaError.
[[nodiscard]] Scene sceneOf(const Job& job);

/// What is not as in the job that was begun, in words; empty when both make the same film.
[[nodiscard]] std::vector<std::string> differences(const Job& begun, const Job& asked);

/// Which files are not as the job knows them, in words; `build` of this program included. Of an
/// input of pictures those alone are looked at that these frames show: thousands of tasks that look
/// at thousands of pictures would keep a file server busy.
[[nodiscard]] std::vector<std::string> changesSince(const Job& job, const FrameRange& frames);

} // namespace orbel
