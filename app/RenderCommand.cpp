#include "app/RenderCommand.h"

#include "app/FilmTeller.h"
#include "app/Interrupt.h"
#include "app/PlainReadingReport.h"
#include "app/SceneDrawings.h"
#include "farm/Resume.h"
#include "film/Film.h"
#include "film/FrameRenderer.h"
#include "film/ShapeFolder.h"
#include "pixel/Acceleration.h"
#include "scene/SceneReader.h"

#include <cmath>
#include <ostream>

namespace orbel::app {

namespace {

std::optional<Scene> describedScene(const RenderOptions& options, Problems* problems) {
    Scene described;
    described.file = commandLine;
    std::optional<Scene> scene =
        options.scene ? readSceneFile(*options.scene, problems) : std::optional(described);
    if (scene) {
        applyOptions(options.overrides, &*scene, problems);
    }
    return scene;
}

std::unique_ptr<FilmTeller> tellerFor(const RenderOptions& options, std::ostream& err) {
    return options.progress == "json" ? tellInJson(err)
                                      : tellInWords(err, progressStyle(options.quiet));
}

/// What a rendering has at hand from its checks to its last word.
struct Rendering {
    const RenderOptions& options;
    const Scene& scene;
    const FilmRequest& request;
    ScenePlan* plan;
    FilmTeller& teller;

    [[nodiscard]] FilmResult inOneGo(const FilmCallbacks& callbacks) const {
        teller.began(*plan, 0);
        return renderFilm(plan, request, callbacks);
    }

    [[nodiscard]] FilmResult inChunks(const FilmCallbacks& callbacks) const {
        ResumeCallbacks all{callbacks, {}};
        bool begun = false;
        all.found = [&](long kept) {
            teller.began(*plan, kept);
            begun = true;
        };
        FilmResult film = resumeFilm(scene, plan, request, {options.chunk, options.restart}, all);
        if (!begun) {
            teller.began(*plan, 0);
        }
        return film;
    }
};

/// A frame of millions of stamps may still be wanted, but nobody should wonder where it is.
void warnOfLongFrames(ScenePlan* plan, std::ostream& err) {
    constexpr double longFrame = 10.0; // seconds
    FrameRenderer renderer(plan, {}, {});
    const FrameRange& frames = plan->frames;
    WorkEstimate most;
    for (const long frame : {frames.first, (frames.first + frames.last) / 2, frames.last}) {
        const WorkEstimate work = renderer.estimate(frame);
        most = work.seconds() > most.seconds() ? work : most;
    }
    if (most.seconds() > longFrame) {
        err << "note: a frame may take about " << std::ceil(most.seconds() / 60)
            << " min: it has some " << std::ceil(most.stamps / 1e6)
            << " million stamps; a larger \"Adjust Step\" takes fewer\n";
    }
}

ExitCode run(const Rendering& rendering, std::ostream& err) {
    const InterruptGuard guard;
    FilmCallbacks callbacks;
    callbacks.interrupted = InterruptGuard::requested;
    callbacks.frameWritten = [&](long frame) { rendering.teller.frameWritten(frame); };
    const RenderOptions& options = rendering.options;
    if (!options.quiet && options.progress != "json") {
        warnOfLongFrames(rendering.plan, err);
    }
    const FilmResult film = options.resume || options.restart ? rendering.inChunks(callbacks)
                                                              : rendering.inOneGo(callbacks);
    rendering.teller.ended(film, rendering.request.outputs.names());
    if (options.profile && film.end != FilmEnd::Refused) {
        err << profileText(film.times, film.framesWritten);
    }
    return exitCode(film, InterruptGuard::signal());
}

void checkNamed(const RenderOptions& options, Problems* problems) {
    if (!options.output && !options.rawFolder) {
        problems->add({commandLine, "-o", "no output is named",
                       "add -o FILE (.png, .tif, .exr, .mp4, .mov, .mkv, .gif, .webp or .apng) or "
                       "--raw FOLDER"});
    }
    if (options.output && options.rawFolder && (options.resume || options.restart)) {
        problems->add({commandLine, "--resume", "two outputs are named",
                       "a film that is made in chunks has one: leave out -o or --raw"});
    }
}

} // namespace

int renderCommand(const RenderOptions& options, std::ostream& err) {
    FilmRequest request;
    request.outputs.file = options.output;
    request.outputs.rawFolder = options.rawFolder;
    request.threads = options.threads;
    request.convertShape = shapeConverter([&](const std::string& note) {
        if (!options.quiet && options.progress != "json") {
            err << "note: " << note << '\n';
        }
    });
    setRenderThreads(request.threadCount());
    prepareShapeTable();
    const std::unique_ptr<FilmTeller> teller = tellerFor(options, err);
    Problems problems;
    const std::optional<Scene> scene = describedScene(options, &problems);
    checkNamed(options, &problems);
    std::optional<ScenePlan> plan;
    if (scene) {
        plan = planFilm(*scene, request, &problems);
    }
    if (!plan) {
        teller->refused(problems);
        return EXIT_BAD_INPUT;
    }
    if (scene->shape && !scene->import && !options.quiet && options.progress != "json") {
        if (const std::string losses = lossSummary(*scene->shape); !losses.empty()) {
            err << "note: " << losses << '\n';
        }
    }
    return run({options, *scene, request, &*plan, *teller}, err);
}

} // namespace orbel::app
