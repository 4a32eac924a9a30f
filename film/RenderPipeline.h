#pragma once

#include "film/FrameInput.h"
#include "film/FrameRenderer.h"
#include "film/Profile.h"
#include "film/ScenePlan.h"
#include "media/MediaWriter.h"

#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace orbel {

/// How a rendering ended.
struct PipelineResult {
    long framesWritten = 0; ///< handed to every output, from the first on without gaps
    std::optional<long> failedFrame;
    std::exception_ptr failure; ///< what stopped it; null when it ran to its end or was interrupted
    bool outputFailed = false;  ///< it was an output, whose last frames may be missing
    StageTimes times;
};

/// A frame that the effect gave up on.
class RenderError : public std::runtime_error {
public:
    explicit RenderError(int code)
        : std::runtime_error("the effect gave up with code " + std::to_string(code)) {}
};

/// What a rendering asks and tells on its way. All may be empty; `interrupted` is called by any
/// thread, each of the others by one at a time. One that throws stops the rendering as a failure of
/// its frame.
struct PipelineCallbacks {
    std::function<bool()> interrupted;
    std::function<void()> beforeFrame; ///< may wait
    std::function<bool()> giveWay;     ///< true drops the frame in the making; it is drawn anew
    std::function<void()> frameWritten;
    std::function<void(const std::string&)> warning;
};

/// Reads, renders and writes the frames of a plan in their order. Reading the next frame and
/// writing the one before run beside rendering; every frame before a failure or interruption is
/// written and the outputs are finished. `threads` 1 does everything on the calling thread.
class RenderPipeline {
public:
    /// Borrows the plan and makes everything that the frames need. Throws std::bad_alloc when there
    /// is no memory for it.
    RenderPipeline(ScenePlan* plan, int threads, PipelineCallbacks callbacks);
    RenderPipeline(const RenderPipeline&) = delete;
    RenderPipeline& operator=(const RenderPipeline&) = delete;
    ~RenderPipeline();

    [[nodiscard]] PipelineResult run(const std::vector<std::unique_ptr<MediaWriter>>& writers);

private:
    struct Job;
    struct Run;
    class Queue;

    [[nodiscard]] bool isUnwanted() const;
    void renderAll(Run& run);
    void renderOverlapped(Run& run);

    ScenePlan* m_plan;
    int m_threads;
    PipelineCallbacks m_callbacks;
    FrameInput m_input;
    FrameRenderer m_renderer;
    MemoryImage m_keptInput; ///< of the frame in the making, where it may have to be drawn anew
    bool m_still;            ///< nothing moves: drawn once, in the one job that there is
    std::vector<Job> m_jobs; ///< used in turn
};

} // namespace orbel
