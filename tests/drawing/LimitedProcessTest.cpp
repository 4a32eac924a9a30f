#include "drawing/LimitedProcess.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <stdexcept>
#include <thread>

namespace orbel {
namespace {

TEST(LimitedProcess, bringsTheAnswerOrSaysWhatEndedIt) {
    ProcessLimits limits;
    limits.seconds = 20;
    const std::string large(std::size_t{3} << 20, 'x');
    EXPECT_EQ(runLimited([&] { return large; }, limits).answer, large);
    const auto endOf = [&](const auto& work) { return runLimited(work, limits).end; };
    EXPECT_EQ(endOf([]() -> std::string { std::abort(); }), ProcessEnd::Crashed);
    EXPECT_EQ(endOf([]() -> std::string { throw std::runtime_error("x"); }), ProcessEnd::Crashed);
    EXPECT_EQ(endOf([]() -> std::string { throw std::bad_alloc(); }), ProcessEnd::OutOfMemory);
    limits.answerBytes = 1000;
    EXPECT_EQ(runLimited([&] { return large; }, limits).answer, "");
    limits.seconds = 0.1;
    const auto hang = []() -> std::string {
        for (;;) {
            std::this_thread::yield();
        }
    };
    EXPECT_EQ(runLimited(hang, limits).end, ProcessEnd::OutOfTime);
    limits.seconds = 3600;
    limits.stopped = [asked = 0]() mutable { return ++asked > 2; };
    EXPECT_EQ(runLimited(hang, limits).end, ProcessEnd::Stopped);
}

} // namespace
} // namespace orbel
