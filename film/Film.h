#pragma once

#include "film/Profile.h"
#include "film/ScenePlan.h"
#include "media/MediaError.h"
#include "media/MediaWriter.h"
#include "scene/Diagnostics.h"
#include "scene/Scene.h"

#include <functional>
#include <optional>
#include <string>

/// The one place where a scene becomes a film. The command line, an export and a task of a farm
/// call the same two functions, and get the same bytes for the same request:
///
///     Problems problems;
///     std::optional<Scene> scene = readScene(text, "scene.json", &problems);   // or readSceneFile
///     if (std::optional<ScenePlan> plan = scene ? planFilm(*scene, request, &problems)
///                                               : std::nullopt) {
///         const FilmResult result = renderFilm(&*plan, request, callbacks);
///     }
///
/// Single frames into memory are the business of `FrameOnDemand`.
namespace orbel {

class FilmAssembly;

/// Where the frames go. At least one is there.
struct FilmOutputs {
    std::optional<std::string> file;      ///< film, picture or numbered pictures, by its ending
    std::optional<std::string> rawFolder; ///< folder of raw frames
    /// Instead of the film `file`: a part of it, to be put together with others by `FilmAssembly`.
    std::optional<std::string> part{};
    FilmAssembly* film = nullptr; ///< that takes the part's frames as they come; see `openPart`

    [[nodiscard]] bool none() const { return !file && !rawFolder; }
    /// "film.mp4 and raw"
    [[nodiscard]] std::string names() const;
};

/// What is asked for beside the scene. What is absent is as the scene says.
struct FilmRequest {
    FilmOutputs outputs;
    std::optional<FrameRange> frames;
    /// Another size for the same picture: whatever the scene counts in pixels is scaled with it.
    std::optional<FrameSize> size;
    std::optional<RasterFormat> format;
    ShapeConverter convertShape; ///< for drawings and texts; without it they are refused
    int threads = 0; ///< for reading, rendering and writing; 0: as many as the machine has

    /// `threads`, or the number of the machine's processors.
    [[nodiscard]] int threadCount() const;
};

/// What a film asks and tells while it is made. All may be empty. `interrupted` is asked by any
/// thread, often; each of the others is called by one thread at a time. One that throws fails the
/// film.
struct FilmCallbacks {
    std::function<bool()> interrupted; ///< true ends the film soon; what is finished is kept
    std::function<void()> beforeFrame; ///< called before each frame is drawn; it may wait
    /// Asked often by the thread that draws: true drops the frame in the making, so that others may
    /// draw. It is drawn anew after another `beforeFrame`, with the same bytes.
    std::function<bool()> giveWay;
    std::function<void(long frame)> frameWritten;
    std::function<void(const std::string& text)> warning; ///< what the effect tells its user
};

enum class FilmEnd {
    Done,
    Interrupted, ///< the frames written so far are a complete, readable output
    Failed,      ///< so they are, and `problem` tells what stopped the rest
    Refused,     ///< nothing was written
};

struct FilmResult {
    FilmEnd end = FilmEnd::Done;
    std::optional<Problem> problem; ///< for Failed and Refused
    bool passing = false;           ///< what went wrong may go well another time: a full disk
    FrameRange frames;              ///< that were asked for
    long framesWritten = 0;         ///< from the first on, without gaps
    bool outputFailed = false;      ///< the last of these may be missing from the output
    std::string kept;               ///< the folder where they are, if not in the output yet
    StageTimes times;
};

/// What an error of the media says, for people.
[[nodiscard]] Problem problemOf(const MediaError& error);

/// Looks at everything before anything is written: the scene's files, memory, outputs. Reports all
/// that is wrong; nothing then.
[[nodiscard]] std::optional<ScenePlan> planFilm(const Scene& scene, const FilmRequest& request,
                                                Problems* problems);

/// What the frames of a plan look like to their writer.
[[nodiscard]] WriterSpec writerSpec(const ScenePlan& plan, int threads);

/// Makes the film of a plan that `planFilm` made for the same request. Blocks until the end; any
/// thread. Throws nothing.
[[nodiscard]] FilmResult renderFilm(ScenePlan* plan, const FilmRequest& request,
                                    const FilmCallbacks& callbacks);

} // namespace orbel
