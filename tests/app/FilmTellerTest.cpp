#include "app/FilmTeller.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <csignal>
#include <regex>
#include <sstream>

namespace orbel::app {
namespace {

FilmResult endedAs(FilmEnd end, long written) {
    FilmResult film;
    film.end = end;
    film.frames = {4, 9};
    film.framesWritten = written;
    if (end == FilmEnd::Failed || end == FilmEnd::Refused) {
        film.problem = Problem{"a.mkv", "frame 5", "it is full", "free some room"};
    }
    return film;
}

ScenePlan planOfSix() {
    ScenePlan plan;
    plan.frames = {4, 9};
    plan.size = {32, 18};
    plan.format = RF_ARGB16;
    return plan;
}

TEST(FilmTeller, saysHowAFilmEnded) {
    FilmResult kept = endedAs(FilmEnd::Interrupted, 2);
    kept.kept = "film.mkv.orbel";
    FilmResult torn = endedAs(FilmEnd::Failed, 3);
    torn.outputFailed = true;
    const std::string problem = "a.mkv (frame 5): it is full; free some room\n";
    struct Row {
        FilmResult film;
        std::string text;
    };
    const Row rows[] = {
        {endedAs(FilmEnd::Done, 6), "6 frames in T: out.mkv\n"},
        {endedAs(FilmEnd::Refused, 0), problem},
        {endedAs(FilmEnd::Failed, 0), problem + "no frame was finished\n"},
        {endedAs(FilmEnd::Failed, 1), problem + "frame 4 is finished and readable\n"},
        {endedAs(FilmEnd::Failed, 3), problem + "frames 4 to 6 are finished and readable\n"},
        {torn, problem + "what was written before that frame is readable\n"},
        {endedAs(FilmEnd::Interrupted, 2),
         "interrupted: frames 4 to 5 are finished and readable\n"},
        {kept,
         "interrupted: 2 of 6 frames are kept in film.mkv.orbel, and the same command goes on "
         "from there\n"},
    };
    for (const Row& row : rows) {
        for (const ProgressStyle style : {ProgressStyle::Lines, ProgressStyle::Silent}) {
            std::ostringstream out;
            const auto teller = tellInWords(out, style);
            teller->began(planOfSix(), 0);
            for (long i = 0; i < 6 && row.film.end == FilmEnd::Done; ++i) {
                teller->frameWritten(4 + i);
            }
            const std::string before = out.str();
            teller->ended(row.film, "out.mkv");
            const bool silent = style == ProgressStyle::Silent && row.film.end == FilmEnd::Done;
            const std::string said = out.str().substr(before.size());
            EXPECT_EQ(std::regex_replace(said, std::regex("in .* s \\(.*\\)"), "in T"),
                      silent ? "" : row.text);
        }
    }
}

TEST(FilmTeller, countsWhatAnEarlierRunLeft) {
    std::ostringstream out;
    const auto words = tellInWords(out, ProgressStyle::Bar);
    words->began(planOfSix(), 2);
    words->frameWritten(4);
    EXPECT_NE(out.str().find("note: 2 frames of an earlier run are there\n"), std::string::npos);
    EXPECT_NE(out.str().find("] 1/4"), std::string::npos) << out.str();
    out.str("");
    tellInWords(out, ProgressStyle::Bar)->began(planOfSix(), 6); // nothing is left to divide by
    tellInWords(out, ProgressStyle::Silent)->began(planOfSix(), 2);
    EXPECT_EQ(out.str(), "note: 6 frames of an earlier run are there\n");
}

TEST(FilmTeller, tellsProgramsTheSame) {
    std::ostringstream out;
    const auto teller = tellInJson(out);
    teller->began(planOfSix(), 2);
    teller->frameWritten(7);
    teller->ended(endedAs(FilmEnd::Failed, 3), "out\xff.mkv");
    Problems problems;
    problems.add({"a", "b", "c", "d"});
    teller->refused(problems);
    const nlohmann::json expected[] = {
        {{"event", "start"},
         {"first", 4},
         {"last", 9},
         {"frames", 6},
         {"kept", 2},
         {"width", 32},
         {"height", 18},
         {"format", "argb16"},
         {"fps", 30.0}},
        {{"event", "frame"}, {"frame", 7}, {"done", 3}, {"frames", 6}},
        {{"event", "problem"},
         {"file", "a.mkv"},
         {"place", "frame 5"},
         {"message", "it is full"},
         {"remedy", "free some room"}},
        {{"event", "end"}, {"state", "failed"}, {"done", 3}, {"outputs", "out\xef\xbf\xbd.mkv"}},
        {{"event", "problem"}, {"file", "a"}, {"place", "b"}, {"message", "c"}, {"remedy", "d"}},
        {{"event", "end"}, {"state", "refused"}, {"done", 0}},
    };
    std::istringstream lines(out.str());
    std::string line;
    for (const nlohmann::json& event : expected) {
        ASSERT_TRUE(std::getline(lines, line));
        nlohmann::json told = nlohmann::json::parse(line);
        if (told.contains("seconds")) {
            EXPECT_GE(told["seconds"], 0.0);
            EXPECT_LT(told["seconds"], 60.0);
            told.erase("seconds");
        }
        EXPECT_EQ(told, event);
    }
    EXPECT_FALSE(std::getline(lines, line));
}

TEST(FilmTeller, endsTheProgramWithACodeForEveryEnd) {
    struct Row {
        FilmEnd end;
        bool passing;
        int signal;
        ExitCode code;
    };
    const Row rows[] = {{FilmEnd::Done, true, 0, EXIT_DONE},
                        {FilmEnd::Interrupted, false, SIGINT, EXIT_INTERRUPTED},
                        {FilmEnd::Interrupted, true, SIGTERM, EXIT_TERMINATED},
                        {FilmEnd::Failed, false, 0, EXIT_RENDERING_FAILED},
                        {FilmEnd::Failed, true, 0, EXIT_TRY_AGAIN},
                        {FilmEnd::Refused, false, 0, EXIT_BAD_INPUT},
                        {FilmEnd::Refused, true, 0, EXIT_TRY_AGAIN}};
    for (const Row& row : rows) {
        FilmResult film = endedAs(row.end, 0);
        film.passing = row.passing;
        EXPECT_EQ(exitCode(film, row.signal), row.code) << row.passing;
    }
}

} // namespace
} // namespace orbel::app
