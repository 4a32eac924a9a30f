#include "app/RenderPipeline.h"

#include <oneapi/tbb/info.h>
#include <oneapi/tbb/parallel_pipeline.h>
#include <oneapi/tbb/task_arena.h>

#include <algorithm>
#include <atomic>
#include <mutex>

namespace orbel::app {

namespace {

// Reading, rendering and writing.
constexpr int stages = 3;

} // namespace

/// A frame on its way.
struct RenderPipeline::Job {
    MemoryImage input;
    MemoryImage output;
    long frame = 0;
    bool rendered = false;
};

/// The state of one rendering. Each stage handles one frame at a time, in order; the first failure
/// ends the reading, and writing ends before the frame that failed.
struct RenderPipeline::Run {
    Run(RenderPipeline& pipeline, const std::vector<std::unique_ptr<MediaWriter>>& outputs)
        : plan(*pipeline.m_plan),
          callbacks(pipeline.m_callbacks),
          jobs(pipeline.m_jobs),
          writers(outputs),
          input(pipeline.m_input),
          renderer(pipeline.m_renderer),
          next(plan.frames.first) {}

    /// The next frame with its input; null when there is none.
    Job* read() {
        if (stopped || next > plan.frames.last || interrupted()) {
            return nullptr;
        }
        const Stopwatch watch(&result.times.reading);
        Job& job = jobs[static_cast<std::size_t>(next - plan.frames.first) % jobs.size()];
        job.frame = next++;
        job.rendered = false;
        return guarded(job.frame, [&] { input.fill(job.frame, job.input); }) ? &job : nullptr;
    }

    void render(Job& job) {
        if (failed && job.frame > failedFrame) {
            return;
        }
        const Stopwatch watch(&result.times.rendering);
        job.rendered = guarded(job.frame, [&] {
            const int code = renderer.render(job.frame, job.input, job.output);
            if (code != 0 && !interrupted()) {
                throw RenderError(code);
            }
            stopped = stopped || code != 0;
            gaveUp = gaveUp || code != 0;
        });
        job.rendered = job.rendered && !gaveUp;
    }

    void write(const Job& job) {
        if (!job.rendered || writingEnded) {
            writingEnded = true;
            return;
        }
        const Stopwatch watch(&result.times.writing);
        writingEnded = !guarded(job.frame, [&] {
            for (const std::unique_ptr<MediaWriter>& writer : writers) {
                writer->write(job.output.info(), job.frame);
            }
        });
        result.outputFailed = writingEnded;
        if (!writingEnded) {
            ++result.framesWritten;
            if (callbacks.frameWritten) {
                callbacks.frameWritten();
            }
        }
    }

    /// Completes every output, also when one of them cannot be.
    void finish() {
        const Stopwatch watch(&result.times.finishing);
        for (const std::unique_ptr<MediaWriter>& writer : writers) {
            const long frame = plan.frames.first + result.framesWritten;
            const bool finished = guarded(frame, [&] { writer->finish(); });
            result.outputFailed = result.outputFailed || !finished;
        }
        if (failed) {
            result.failedFrame = failedFrame;
        }
    }

    [[nodiscard]] bool interrupted() const {
        return callbacks.interrupted && callbacks.interrupted();
    }

    /// False when the step failed; the earliest frame's failure is kept.
    template<typename Step>
    bool guarded(long frame, const Step& step) {
        try {
            step();
            return true;
        } catch (const std::exception&) {
            const std::lock_guard lock(mutex);
            if (!failed || frame < failedFrame) {
                result.failure = std::current_exception();
                failedFrame = frame;
                failed = true;
            }
            stopped = true;
            return false;
        }
    }

    const ScenePlan& plan;
    const PipelineCallbacks& callbacks;
    std::vector<Job>& jobs;
    const std::vector<std::unique_ptr<MediaWriter>>& writers;
    FrameInput& input;
    FrameRenderer& renderer;
    long next;
    std::atomic<bool> stopped = false;
    bool gaveUp = false;       // the rendering stage's own
    bool writingEnded = false; // the writing stage's own
    std::mutex mutex;
    std::atomic<bool> failed = false;
    std::atomic<long> failedFrame = 0;
    PipelineResult result;
};

RenderPipeline::RenderPipeline(ScenePlan* plan, int threads, PipelineCallbacks callbacks)
    : m_plan(plan),
      m_threads(threads),
      m_callbacks(std::move(callbacks)),
      m_input(plan),
      m_renderer(plan, m_callbacks.interrupted, m_callbacks.warning),
      m_jobs(static_cast<std::size_t>(
          std::min<long>(threads == 1 ? 1 : plan->framesInFlight, plan->frames.count()))) {
    for (Job& job : m_jobs) {
        job.input = m_renderer.makeImage();
        job.output = m_renderer.makeImage();
    }
}

RenderPipeline::~RenderPipeline() = default;

PipelineResult RenderPipeline::run(const std::vector<std::unique_ptr<MediaWriter>>& writers) {
    Run run(*this, writers);
    StageTimes::Duration whole{};
    {
        const Stopwatch watch(&whole);
        renderAll(run);
        run.finish();
    }
    run.result.times.whole = whole;
    return std::move(run.result);
}

void RenderPipeline::renderAll(Run& run) {
    namespace tbb = oneapi::tbb;
    if (m_threads == 1) {
        while (Job* const job = run.read()) {
            run.render(*job);
            run.write(*job);
        }
    } else {
        constexpr auto inOrder = tbb::filter_mode::serial_in_order;
        const auto read = tbb::make_filter<void, Job*>(inOrder, [&](tbb::flow_control& flow) {
            Job* const job = run.read();
            if (job == nullptr) {
                flow.stop();
            }
            return job;
        });
        const auto render = tbb::make_filter<Job*, Job*>(inOrder, [&](Job* job) {
            run.render(*job);
            return job;
        });
        const auto write =
            tbb::make_filter<Job*, void>(inOrder, [&](Job* job) { run.write(*job); });
        // More workers than processors would only stand in each other's way.
        tbb::task_arena arena(std::min({m_threads, stages, tbb::info::default_concurrency()}));
        arena.execute([&] { tbb::parallel_pipeline(m_jobs.size(), read & render & write); });
    }
}

} // namespace orbel::app
