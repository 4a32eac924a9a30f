#include "app/RenderCommand.h"

#include "app/Interrupt.h"
#include "app/Progress.h"
#include "app/SceneDrawings.h"
#include "film/Film.h"
#include "film/ShapeFolder.h"
#include "pixel/Acceleration.h"
#include "scene/SceneReader.h"

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

std::string finishedFrames(const FilmResult& film) {
    if (film.framesWritten == 0) {
        return "no frame was finished";
    }
    if (film.outputFailed) {
        return "what was written before that frame is readable"; // an encoder may hold some back
    }
    const std::string first = std::to_string(film.frames.first);
    const std::string last = std::to_string(film.frames.first + film.framesWritten - 1);
    return film.framesWritten == 1
               ? "frame " + first + " is finished and readable"
               : "frames " + first + " to " + last + " are finished and readable";
}

/// A clip that is too short ends the rendering only when it ends: what comes before is worth
/// having.
void warnOfShortClip(const ScenePlan& plan, std::ostream& err) {
    if (const std::optional<long> missing = firstMissingFrame(plan)) {
        err << "note: the input ends before frame " << *missing << '\n';
    }
}

/// One rendering from the checks to the last word.
class Rendering {
public:
    Rendering(const RenderOptions& options, std::ostream& err) : m_options(options), m_err(err) {
        m_request.outputs = {options.output, options.rawFolder};
        m_request.threads = options.threads;
        m_request.convertShape = shapeConverter([this](const std::string& note) {
            if (!m_options.quiet) {
                m_err << "note: " << note << '\n';
            }
        });
    }

    int run() {
        setRenderThreads(m_request.threadCount());
        prepareShapeTable();
        Problems problems;
        const std::optional<Scene> scene = describedScene(m_options, &problems);
        if (m_request.outputs.none()) {
            problems.add({commandLine, "-o", "no output is named",
                          "add -o FILE (.png, .tif, .exr, .mp4, .mov or .mkv) or --raw FOLDER"});
        }
        std::optional<ScenePlan> plan;
        if (scene) {
            plan = planFilm(*scene, m_request, &problems);
        }
        if (!plan) {
            print(problems, m_err);
            return EXIT_BAD_INPUT;
        }
        return render(&*plan);
    }

private:
    int render(ScenePlan* plan) {
        if (!m_options.quiet) {
            warnOfShortClip(*plan, m_err);
        }
        const InterruptGuard guard;
        Progress progress(m_err, progressStyle(m_options.quiet), plan->frames.count());
        FilmCallbacks callbacks;
        callbacks.interrupted = InterruptGuard::requested;
        callbacks.frameWritten = [&](long) { progress.frameDone(Progress::Clock::now()); };
        const FilmResult film = renderFilm(plan, m_request, callbacks);
        progress.finish();
        const int code = report(film, progress);
        if (m_options.profile && film.end != FilmEnd::Refused) {
            m_err << profileText(film.times, film.framesWritten);
        }
        return code;
    }

    int report(const FilmResult& film, const Progress& progress) {
        switch (film.end) {
        case FilmEnd::Refused:
            m_err << sentence(*film.problem) << '\n';
            return EXIT_BAD_INPUT;
        case FilmEnd::Failed:
            m_err << sentence(*film.problem) << '\n' << finishedFrames(film) << '\n';
            return EXIT_RENDERING_FAILED;
        case FilmEnd::Interrupted:
            m_err << "interrupted: " << finishedFrames(film) << '\n';
            return EXIT_INTERRUPTED;
        case FilmEnd::Done:
            break;
        }
        if (!m_options.quiet) {
            m_err << progress.summary(Progress::Clock::now()) << ": " << m_request.outputs.names()
                  << '\n';
        }
        return EXIT_DONE;
    }

    const RenderOptions& m_options;
    std::ostream& m_err;
    FilmRequest m_request;
};

} // namespace

int renderCommand(const RenderOptions& options, std::ostream& err) {
    return Rendering(options, err).run();
}

} // namespace orbel::app
