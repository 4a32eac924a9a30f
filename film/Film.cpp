#include "film/Film.h"

#include "film/RenderPipeline.h"
#include "media/FilmParts.h"
#include "media/OutputTarget.h"
#include "media/RawDump.h"

#include <algorithm>
#include <filesystem>
#include <new>
#include <thread>

namespace orbel {

namespace {

using Writers = std::vector<std::unique_ptr<MediaWriter>>;

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

void checkOutputs(const FilmOutputs& outputs, const Scene& scene, long frames, Problems* problems) {
    try {
        if (outputs.rawFolder) {
            checkRawFolder(*outputs.rawFolder);
        }
    } catch (const MediaError& error) {
        problems->add(problemOf(error));
    }
    try {
        if (outputs.file) {
            static_cast<void>(checkOutput(*outputs.file, frames));
            checkDistinct(*outputs.file, scene, problems);
        }
    } catch (const MediaError& error) {
        problems->add(problemOf(error));
    }
}

/// Raw first: opening a film already writes its head.
Writers openOutputs(const FilmOutputs& outputs, const WriterSpec& spec) {
    Writers writers;
    if (outputs.rawFolder) {
        writers.push_back(openRawDump(*outputs.rawFolder));
    }
    if (outputs.part) {
        writers.push_back(openPart(*outputs.part, spec, targetOf(*outputs.file), outputs.film));
    } else if (outputs.file) {
        writers.push_back(openWriter(*outputs.file, spec));
    }
    return writers;
}

bool isPassing(const std::exception_ptr& failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const MediaError& error) {
        return error.isPassing();
    } catch (...) {
        return false;
    }
}

/// What an exception says, as a problem of this frame, or of the whole film.
Problem problemOf(const std::exception_ptr& failure, std::optional<long> frame,
                  const std::string& scene) {
    const std::string place = frame ? framePlace(*frame) : "";
    try {
        std::rethrow_exception(failure);
    } catch (const MediaError& error) {
        return problemOf(error);
    } catch (const std::bad_alloc&) {
        return {scene, place, "there is not enough memory", "render at a smaller size"};
    } catch (const std::exception& error) {
        return {scene, place, error.what(), ""};
    } catch (...) {
        return {scene, place, "a callback has thrown what is no exception of the library", ""};
    }
}

PipelineCallbacks pipelineCallbacks(const FilmCallbacks& callbacks, long first) {
    PipelineCallbacks passedOn;
    passedOn.interrupted = callbacks.interrupted;
    passedOn.warning = callbacks.warning;
    passedOn.beforeFrame = callbacks.beforeFrame;
    passedOn.giveWay = callbacks.giveWay;
    if (callbacks.frameWritten) {
        passedOn.frameWritten = [told = callbacks.frameWritten, next = first]() mutable {
            told(next++);
        };
    }
    return passedOn;
}

FilmEnd endOf(const PipelineResult& result, const FrameRange& frames) {
    if (result.failure) {
        return FilmEnd::Failed;
    }
    return result.framesWritten < frames.count() ? FilmEnd::Interrupted : FilmEnd::Done;
}

} // namespace

std::string FilmOutputs::names() const {
    std::string names = file.value_or("");
    if (rawFolder) {
        names += (names.empty() ? "" : " and ") + *rawFolder;
    }
    return names;
}

WriterSpec writerSpec(const ScenePlan& plan, int threads) {
    WriterSpec spec;
    spec.width = plan.size.width;
    spec.height = plan.size.height;
    spec.frameRate = plan.frameRate;
    spec.format = plan.format;
    spec.alpha = plan.alpha.output;
    spec.pixelAspect = plan.pixelAspect;
    spec.threads = threads;
    return spec;
}

Problem problemOf(const MediaError& error) {
    return {error.file(), error.place(), error.message(), error.remedy()};
}

int FilmRequest::threadCount() const {
    return threads > 0 ? threads
                       : std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
}

std::optional<ScenePlan> planFilm(const Scene& scene, const FilmRequest& request,
                                  Problems* problems) {
    Scene asked = scene;
    asked.frames = request.frames ? request.frames : scene.frames;
    asked.format = request.format.value_or(scene.format);
    std::optional<ScenePlan> plan =
        planScene(asked, request.threadCount(), problems, request.convertShape);
    checkOutputs(request.outputs, scene, plan ? plan->frames.count() : 1, problems);
    if (!plan || !problems->empty()) {
        return std::nullopt;
    }
    if (request.outputs.rawFolder) {
        plan->alpha = {}; // raw frames are premultiplied, and every output gets the same frame
    }
    if (request.size) {
        resize(&*plan, *request.size);
    }
    return plan;
}

FilmResult renderFilm(ScenePlan* plan, const FilmRequest& request, const FilmCallbacks& callbacks) {
    FilmResult film;
    film.frames = plan->frames;
    try {
        const int threads = request.threadCount();
        RenderPipeline pipeline(plan, threads, pipelineCallbacks(callbacks, plan->frames.first));
        const Writers writers = openOutputs(request.outputs, writerSpec(*plan, threads));
        const PipelineResult result = pipeline.run(writers);
        film.end = endOf(result, plan->frames);
        film.framesWritten = result.framesWritten;
        film.outputFailed = result.outputFailed;
        film.times = result.times;
        if (result.failure) {
            film.problem =
                problemOf(result.failure, result.failedFrame.value_or(0), plan->sceneFile);
            film.passing = isPassing(result.failure);
        }
    } catch (const std::exception&) {
        film.end = FilmEnd::Refused;
        film.problem = problemOf(std::current_exception(), std::nullopt, plan->sceneFile);
        film.passing = isPassing(std::current_exception());
    }
    return film;
}

} // namespace orbel
