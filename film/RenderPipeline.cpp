#include "film/RenderPipeline.h"

#include <oneapi/tbb/concurrent_queue.h>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <thread>

namespace orbel {

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
          keptInput(pipeline.m_keptInput),
          still(pipeline.m_still),
          next(plan.frames.first) {}

    /// Makes a job of the next frame with its input; false when there is none.
    bool read(Job& job) {
        if (stopped || next > plan.frames.last) {
            return false;
        }
        bool wanted = false;
        return guarded(next, [&] { wanted = !interrupted(); }) && wanted && readNext(job);
    }

    bool readNext(Job& job) {
        const Stopwatch watch(&result.times.reading);
        job.frame = next++;
        if (isKnown(job)) {
            return true;
        }
        job.rendered = false;
        return guarded(job.frame, [&] { input.fill(job.frame, job.input); });
    }

    void render(Job& job) {
        if (failed && job.frame > failedFrame) {
            return;
        }
        if (isKnown(job)) {
            return;
        }
        const Stopwatch watch(&result.times.rendering);
        job.rendered = guarded(job.frame, [&] {
            const int code = draw(job);
            if (code != 0 && !interrupted()) {
                throw RenderError(code);
            }
            stopped = stopped || code != 0;
            gaveUp = gaveUp || code != 0;
        });
        job.rendered = job.rendered && !gaveUp;
    }

    /// Draws until it is done or given up for good.
    int draw(Job& job) {
        if (callbacks.giveWay) {
            keptInput.copyFrom(job.input);
        }
        for (;;) {
            if (callbacks.beforeFrame) {
                callbacks.beforeFrame();
            }
            const int code = renderer.render(job.frame, job.input, job.output);
            if (code != FrameRenderer::abortCode || !callbacks.giveWay || interrupted()) {
                return code;
            }
            job.input.copyFrom(keptInput);
        }
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
            writingEnded = callbacks.frameWritten && !guarded(job.frame, callbacks.frameWritten);
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

    /// The job holds this very frame from before.
    [[nodiscard]] bool isKnown(const Job& job) const {
        return still && job.rendered && job.frame > plan.frames.first;
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
        } catch (...) { // a callback may throw anything
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
    MemoryImage& keptInput;
    bool still; // all frames are the first one
    long next;
    std::atomic<bool> stopped = false;
    bool gaveUp = false;       // the rendering stage's own
    bool writingEnded = false; // the writing stage's own
    std::mutex mutex;
    std::atomic<bool> failed = false;
    std::atomic<long> failedFrame = 0;
    PipelineResult result;
};

/// Jobs on their way from one thread to the next.
class RenderPipeline::Queue {
public:
    void push(Job* job) { m_jobs.push(job); }
    /// Waits for a job; null when no more will come.
    Job* take() {
        Job* job = nullptr;
        m_jobs.pop(job);
        return job;
    }
    /// However the scope is left, nothing more will come.
    class End {
    public:
        explicit End(Queue* queue) : m_queue(queue) {}
        End(const End&) = delete;
        End& operator=(const End&) = delete;
        ~End() { m_queue->push(nullptr); }

    private:
        Queue* m_queue;
    };

private:
    oneapi::tbb::concurrent_bounded_queue<Job*> m_jobs;
};

RenderPipeline::RenderPipeline(ScenePlan* plan, int threads, PipelineCallbacks callbacks)
    : m_plan(plan),
      m_threads(threads),
      m_callbacks(std::move(callbacks)),
      m_input(plan),
      m_renderer(plan,
                 m_callbacks.interrupted || m_callbacks.giveWay
                     ? std::function<bool()>([this] { return isUnwanted(); })
                     : nullptr,
                 m_callbacks.warning),
      m_still(m_input.isStill() && !plan->parameters.isAnyAnimated()),
      m_jobs(static_cast<std::size_t>(std::min<long>(
          threads == 1 || m_still ? 1 : plan->framesInFlight, plan->frames.count()))) {
    for (Job& job : m_jobs) {
        job.input = m_renderer.makeImage();
        job.output = m_renderer.makeImage();
    }
    if (m_callbacks.giveWay) {
        m_keptInput = m_renderer.makeImage();
    }
}

RenderPipeline::~RenderPipeline() = default;

/// Whether the frame in the making is to be dropped, for good or for now.
bool RenderPipeline::isUnwanted() const {
    return (m_callbacks.interrupted && m_callbacks.interrupted()) ||
           (m_callbacks.giveWay && m_callbacks.giveWay());
}

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
    if (m_threads == 1) {
        for (Job& job = m_jobs.front(); run.read(job);) {
            run.render(job);
            run.write(job);
        }
    } else {
        renderOverlapped(run);
    }
}

// Reading and writing have threads of their own beside those that share out a frame, so that none
// of them ever waits for what another one happens to be doing. A null job ends each of them.
void RenderPipeline::renderOverlapped(Run& run) {
    Queue unused;
    Queue read;
    Queue rendered;
    for (Job& job : m_jobs) {
        unused.push(&job);
    }
    const std::jthread writer([&] {
        while (Job* const job = rendered.take()) {
            run.write(*job);
            unused.push(job);
        }
    });
    const Queue::End endOfWriting(&rendered);
    const std::jthread reader([&] {
        const Queue::End endOfRendering(&read);
        for (Job* job = unused.take(); run.read(*job); job = unused.take()) {
            read.push(job);
        }
    });
    while (Job* const job = read.take()) {
        run.render(*job);
        rendered.push(job);
    }
}

} // namespace orbel
