#pragma once

#include "app/Progress.h"
#include "film/Film.h"

#include <iosfwd>
#include <memory>

namespace orbel::app {

/// Tells how a film goes, to people or to programs. One thread at a time.
class FilmTeller {
public:
    FilmTeller() = default;
    FilmTeller(const FilmTeller&) = delete;
    FilmTeller& operator=(const FilmTeller&) = delete;
    virtual ~FilmTeller() = default;

    /// Nothing will be rendered.
    virtual void refused(const Problems& problems) = 0;
    /// `kept` frames are there from an earlier run.
    virtual void began(const ScenePlan& plan, long kept) = 0;
    virtual void frameWritten(long frame) = 0;
    /// `outputs` are the names of what was written.
    virtual void ended(const FilmResult& film, const std::string& outputs) = 0;
};

/// Sentences and a bar or lines; problems alone when the style is `Silent`. Borrows the stream.
[[nodiscard]] std::unique_ptr<FilmTeller> tellInWords(std::ostream& out, ProgressStyle style);

/// One JSON object a line: {"event": "start" | "frame" | "problem" | "end", ...}. Borrows the
/// stream.
[[nodiscard]] std::unique_ptr<FilmTeller> tellInJson(std::ostream& out);

/// What the program returns for such an end; `signal` is the one that interrupted it.
[[nodiscard]] ExitCode exitCode(const FilmResult& film, int signal);

} // namespace orbel::app
