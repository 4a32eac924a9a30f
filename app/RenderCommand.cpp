#include "app/RenderCommand.h"

#include "app/Interrupt.h"
#include "app/Progress.h"
#include "film/RenderPipeline.h"
#include "film/ScenePlan.h"
#include "film/ShapeFolder.h"
#include "media/MediaError.h"
#include "media/OutputTarget.h"
#include "media/RawDump.h"
#include "pixel/Acceleration.h"
#include "scene/SceneReader.h"

#include <algorithm>
#include <filesystem>
#include <new>
#include <ostream>
#include <thread>

namespace orbel::app {

namespace {

using Writers = std::vector<std::unique_ptr<MediaWriter>>;

Problem problemOf(const MediaError& error) {
    return {error.file(), error.place(), error.message(), error.remedy()};
}

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

/// Writing over the clip that is being read would destroy both.
void checkDistinct(const std::string& output, const Scene& scene, Problems* problems) {
    const auto* const media = std::get_if<MediaInput>(&scene.input);
    if (media == nullptr) {
        return;
    }
    std::error_code error;
    const std::filesystem::path from = std::filesystem::weakly_canonical(media->path, error);
    const std::filesystem::path to = std::filesystem::weakly_canonical(output, error);
    if (from == to || std::filesystem::equivalent(media->path, output, error)) {
        problems->add({output, "", "the output is also the input", "choose another name"});
    }
}

void checkOutputs(const RenderOptions& options, const Scene& scene, long frames,
                  Problems* problems) {
    if (!options.output && !options.rawFolder) {
        problems->add({commandLine, "-o", "no output is named",
                       "add -o FILE (.png, .tif, .exr, .mp4, .mov or .mkv) or --raw FOLDER"});
    }
    try {
        if (options.rawFolder) {
            checkRawFolder(*options.rawFolder);
        }
    } catch (const MediaError& error) {
        problems->add(problemOf(error));
    }
    try {
        if (options.output) {
            static_cast<void>(checkOutput(*options.output, frames));
            checkDistinct(*options.output, scene, problems);
        }
    } catch (const MediaError& error) {
        problems->add(problemOf(error));
    }
}

/// Raw first: opening a film already writes its head.
Writers openOutputs(const RenderOptions& options, const ScenePlan& plan, int threads) {
    Writers writers;
    if (options.rawFolder) {
        writers.push_back(openRawDump(*options.rawFolder));
    }
    if (options.output) {
        WriterSpec spec;
        spec.width = plan.size.width;
        spec.height = plan.size.height;
        spec.frameRate = plan.frameRate;
        spec.format = plan.format;
        spec.pixelAspect = plan.pixelAspect;
        spec.threads = threads;
        writers.push_back(openWriter(*options.output, spec));
    }
    return writers;
}

std::string outputNames(const RenderOptions& options) {
    std::string names = options.output.value_or("");
    if (options.rawFolder) {
        names += (names.empty() ? "" : " and ") + *options.rawFolder;
    }
    return names;
}

std::string finishedFrames(const FrameRange& frames, const PipelineResult& result) {
    if (result.framesWritten == 0) {
        return "no frame was finished";
    }
    if (result.outputFailed) {
        return "what was written before that frame is readable"; // an encoder may hold some back
    }
    const std::string first = std::to_string(frames.first);
    const std::string last = std::to_string(frames.first + result.framesWritten - 1);
    return result.framesWritten == 1
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

Problem failureOf(const PipelineResult& result, const Scene& scene) {
    const std::string place = framePlace(result.failedFrame.value_or(0));
    try {
        std::rethrow_exception(result.failure);
    } catch (const MediaError& error) {
        return problemOf(error);
    } catch (const std::bad_alloc&) {
        return {scene.file, place, "there is not enough memory", "render at a smaller size"};
    } catch (const std::exception& error) {
        return {scene.file, place, error.what(), ""};
    }
}

/// One rendering from the checks to the last word.
class Rendering {
public:
    Rendering(const RenderOptions& options, std::ostream& err)
        : m_options(options),
          m_err(err),
          m_threads(options.threads > 0
                        ? options.threads
                        : std::max(1, static_cast<int>(std::thread::hardware_concurrency()))) {}

    int run() {
        setRenderThreads(m_threads);
        prepareShapeTable();
        Problems problems;
        const std::optional<Scene> scene = describedScene(m_options, &problems);
        std::optional<ScenePlan> plan;
        if (scene) {
            plan = planScene(*scene, m_threads, &problems);
            const long frames = plan ? plan->frames.count() : 1;
            checkOutputs(m_options, *scene, frames, &problems);
        }
        if (!problems.empty() || !plan) {
            print(problems, m_err);
            return EXIT_BAD_INPUT;
        }
        return render(*scene, &*plan);
    }

private:
    int render(const Scene& scene, ScenePlan* plan) {
        if (!m_options.quiet) {
            warnOfShortClip(*plan, m_err);
        }
        const InterruptGuard guard;
        Progress progress(m_err, progressStyle(m_options.quiet), plan->frames.count());
        PipelineCallbacks callbacks;
        callbacks.interrupted = InterruptGuard::requested;
        callbacks.frameWritten = [&] { progress.frameDone(Progress::Clock::now()); };
        Writers writers;
        std::optional<RenderPipeline> pipeline;
        try {
            pipeline.emplace(plan, m_threads, callbacks);
            writers = openOutputs(m_options, *plan, m_threads);
        } catch (const MediaError& error) {
            return refuse(problemOf(error));
        } catch (const std::bad_alloc&) {
            return refuse({scene.file, "", "there is not enough memory for a frame",
                           "render at a smaller size"});
        }
        const PipelineResult result = pipeline->run(writers);
        progress.finish();
        const int code = report(result, scene, plan->frames, progress);
        if (m_options.profile) {
            m_err << profileText(result.times, result.framesWritten);
        }
        return code;
    }

    int refuse(const Problem& problem) {
        m_err << sentence(problem) << '\n';
        return EXIT_BAD_INPUT;
    }

    int report(const PipelineResult& result, const Scene& scene, const FrameRange& frames,
               const Progress& progress) {
        if (result.failure) {
            m_err << sentence(failureOf(result, scene)) << '\n'
                  << finishedFrames(frames, result) << '\n';
            return EXIT_RENDERING_FAILED;
        }
        if (InterruptGuard::requested()) {
            m_err << "interrupted: " << finishedFrames(frames, result) << '\n';
            return EXIT_INTERRUPTED;
        }
        if (!m_options.quiet) {
            m_err << progress.summary(Progress::Clock::now()) << ": " << outputNames(m_options)
                  << '\n';
        }
        return EXIT_DONE;
    }

    const RenderOptions& m_options;
    std::ostream& m_err;
    int m_threads;
};

} // namespace

int renderCommand(const RenderOptions& options, std::ostream& err) {
    return Rendering(options, err).run();
}

} // namespace orbel::app
