#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace orbel {

/// Kinds of things in a shape file that do not become geometry as one might expect. Each has its
/// text in the table of SvgReport.cpp; a new one goes at the end of both.
enum class SvgIssue {
    FileNotRead,      ///< cannot be opened
    XmlError,         ///< reading ended here; what came before is kept
    LimitReached,     ///< reading ended here because the file asks for too much
    UnknownElement,   ///< skipped, its children are not
    NestedPath,       ///< a path inside a path, skipped
    Transform,        ///< one transform function, not applied
    Arc,              ///< an arc command, skipped with its numbers
    SeveralSubpaths,  ///< a path that goes on after a closing or a second move: not split
    RepeatedMove,     ///< further pairs after a move, which draw nothing
    InvalidCharacter, ///< the rest of this path data is skipped
    InvalidCommand,   ///< the rest of this path data is skipped
    MissingParameter, ///< a number that is not there and reads as 0
    FileTooLarge,     ///< not read at all
    Oval,             ///< a circle or ellipse that comes out smaller and flatter
    RoundedCorners,   ///< of a rectangle, left out
    ClosedPolyline,   ///< open as it is written
    Unit,             ///< of a length, left out
    Quadratic,        ///< its control point becomes a corner
    MixedCommands,    ///< lines and cubics in one path: controls are stale
    LoneCubic,        ///< a path of one cubic becomes a line
    LastLineLost,     ///< of an open path of lines
    BentClosing,      ///< the way back of a closed path of lines
    Exponent,         ///< with a sign: two numbers
    TwoPoints,        ///< in one number: its rest is lost
};

struct SvgNotice {
    SvgIssue issue;
    int line; ///< line of the file, from 1; 0 when it concerns the file as a whole
    std::string text;
};

/// Is told what the reader skips or finds wrong, in the order of the file. Rendering needs none.
class SvgReaderObserver {
public:
    virtual void notice(const SvgNotice& notice) = 0;

protected:
    SvgReaderObserver() = default;
    SvgReaderObserver(const SvgReaderObserver&) = default;
    SvgReaderObserver& operator=(const SvgReaderObserver&) = default;
    ~SvgReaderObserver() = default;
};

/// Carries notices from the parts of the reader to the observer, if there is one. After a thousand
/// it keeps silent: a broken file may have millions.
class SvgReport {
public:
    /// A report that nobody hears, for parts that are used by themselves. Shared by all threads.
    [[nodiscard]] static SvgReport* silent();

    /// Borrowed; null for none. Starts to count anew.
    void setObserver(SvgReaderObserver* observer);
    /// The line that the notices to come belong to.
    void setLine(int line) { m_line = line; }
    /// False when nobody listens, so that texts and lines need not be worked out.
    [[nodiscard]] bool wanted() const { return m_observer != nullptr && m_remaining > 0; }
    /// Another outline begins: what is told once for each may be told again.
    void beginOutline();
    /// Tells of an issue, with what it is about.
    void add(SvgIssue issue, std::string_view subject = {});
    /// The same about one byte; what is no printable character appears as its number.
    void add(SvgIssue issue, char subject);

private:
    SvgReaderObserver* m_observer = nullptr;
    std::uint32_t m_told = 0; ///< a bit for each issue of this outline that is told once
    int m_line = 0;
    int m_remaining = 0;
};

} // namespace orbel
