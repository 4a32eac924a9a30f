#include "drawing/ShapeWriter.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>

namespace orbel {

namespace {

/// Decimals as fine as the recording of a page.
int decimalsFor(double longerSide) {
    const double digits = 6 - std::ceil(std::log10(std::max(longerSide, 1e-6)));
    return static_cast<int>(std::clamp(digits, 0.0, 12.0));
}

class Writer {
public:
    explicit Writer(const DrawnPage& page)
        : m_page(page), m_decimals(decimalsFor(std::max(page.width, page.height))) {}

    std::string write() {
        m_text = R"(<svg xmlns="http://www.w3.org/2000/svg" width=")";
        number(m_page.width);
        m_text += "\" height=\"";
        number(m_page.height);
        m_text += "\" viewBox=\"0 0 ";
        number(m_page.width);
        m_text += ' ';
        number(m_page.height);
        m_text += "\">\n<g fill=\"none\" stroke=\"black\">\n";
        for (const DrawnCurve& drawn : m_page.curves) {
            path(drawn);
        }
        return std::move(m_text) + "</g>\n</svg>\n";
    }

private:
    void number(double value) {
        std::array<char, 400> buffer{};
        const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                       std::chars_format::fixed, m_decimals);
        std::string_view text(buffer.data(), static_cast<std::size_t>(end.ptr - buffer.data()));
        if (text.find('.') != std::string_view::npos) {
            text = text.substr(0, text.find_last_not_of('0') + 1);
            text = text.substr(0, text.size() - (text.back() == '.' ? 1 : 0));
        }
        m_text += text == "-0" ? "0" : text;
    }

    void point(PlanePoint p) {
        m_text += ' ';
        number(p.x);
        m_text += ' ';
        number(p.y);
    }

    void attribute(const char* name, const std::string& value) {
        if (value.empty()) {
            return;
        }
        m_text += std::string(" data-") + name + "=\"";
        for (const char c : value) {
            const bool control = static_cast<unsigned char>(c) < 0x20;
            m_text += c == '&'   ? "&amp;"
                      : c == '<' ? "&lt;"
                      : c == '"' ? "&quot;"
                      : control  ? " "
                                 : std::string(1, c);
        }
        m_text += '"';
    }

    void segment(PlanePoint from, const OutlineSegment& s) {
        m_text += " C";
        point(s.straight ? between(from, s.end, 1.0 / 3) : s.control1);
        point(s.straight ? between(from, s.end, 2.0 / 3) : s.control2);
        point(s.end);
    }

    /// The reader takes a single cubic for a line, so that one is written as its two halves.
    void halves(PlanePoint from, const OutlineSegment& s) {
        const PlanePoint a = between(from, s.control1, 0.5);
        const PlanePoint b = between(s.control1, s.control2, 0.5);
        const PlanePoint c = between(s.control2, s.end, 0.5);
        const PlanePoint ab = between(a, b, 0.5);
        const PlanePoint bc = between(b, c, 0.5);
        const PlanePoint middle = between(ab, bc, 0.5);
        segment(from, {a, ab, middle, s.straight});
        segment(middle, {bc, c, s.end, s.straight});
    }

    void path(const DrawnCurve& drawn) {
        const OutlineCurve& curve = drawn.curve;
        m_text += "<path";
        attribute("id", drawn.source.id);
        attribute("title", drawn.source.title);
        attribute("fill", drawn.source.fill);
        attribute("stroke", drawn.source.stroke);
        m_text += " d=\"M";
        point(curve.start);
        if (curve.segments.size() == 1) {
            halves(curve.start, curve.segments.front());
        } else {
            PlanePoint from = curve.start;
            for (const OutlineSegment& s : curve.segments) {
                segment(from, s);
                from = s.end;
            }
        }
        m_text += curve.closed ? " Z\"/>\n" : "\"/>\n";
    }

    const DrawnPage& m_page;
    int m_decimals;
    std::string m_text;
};

} // namespace

std::string shapeText(const DrawnPage& page) {
    return Writer(page).write();
}

} // namespace orbel
