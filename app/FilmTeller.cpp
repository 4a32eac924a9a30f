#include "app/FilmTeller.h"

#include "scene/PixelFormats.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <csignal>
#include <optional>
#include <ostream>

namespace orbel::app {

namespace {

using nlohmann::json;
using Clock = Progress::Clock;

std::string finishedFrames(const FilmResult& film) {
    if (!film.kept.empty()) {
        return std::to_string(film.framesWritten) + " of " + std::to_string(film.frames.count()) +
               " frames are kept in " + film.kept + ", and the same command goes on from there";
    }
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

class Words final : public FilmTeller {
public:
    Words(std::ostream& out, ProgressStyle style) : m_out(out), m_style(style) {}

    void refused(const Problems& problems) override { print(problems, m_out); }

    /// A clip that is too short ends the rendering only when it ends: what comes before is worth
    /// having.
    void began(const ScenePlan& plan, long kept) override {
        if (kept > 0 && !isQuiet()) {
            m_out << "note: " << kept << " frames of an earlier run are there\n";
        }
        if (const auto missing = firstMissingFrame(plan); missing && !isQuiet()) {
            m_out << "note: the input ends before frame " << *missing << '\n';
        }
        m_progress.emplace(m_out, m_style, std::max(1L, plan.frames.count() - kept));
    }

    void frameWritten(long /*frame*/) override { m_progress->frameDone(Clock::now()); }

    void ended(const FilmResult& film, const std::string& outputs) override {
        m_progress->finish();
        if (film.problem) {
            m_out << sentence(*film.problem) << '\n';
        }
        if (film.end == FilmEnd::Failed) {
            m_out << finishedFrames(film) << '\n';
        } else if (film.end == FilmEnd::Interrupted) {
            m_out << "interrupted: " << finishedFrames(film) << '\n';
        } else if (film.end == FilmEnd::Done && !isQuiet()) {
            m_out << m_progress->summary(Clock::now()) << ": " << outputs << '\n';
        }
    }

private:
    [[nodiscard]] bool isQuiet() const { return m_style == ProgressStyle::Silent; }

    std::ostream& m_out;
    ProgressStyle m_style;
    std::optional<Progress> m_progress;
};

json eventOf(const Problem& problem) {
    return {{"event", "problem"},
            {"file", problem.file},
            {"place", problem.place},
            {"message", problem.message},
            {"remedy", problem.remedy}};
}

const char* nameOf(FilmEnd end) {
    switch (end) {
    case FilmEnd::Done:
        return "done";
    case FilmEnd::Interrupted:
        return "interrupted";
    case FilmEnd::Failed:
        return "failed";
    case FilmEnd::Refused:
        break;
    }
    return "refused";
}

class Json final : public FilmTeller {
public:
    explicit Json(std::ostream& out) : m_out(out) {}

    void refused(const Problems& problems) override {
        for (const Problem& problem : problems.items()) {
            tell(eventOf(problem));
        }
        tell({{"event", "end"}, {"state", nameOf(FilmEnd::Refused)}, {"done", 0}});
    }

    void began(const ScenePlan& plan, long kept) override {
        m_total = plan.frames.count();
        m_done = kept;
        m_start = Clock::now();
        tell({{"event", "start"},
              {"first", plan.frames.first},
              {"last", plan.frames.last},
              {"frames", m_total},
              {"kept", kept},
              {"width", plan.size.width},
              {"height", plan.size.height},
              {"format", orbel::nameOf(plan.format)},
              {"fps", plan.frameRate.perSecond()}});
    }

    void frameWritten(long frame) override {
        ++m_done;
        tell({{"event", "frame"},
              {"frame", frame},
              {"done", m_done},
              {"frames", m_total},
              {"seconds", elapsed()}});
    }

    void ended(const FilmResult& film, const std::string& outputs) override {
        if (film.problem) {
            tell(eventOf(*film.problem));
        }
        tell({{"event", "end"},
              {"state", nameOf(film.end)},
              {"done", film.framesWritten},
              {"seconds", elapsed()},
              {"outputs", outputs}});
    }

private:
    [[nodiscard]] double elapsed() const {
        return std::chrono::duration<double>(Clock::now() - m_start).count();
    }

    /// Names of files need not be text in any encoding.
    void tell(const json& event) {
        m_out << event.dump(-1, ' ', false, json::error_handler_t::replace) << std::endl;
    }

    std::ostream& m_out;
    long m_total = 0;
    long m_done = 0;
    Clock::time_point m_start = Clock::now();
};

} // namespace

std::unique_ptr<FilmTeller> tellInWords(std::ostream& out, ProgressStyle style) {
    return std::make_unique<Words>(out, style);
}

std::unique_ptr<FilmTeller> tellInJson(std::ostream& out) {
    return std::make_unique<Json>(out);
}

ExitCode exitCode(const FilmResult& film, int signal) {
    switch (film.end) {
    case FilmEnd::Done:
        return EXIT_DONE;
    case FilmEnd::Interrupted:
        return signal == SIGTERM ? EXIT_TERMINATED : EXIT_INTERRUPTED;
    case FilmEnd::Failed:
        return film.passing ? EXIT_TRY_AGAIN : EXIT_RENDERING_FAILED;
    case FilmEnd::Refused:
        break;
    }
    return film.passing ? EXIT_TRY_AGAIN : EXIT_BAD_INPUT;
}

} // namespace orbel::app
