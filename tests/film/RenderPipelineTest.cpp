#include "film/RenderPipeline.h"

#include "media/MediaError.h"
#include "media/MediaWriter.h"
#include "params/ParameterTable.h"
#include "tests/media/MediaFixtures.h"

#include <gtest/gtest.h>

#include <atomic>
#include <numeric>

namespace orbel {
namespace {

/// Remembers what it was given.
class FakeWriter final : public MediaWriter {
public:
    struct Log {
        std::vector<long> frames;
        std::vector<std::string> pictures;
        int finished = 0;
    };

    FakeWriter(Log* log, long failAt) : m_log(log), m_failAt(failAt) {}

    void write(const RasterInfo& raster, long frame) override {
        if (frame == m_failAt) {
            throw MediaError("fake", framePlace(frame), "full", "");
        }
        m_log->frames.push_back(frame);
        std::string picture;
        for (int y = 0; y < raster.height; ++y) {
            picture.append(reinterpret_cast<const char*>(raster.row(y)),
                           static_cast<std::size_t>(raster.width) * 4);
        }
        m_log->pictures.push_back(std::move(picture));
    }

    void finish() override { ++m_log->finished; }

private:
    Log* m_log;
    long m_failAt;
};

constexpr long never = -1;

ScenePlan movingPlan() {
    ScenePlan plan;
    plan.size = {48, 32};
    plan.frames = {3, 22};
    plan.framesInFlight = 3;
    plan.parameters.set(PARAM_PRESETS, 1);
    plan.parameters.set(PARAM_THICKNESS, 3);
    plan.parameters.setKeys(PARAM_END, {{0, {0}, Easing::Linear}, {25, {100}, Easing::Linear}});
    return plan;
}

struct Outcome {
    PipelineResult result;
    FakeWriter::Log log;
};

Outcome run(ScenePlan& plan, int threads, long failAt, PipelineCallbacks callbacks) {
    Outcome outcome;
    std::vector<std::unique_ptr<MediaWriter>> writers;
    writers.push_back(std::make_unique<FakeWriter>(&outcome.log, failAt));
    RenderPipeline pipeline(&plan, threads, std::move(callbacks));
    outcome.result = pipeline.run(writers);
    return outcome;
}

std::vector<long> framesFrom(long first, long count) {
    std::vector<long> frames(static_cast<std::size_t>(count));
    std::iota(frames.begin(), frames.end(), first);
    return frames;
}

class RenderPipelineTest : public testing::TestWithParam<int> {};

TEST_P(RenderPipelineTest, writesEveryFrameInOrder) {
    for (const int inFlight : {1, 2, 3}) {
        ScenePlan plan = movingPlan();
        plan.framesInFlight = inFlight;
        int told = 0;
        PipelineCallbacks callbacks;
        callbacks.frameWritten = [&] { ++told; };
        const Outcome outcome = run(plan, GetParam(), never, callbacks);
        EXPECT_EQ(outcome.log.frames, framesFrom(3, 20));
        EXPECT_EQ(outcome.log.finished, 1);
        EXPECT_EQ(outcome.result.framesWritten, 20);
        EXPECT_FALSE(outcome.result.failure);
        EXPECT_EQ(told, 20);
    }
}

TEST_P(RenderPipelineTest, givesTheSamePicturesWithAnyNumberOfThreads) {
    ScenePlan plan = movingPlan();
    const Outcome outcome = run(plan, GetParam(), never, {});
    const Outcome alone = run(plan, 1, never, {});
    EXPECT_EQ(outcome.log.pictures, alone.log.pictures);
    EXPECT_NE(alone.log.pictures.front(), alone.log.pictures.back());
}

TEST_P(RenderPipelineTest, drawsAStillSceneOnceForAllFrames) {
    ScenePlan plan = movingPlan();
    plan.parameters.set(PARAM_END, 60);
    const Outcome film = run(plan, GetParam(), never, {});
    plan.frames = {9, 9};
    const Outcome frame = run(plan, GetParam(), never, {});
    EXPECT_EQ(film.log.frames, framesFrom(3, 20));
    EXPECT_EQ(film.log.pictures, std::vector(20, frame.log.pictures.front()));
}

TEST_P(RenderPipelineTest, keepsTheFramesBeforeAFailingOutput) {
    ScenePlan plan = movingPlan();
    const Outcome outcome = run(plan, GetParam(), 9, {});
    EXPECT_EQ(outcome.log.frames, framesFrom(3, 6));
    EXPECT_EQ(outcome.log.finished, 1);
    EXPECT_EQ(outcome.result.framesWritten, 6);
    EXPECT_EQ(outcome.result.failedFrame, 9);
    EXPECT_TRUE(outcome.result.outputFailed);
    EXPECT_THROW(std::rethrow_exception(outcome.result.failure), MediaError);
}

TEST_P(RenderPipelineTest, keepsTheFramesBeforeTheEndOfTheInput) {
    const TestFolder folder;
    TestRaster raster(RF_RGBA8, 16, 8, RowOrder::Tight);
    WriterSpec spec;
    spec.width = 16;
    spec.height = 8;
    const auto writer = openWriter(folder / "clip.mkv", spec);
    for (int i = 0; i < 8; ++i) {
        writer->write(raster.info(), i);
    }
    writer->finish();
    ScenePlan plan = movingPlan();
    plan.media = openMedia(folder / "clip.mkv", 1);
    const Outcome outcome = run(plan, GetParam(), never, {});
    EXPECT_EQ(outcome.log.frames, framesFrom(3, 5));
    EXPECT_EQ(outcome.log.finished, 1);
    EXPECT_EQ(outcome.result.failedFrame, 8);
    EXPECT_FALSE(outcome.result.outputFailed);
    EXPECT_TRUE(outcome.result.failure);
}

TEST_P(RenderPipelineTest, finishesTheOutputWhenInterrupted) {
    ScenePlan plan = movingPlan();
    std::atomic<int> written = 0;
    PipelineCallbacks callbacks;
    callbacks.interrupted = [&] { return written >= 4; };
    callbacks.frameWritten = [&] { ++written; };
    const Outcome outcome = run(plan, GetParam(), never, callbacks);
    EXPECT_FALSE(outcome.result.failure);
    EXPECT_GE(outcome.result.framesWritten, 4);
    EXPECT_LT(outcome.result.framesWritten, 20);
    EXPECT_EQ(outcome.log.frames, framesFrom(3, outcome.result.framesWritten));
    EXPECT_EQ(outcome.log.finished, 1);
}

TEST_P(RenderPipelineTest, keepsTheFramesBeforeACallbackThatThrows) {
    int calls = 0;
    const auto give = [&calls](int at) {
        if (++calls == at) {
            throw std::runtime_error("no more");
        }
        return false;
    };
    PipelineCallbacks written;
    written.frameWritten = [&] { static_cast<void>(give(5)); };
    PipelineCallbacks before;
    before.beforeFrame = [&] { static_cast<void>(give(6)); };
    for (const PipelineCallbacks& callbacks : {written, before}) {
        calls = 0;
        ScenePlan plan = movingPlan();
        const Outcome outcome = run(plan, GetParam(), never, callbacks);
        EXPECT_EQ(outcome.log.frames, framesFrom(3, 5));
        EXPECT_EQ(outcome.log.finished, 1);
        EXPECT_FALSE(outcome.result.outputFailed);
        EXPECT_THROW(std::rethrow_exception(outcome.result.failure), std::runtime_error);
    }
    PipelineCallbacks asked;
    std::atomic<int> questions = 0;
    asked.interrupted = [&]() -> bool { return questions++ < 8 ? false : throw questions.load(); };
    ScenePlan plan = movingPlan();
    const Outcome outcome = run(plan, GetParam(), never, asked);
    EXPECT_EQ(outcome.log.frames, framesFrom(3, outcome.result.framesWritten));
    EXPECT_EQ(outcome.log.finished, 1);
    ASSERT_TRUE(outcome.result.failure);
    EXPECT_THROW(std::rethrow_exception(outcome.result.failure), int);
}

// The end runs through the stages right behind the last frames: it must not overtake them.
TEST_P(RenderPipelineTest, endsShortFilmsTimeAndAgain) {
    ScenePlan plan = movingPlan();
    plan.size = {4, 4};
    for (int i = 0; i < 300; ++i) {
        plan.framesInFlight = 1 + i % 3;
        plan.frames = {0, i % 5};
        const Outcome outcome = run(plan, GetParam(), never, {});
        ASSERT_EQ(outcome.log.frames, framesFrom(0, plan.frames.count())) << i;
    }
}

INSTANTIATE_TEST_SUITE_P(Threads, RenderPipelineTest, testing::Values(1, 2, 8));

} // namespace
} // namespace orbel
