#include "app/FarmCommand.h"

#include "app/FilmTeller.h"
#include "app/Interrupt.h"
#include "app/SceneDrawings.h"
#include "farm/Check.h"
#include "farm/Command.h"
#include "farm/DiskEstimate.h"
#include "farm/LocalEngine.h"
#include "farm/Report.h"
#include "farm/Resume.h"
#include "farm/Submit.h"
#include "farm/Task.h"
#include "film/FrameOnDemand.h"
#include "film/ShapeFolder.h"
#include "pixel/Acceleration.h"
#include "scene/SceneReader.h"

#include <nlohmann/json.hpp>

#include <chrono>
#include <cmath>
#include <filesystem>
#include <map>
#include <ostream>

namespace orbel::app {

namespace {

FilmRequest requestOf(const FarmOptions& options) {
    FilmRequest request;
    request.outputs.file = options.output;
    request.outputs.rawFolder = options.rawFolder;
    request.threads = options.threads;
    return request;
}

SubmitOptions submitOptions(const FarmOptions& options, const Job& job) {
    SubmitOptions submit;
    const std::vector<SubmissionRecord> before = submissionsOf(job);
    submit.engine =
        before.empty() || options.command == "submit" ? options.engine : before.back().engine;
    submit.program = options.program;
    submit.workers = options.nodes;
    submit.threads = options.threads;
    return submit;
}

Scene describedScene(const FarmOptions& options, Problems* problems) {
    std::optional<Scene> scene = readSceneFile(options.scene, problems);
    if (scene) {
        applyOptions(options.overrides, &*scene, problems);
    }
    return std::move(scene).value_or(Scene{});
}

std::string megabytes(std::uint64_t bytes) {
    return std::to_string((bytes + 999'999) / 1'000'000) + " MB";
}

/// How long a frame takes, by the one in the middle.
double secondsOfAFrame(const Job& job, int threads) {
    FrameOnDemand frames(planJob(job, threads, job.frames));
    const auto begin = std::chrono::steady_clock::now();
    static_cast<void>(frames.render((job.frames.first + job.frames.last) / 2, {}));
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

class Farm {
public:
    Farm(const FarmOptions& options, std::ostream& out, std::ostream& err)
        : m_options(options), m_out(out), m_err(err) {}

    int run() {
        prepareShapeTable();
        if (m_options.threads > 0) {
            setRenderThreads(m_options.threads);
        }
        static const std::map<std::string, int (Farm::*)()> commands{
            {"submit", &Farm::submit}, {"status", &Farm::status},       {"resume", &Farm::resume},
            {"cancel", &Farm::cancel}, {"verify", &Farm::verify},       {"task", &Farm::task},
            {"join", &Farm::join},     {"supervise", &Farm::supervise}, {"check", &Farm::check}};
        try {
            return (this->*commands.at(m_options.command))();
        } catch (const MediaError& error) {
            m_err << sentence(problemOf(error)) << '\n';
            return error.isPassing() ? EXIT_TRY_AGAIN : EXIT_BAD_INPUT;
        } catch (const std::filesystem::filesystem_error& error) {
            m_err << sentence({error.path1().string(), "", error.code().message(), ""}) << '\n';
            return EXIT_TRY_AGAIN;
        }
    }

private:
    int submit() {
        Problems problems;
        FilmRequest request = requestOf(m_options);
        request.convertShape =
            shapeConverter([this](const std::string& note) { m_err << "note: " << note << '\n'; });
        if (request.outputs.none() || (m_options.output && m_options.rawFolder)) {
            problems.add(
                {commandLine, "-o", "a job has one output", "add -o FILE or --raw FOLDER"});
        }
        const Scene scene = describedScene(m_options, &problems);
        std::optional<ScenePlan> plan;
        if (problems.empty()) {
            plan = planFilm(scene, request, &problems);
        }
        if (!plan) {
            print(problems, m_err);
            return EXIT_BAD_INPUT;
        }
        const long chunk = m_options.chunk > 0 ? m_options.chunk : usualChunkFrames;
        const Job job = makeJob(scene, *plan, request.outputs, chunk);
        if (m_options.dryRun) {
            return dryRun(job, plan->format);
        }
        openJob(job, m_options.restart);
        return handIn(job, plan->format);
    }

    int dryRun(const Job& job, RasterFormat format) {
        const DiskEstimate disk = estimateDisk(job, format);
        const double each = secondsOfAFrame(job, m_options.threads);
        m_out << describeSubmission(job, submitOptions(m_options, job)) << '\n'
              << job.chunkCount() << " tasks of " << job.chunkFrames << " frames, "
              << job.frames.count() << " frames in all\n"
              << "disk: some " << megabytes(disk.needed) << " of " << megabytes(disk.available)
              << "\ntime: some "
              << std::lround(std::ceil(each * static_cast<double>(job.frames.count())))
              << " s of one machine like this one, by the frame in the middle\n";
        return EXIT_DONE;
    }

    int handIn(const Job& job, RasterFormat format) {
        if (const auto problem = checkDisk(job, format)) {
            m_err << sentence(*problem) << '\n';
            return EXIT_TRY_AGAIN;
        }
        const long tasks = submitMissing(job, submitOptions(m_options, job));
        m_out << tasks << (tasks == 1 ? " task" : " tasks")
              << " handed in; look with: orbel farm status " << shellQuoted(job.folder) << '\n';
        return EXIT_DONE;
    }

    int resume() {
        const Job job = readJob(m_options.job);
        if (const JobStatus status = statusOf(job); status.engine && status.engine->held > 0) {
            if (status.lost == 0 || status.engine->running > 0) {
                return letGo(job, status.engine->held);
            }
            cancelJob(job); // what an engine that lost its memory still has is of no use
        }
        const ScenePlan plan = planJob(job, m_options.threads, job.frames);
        return handIn(job, plan.format);
    }

    int letGo(const Job& job, long held) {
        releaseHeld(job);
        m_out << held << (held == 1 ? " task was" : " tasks were")
              << " held and may go on; look with: orbel farm status " << shellQuoted(job.folder)
              << '\n';
        return EXIT_DONE;
    }

    int cancel() {
        cancelJob(readJob(m_options.job));
        m_out << "cancelled; what is complete stays, and \"orbel farm resume\" goes on with it\n";
        return EXIT_DONE;
    }

    int status() {
        const Job job = readJob(m_options.job);
        const JobStatus status = statusOf(job);
        if (m_options.json) {
            m_out << jsonOf(status).dump() << '\n';
        } else {
            tell(status);
        }
        return EXIT_DONE;
    }

    static nlohmann::json jsonOf(const JobStatus& status) {
        nlohmann::json text{{"chunks", status.chunks},
                            {"done", status.chunksDone},
                            {"running", nullptr},
                            {"waiting", nullptr},
                            {"held", nullptr},
                            {"lost", status.lost},
                            {"frames", status.frames},
                            {"framesDone", status.framesDone},
                            {"framesPerSecond", status.framesPerSecond},
                            {"film", status.filmDone}};
        if (status.engine) {
            text["running"] = status.engine->running;
            text["waiting"] = status.engine->waiting;
            text["held"] = status.engine->held;
            text["away"] = status.engine->away;
        }
        text["unfit"] = nlohmann::json::object();
        for (const MachineCheck& check : status.checks) {
            if (!check.problem.empty()) {
                text["unfit"][check.machine] = check.problem;
            }
        }
        text["secondsLeft"] = status.secondsLeft ? nlohmann::json(*status.secondsLeft) : nullptr;
        return text;
    }

    void tell(const JobStatus& status) {
        m_out << status.chunksDone << " of " << status.chunks << " chunks done ("
              << status.framesDone << " of " << status.frames << " frames)";
        if (!status.engine) {
            m_out << '\n' << status.silence << '\n';
            return;
        }
        m_out << ", " << status.engine->running << " tasks running, " << status.engine->waiting
              << " waiting, " << status.lost << " chunks lost\n";
        tellHindrances(status);
        if (status.filmDone) {
            m_out << "the film is there\n";
        } else if (status.secondsLeft) {
            m_out << std::round(status.framesPerSecond * 10) / 10 << " frames/s, some "
                  << std::lround(*status.secondsLeft) << " s left\n";
        } else if (status.engine->running + status.engine->waiting == 0) {
            m_out << "nothing runs for it: type \"orbel farm resume " << shellQuoted(m_options.job)
                  << "\"\n";
        }
    }

    /// Machines that cannot make the film, and tasks that nothing will start.
    void tellHindrances(const JobStatus& status) {
        long fit = 0;
        for (const MachineCheck& check : status.checks) {
            fit += check.problem.empty() ? 1 : 0;
            if (!check.problem.empty()) {
                m_out << check.machine << " cannot make this film: " << check.problem << '\n';
            }
        }
        if (!status.checks.empty() && fit == 0) {
            m_out << "no machine can, so that no task has begun\n";
        }
        if (status.engine->held > 0) {
            m_out << status.engine->held << (status.engine->held == 1 ? " task is" : " tasks are")
                  << " held (" << status.engine->heldWhy << "): type \"orbel farm resume "
                  << shellQuoted(m_options.job) << "\"\n";
        }
        for (const std::string& machine : status.engine->away) {
            m_out << machine << " takes no tasks\n";
        }
    }

    int verify() {
        const VerifyResult result =
            verifyJob(readJob(m_options.job), m_options.sample, m_options.threads);
        for (const std::string& problem : result.problems) {
            m_err << problem << '\n';
        }
        m_out << result.chunks << " chunks are sound, " << result.sampled
              << " frames were rendered again\n";
        return result.problems.empty() ? EXIT_DONE : EXIT_RENDERING_FAILED;
    }

    int task() {
        const Job job = readJob(m_options.job);
        const long chunk = chunkInList(m_options.list, m_options.index);
        m_out << "chunk " << chunk << '\n' << std::flush;
        return watched([&](const ChunkOptions& options, const FilmCallbacks& callbacks) {
            return runTask(job, chunk, options, callbacks);
        });
    }

    int join() {
        const Job job = readJob(m_options.job);
        return watched([&](const ChunkOptions& options, const FilmCallbacks& callbacks) {
            return runJoin(job, options, callbacks);
        });
    }

    int check() {
        const Job job = readJob(m_options.job);
        return watched([&](const ChunkOptions& options, const FilmCallbacks& /*callbacks*/) {
            return runCheck(job, options.threads);
        });
    }

    template<typename Action>
    int watched(const Action& action) {
        const InterruptGuard guard;
        FilmCallbacks callbacks;
        callbacks.interrupted = InterruptGuard::requested;
        const FilmResult film = action({m_options.threads, m_options.scratch}, callbacks);
        if (film.problem) {
            m_err << sentence(*film.problem) << '\n';
        }
        const ExitCode code = exitCode(film, InterruptGuard::signal());
        m_out << "ended with code " << code << '\n';
        return code;
    }

    int supervise() {
        return superviseTasks(readJob(m_options.job), m_options.list, m_options.nodes,
                              m_options.threads);
    }

    const FarmOptions& m_options;
    std::ostream& m_out;
    std::ostream& m_err;
};

} // namespace

int farmCommand(const FarmOptions& options, std::ostream& out, std::ostream& err) {
    return Farm(options, out, err).run();
}

} // namespace orbel::app
