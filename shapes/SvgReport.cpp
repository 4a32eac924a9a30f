#include "shapes/SvgReport.h"

#include <array>
#include <cstddef>
#include <cstdio>

namespace orbel {

namespace {

constexpr int maxNotices = 1000;

struct IssueRow {
    SvgIssue issue;
    bool oncePerOutline;   ///< further ones of the same outline go without saying
    std::string_view text; ///< "%s" stands for the subject, "%l" behind it for the line
};

// In the order of the enumeration.
constexpr std::array ISSUES{
    IssueRow{SvgIssue::FileNotRead, false, "Couldn't open file %s"},
    IssueRow{SvgIssue::XmlError, false, "%s at line %l"},
    IssueRow{SvgIssue::LimitReached, false, "reading ends here: %s"},
    IssueRow{SvgIssue::UnknownElement, false, "element \"%s\" is ignored"},
    IssueRow{SvgIssue::NestedPath, false, "a path inside a path is ignored"},
    IssueRow{SvgIssue::Transform, false, "transform \"%s\" is not applied"},
    IssueRow{SvgIssue::Arc, true, "arcs (%s) are ignored, draw them as cubics"},
    IssueRow{SvgIssue::SeveralSubpaths, true,
             "a path is one outline, it goes on after a further %s: use one path for each"},
    IssueRow{SvgIssue::RepeatedMove, true, "further pairs after %s are moves, not lines"},
    IssueRow{SvgIssue::InvalidCharacter, false, "path_tokenizer::next : Invalid Character %s"},
    IssueRow{SvgIssue::InvalidCommand, true, "parse_path: Invalid Command %s"},
    IssueRow{SvgIssue::MissingParameter, false,
             "parse_path: Command %s: bad or missing parameters"},
    IssueRow{SvgIssue::FileTooLarge, false, "%s is larger than 64 MiB and is not read"},
    IssueRow{SvgIssue::Oval, false,
             "element \"%s\" becomes an oval, half as wide and three eighths as tall: draw it as "
             "cubics"},
    IssueRow{SvgIssue::RoundedCorners, false, "rounded corners (%s) are ignored"},
    IssueRow{SvgIssue::ClosedPolyline, false, "a polyline is closed: draw it as cubics"},
    IssueRow{SvgIssue::Unit, false, "the unit of \"%s\" is ignored"},
    IssueRow{SvgIssue::Quadratic, true,
             "the control points of quadratics (%s) become corners: draw them as cubics"},
    IssueRow{SvgIssue::MixedCommands, true,
             "lines and cubics in one path bend one another: use cubics alone"},
    IssueRow{SvgIssue::LoneCubic, true, "a path of a single cubic becomes a line: split it in two"},
    IssueRow{SvgIssue::LastLineLost, true,
             "an open path of lines loses its last one: draw it as cubics"},
    IssueRow{SvgIssue::BentClosing, true,
             "a closed path of lines goes back in a bent line: draw it as cubics"},
    IssueRow{SvgIssue::Exponent, false,
             "\"%s\" has an exponent with a sign and is read as two numbers"},
    IssueRow{SvgIssue::TwoPoints, false,
             "\"%s\" is read as one number, what comes after its second point is lost"},
};

constexpr bool isInOrder() {
    for (std::size_t i = 0; i < ISSUES.size(); ++i) {
        if (static_cast<std::size_t>(ISSUES.at(i).issue) != i) {
            return false;
        }
    }
    return true;
}
static_assert(isInOrder() && ISSUES.size() <= 32, "a row and a bit for each issue");

const IssueRow& rowOf(SvgIssue issue) {
    return ISSUES.at(static_cast<std::size_t>(issue));
}

std::string filledIn(std::string_view text, std::string_view subject, int line) {
    const auto place = text.find("%s");
    if (place == std::string_view::npos) {
        return std::string(text);
    }
    std::string rest(text.substr(place + 2));
    if (const auto at = rest.find("%l"); at != std::string::npos) {
        rest.replace(at, 2, std::to_string(line));
    }
    return std::string(text.substr(0, place)) + std::string(subject) + rest;
}

} // namespace

SvgReport* SvgReport::silent() {
    static SvgReport report;
    return &report;
}

void SvgReport::setObserver(SvgReaderObserver* observer) {
    m_observer = observer;
    m_remaining = maxNotices;
}

void SvgReport::beginOutline() {
    if (m_observer != nullptr) {
        m_told = 0;
    }
}

void SvgReport::add(SvgIssue issue, std::string_view subject) {
    const IssueRow& row = rowOf(issue);
    const std::uint32_t bit = row.oncePerOutline ? 1U << static_cast<unsigned>(issue) : 0U;
    if (!wanted() || (m_told & bit) != 0) {
        return;
    }
    m_told |= bit;
    --m_remaining;
    m_observer->notice({issue, m_line, filledIn(row.text, subject, m_line)});
}

void SvgReport::add(SvgIssue issue, char subject) {
    char number[8];
    std::string_view shown(&subject, 1);
    if (subject < 0x20 || subject > 0x7e) {
        std::snprintf(number, sizeof number, "\\x%02x", static_cast<unsigned char>(subject));
        shown = number;
    }
    add(issue, shown);
}

} // namespace orbel
