#include "drawing/DrawingRules.h"

#include "drawing/CurveFit.h"
#include "drawing/ShortNumber.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace orbel {

namespace {

constexpr double meeting = 1e-5;  // ends this near, in parts of the page, are one point
constexpr double flatness = 1e-5; // an area this thin is none
constexpr std::size_t mostSorted = 30000;

/// Whether all points lie on one line: filled, it shows nothing.
bool isFlat(const OutlineCurve& curve, double tolerance) {
    PlanePoint far = curve.start;
    const auto reach = [&](PlanePoint p) {
        if (distanceOf(curve.start, p) > distanceOf(curve.start, far)) {
            far = p;
        }
    };
    for (const OutlineSegment& s : curve.segments) {
        reach(s.control1);
        reach(s.control2);
        reach(s.end);
    }
    const double length = distanceOf(curve.start, far);
    const auto aside = [&](PlanePoint p) {
        return std::abs((far.x - curve.start.x) * (p.y - curve.start.y) -
                        (far.y - curve.start.y) * (p.x - curve.start.x));
    };
    return length <= tolerance ||
           std::all_of(curve.segments.begin(), curve.segments.end(), [&](const auto& s) {
               const double limit = tolerance * length;
               return aside(s.control1) <= limit && aside(s.control2) <= limit &&
                      aside(s.end) <= limit;
           });
}

bool isPageRectangle(const OutlineCurve& curve, const DrawnPage& page) {
    const std::size_t sides = curve.segments.size();
    const bool straight = std::all_of(curve.segments.begin(), curve.segments.end(),
                                      [](const auto& s) { return s.straight; });
    const OutlineBox box = boxOf(curve);
    const double slack = 0.005 * std::max(page.width, page.height);
    const auto onSide = [&](PlanePoint p) {
        const auto near = [slack](double a, double b) { return std::abs(a - b) <= slack; };
        return (near(p.x, box.left) || near(p.x, box.right)) &&
               (near(p.y, box.top) || near(p.y, box.bottom));
    };
    return straight && sides >= 3 && sides <= 4 && onSide(curve.start) &&
           std::all_of(curve.segments.begin(), curve.segments.end(),
                       [&](const auto& s) { return onSide(s.end); }) &&
           box.left <= slack && box.top <= slack && box.right >= page.width - slack &&
           box.bottom >= page.height - slack;
}

std::string counted(std::size_t count, const char* what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

class Chooser {
public:
    Chooser(const ImportOptions& options, DrawnPage* page) : m_options(options), m_page(page) {
        m_longer = std::max(page->width, page->height);
    }

    void choose(const PaintedOutlines& painted) {
        const bool stroked = !painted.source.stroke.empty();
        const bool filled = !painted.source.fill.empty();
        if ((m_options.take == ImportOptions::Take::Strokes && !stroked) ||
            (m_options.take == ImportOptions::Take::Fills && !filled)) {
            m_otherPaint += painted.curves.size();
            return;
        }
        for (const OutlineCurve& curve : painted.curves) {
            if (shows(curve, stroked)) {
                m_page->curves.push_back({closedAsWanted(curve, stroked), painted.source});
            }
        }
    }

    void tell(std::vector<std::string>* notes) const {
        const auto note = [notes](std::size_t count, const std::string& text) {
            if (count > 0) {
                notes->push_back(counted(count, "outline") + " " + text);
            }
        };
        note(m_otherPaint, m_options.take == ImportOptions::Take::Strokes
                               ? "left out: filled only"
                               : "left out: stroked only");
        note(m_outside, "left out: outside the page");
        note(m_tiny, "left out: smaller than " + shortNumber(m_options.smallest) +
                         " % of the page; --smallest 0 keeps them");
        note(m_page_rectangles, "left out: rectangles as large as the page");
    }

private:
    bool shows(const OutlineCurve& curve, bool stroked) {
        const OutlineBox box = boxOf(curve);
        if (curve.segments.empty() || box.longerSide() <= 0 ||
            (!stroked && isFlat(curve, flatness * m_longer))) {
            return false; // paints nothing
        }
        const double slack = meeting * m_longer; // what touches the page stays
        if (box.right < -slack || box.bottom < -slack || box.left > m_page->width + slack ||
            box.top > m_page->height + slack) {
            ++m_outside;
            return false;
        }
        if (box.longerSide() < m_options.smallest / 100 * m_longer) {
            ++m_tiny;
            return false;
        }
        if (!m_options.pageRectangles && isPageRectangle(curve, *m_page)) {
            ++m_page_rectangles;
            return false;
        }
        return true;
    }

    [[nodiscard]] OutlineCurve closedAsWanted(OutlineCurve curve, bool stroked) const {
        const bool meets = distanceOf(curve.start, curve.end()) <= meeting * m_longer;
        if (m_options.closed == ImportOptions::Closed::All) {
            curve.closed = true;
        } else if (m_options.closed == ImportOptions::Closed::Keep) {
            curve.closed = curve.closed || !stroked || (meets && curve.segments.size() > 1);
        } else if (curve.closed) {
            curve.closed = false;
            if (!meets) {
                curve.segments.push_back(lineSegment(curve.end(), curve.start));
            }
        }
        if (m_options.simplify > 0) {
            simplifyCurve(m_options.simplify, &curve);
        }
        // The way back to the start is a side of its own already.
        if (curve.closed && curve.segments.size() > 2 && curve.segments.back().straight &&
            distanceOf(curve.start, curve.end()) <= meeting * m_longer) {
            curve.segments.pop_back();
        }
        return curve;
    }

    const ImportOptions& m_options;
    DrawnPage* m_page;
    double m_longer;
    std::size_t m_otherPaint = 0;
    std::size_t m_outside = 0;
    std::size_t m_tiny = 0;
    std::size_t m_page_rectangles = 0;
};

void sortNearest(std::vector<DrawnCurve>* curves) {
    if (curves->size() > mostSorted) {
        return;
    }
    for (std::size_t i = 1; i < curves->size(); ++i) {
        const PlanePoint pen = (*curves)[i - 1].curve.closed ? (*curves)[i - 1].curve.start
                                                             : (*curves)[i - 1].curve.end();
        const auto from = curves->begin() + static_cast<std::ptrdiff_t>(i);
        const auto nearest =
            std::min_element(from, curves->end(), [pen](const auto& a, const auto& b) {
                return distanceOf(pen, a.curve.start) < distanceOf(pen, b.curve.start);
            });
        std::rotate(from, nearest, nearest + 1);
    }
}

} // namespace

void joinRepeats(std::vector<PaintedOutlines>* painted) {
    std::vector<PaintedOutlines> joined;
    for (PaintedOutlines& one : *painted) {
        if (joined.empty() || joined.back().curves != one.curves) {
            joined.push_back(std::move(one));
            continue;
        }
        OutlineSource& source = joined.back().source;
        source.fill = source.fill.empty() ? one.source.fill : source.fill;
        source.stroke = source.stroke.empty() ? one.source.stroke : source.stroke;
    }
    *painted = std::move(joined);
}

void chooseOutlines(const std::vector<PaintedOutlines>& painted, const ImportOptions& options,
                    DrawnPage* page, std::vector<std::string>* notes) {
    Chooser chooser(options, page);
    for (const PaintedOutlines& one : painted) {
        chooser.choose(one);
    }
    chooser.tell(notes);
    if (options.order == ImportOptions::Order::Nearest) {
        sortNearest(&page->curves);
    }
}

} // namespace orbel
