#include "drawing/RecordingReader.h"

#include <charconv>
#include <cmath>
#include <string>
#include <utility>

namespace orbel {

namespace {

/// Cuts the script into words; brackets are words of their own, texts and pictures none.
class Words {
public:
    explicit Words(std::string_view text) : m_text(text) {}

    /// Empty at the end.
    std::string_view next() {
        while (m_at < m_text.size()) {
            const char c = m_text[m_at];
            if (isSpace(c)) {
                ++m_at;
            } else if (c == '%') {
                skipTo("\n");
            } else if (c == '(') {
                skipTo(")");
            } else if (startsWith("<~")) {
                skipTo("~>");
            } else if (startsWith("<|")) {
                skipTo("|>");
            } else {
                return word();
            }
        }
        return {};
    }

private:
    static bool isSpace(char c) { return c == ' ' || c == '\n' || c == '\t' || c == '\r'; }
    static bool isBracket(char c) {
        return c == '[' || c == ']' || c == '{' || c == '}' || c == '<' || c == '>';
    }

    [[nodiscard]] bool startsWith(std::string_view start) const {
        return m_text.substr(m_at, start.size()) == start;
    }

    void skipTo(std::string_view end) {
        const std::size_t found = m_text.find(end, m_at + 1);
        m_at = found == std::string_view::npos ? m_text.size() : found + end.size();
    }

    std::string_view word() {
        const std::size_t start = m_at++;
        if (!isBracket(m_text[start])) {
            while (m_at < m_text.size() && !isSpace(m_text[m_at]) && !isBracket(m_text[m_at]) &&
                   m_text[m_at] != '(') {
                ++m_at;
            }
        }
        return m_text.substr(start, m_at - start);
    }

    std::string_view m_text;
    std::size_t m_at = 0;
};

class Recording {
public:
    std::vector<PaintedPath> read(std::string_view script) {
        Words words(script);
        for (std::string_view word = words.next(); !word.empty(); word = words.next()) {
            take(word);
        }
        return std::move(m_painted);
    }

private:
    void take(std::string_view word) {
        double number = 0.0;
        const char* const end = word.data() + word.size();
        const auto read = std::from_chars(word.data(), end, number);
        if (read.ec == std::errc{} && read.ptr == end) {
            m_numbers.push_back(number);
            return;
        }
        if (word == "context") {
            ++m_depth;
        } else if (word == "pop" && m_depth > 0) {
            --m_depth;
        } else if (m_depth == 1) {
            obey(word);
        }
        m_numbers.clear();
    }

    void obey(std::string_view word) {
        if (word == "n") {
            m_curves.clear();
            m_broken = false;
        } else if (word == "m" || word == "l" || word == "c" || word == "h" ||
                   word == "rectangle") {
            draw(word);
        } else if (word == "a" || word == "g" || word == "rgb" || word == "rgba") {
            takeColour(word);
        } else if (word == "set-source") {
            m_colour = std::exchange(m_nextColour, std::nullopt);
        } else if (word == "fill" || word == "fill+") {
            paint(PaintedPath::Kind::Fill);
        } else if (word == "stroke" || word == "stroke+") {
            paint(PaintedPath::Kind::Stroke);
        }
    }

    /// The last numbers before the word, as points; a path with any that is missing or no number
    /// is left out.
    template<std::size_t count>
    std::optional<std::array<PlanePoint, count>> points() {
        std::array<PlanePoint, count> result{};
        if (m_numbers.size() < 2 * count) {
            m_broken = true;
            return std::nullopt;
        }
        const double* number = &m_numbers[m_numbers.size() - 2 * count];
        for (PlanePoint& point : result) {
            point = {number[0], number[1]};
            number += 2;
            if (!std::isfinite(point.x) || !std::isfinite(point.y)) {
                m_broken = true;
                return std::nullopt;
            }
        }
        return result;
    }

    void draw(std::string_view word) {
        if (word == "h") {
            closeCurve();
        } else if (word == "m") {
            if (const auto to = points<1>()) {
                beginAt(to->front());
            }
        } else if (word == "rectangle") {
            if (const auto corner = points<2>()) {
                rectangle((*corner)[0], (*corner)[1]);
            }
        } else if (m_curves.empty()) {
            m_broken = true;
        } else if (word == "l") {
            if (const auto to = points<1>()) {
                OutlineCurve& curve = openCurve();
                curve.segments.push_back(lineSegment(curve.end(), to->front()));
            }
        } else if (const auto to = points<3>()) {
            openCurve().segments.push_back({(*to)[0], (*to)[1], (*to)[2], false});
        }
    }

    void beginAt(PlanePoint start) {
        OutlineCurve curve;
        curve.start = start;
        m_curves.push_back(std::move(curve));
    }

    /// What follows a closing without a move begins anew where the closed one began.
    OutlineCurve& openCurve() {
        if (m_curves.back().closed) {
            beginAt(m_curves.back().start);
        }
        return m_curves.back();
    }

    void closeCurve() {
        if (!m_curves.empty()) {
            m_curves.back().closed = true;
        }
    }

    void rectangle(PlanePoint corner, PlanePoint size) {
        const PlanePoint a{corner.x + size.x, corner.y};
        const PlanePoint b{corner.x + size.x, corner.y + size.y};
        const PlanePoint c{corner.x, corner.y + size.y};
        beginAt(corner);
        m_curves.back().segments = {lineSegment(corner, a), lineSegment(a, b), lineSegment(b, c)};
        m_curves.back().closed = true;
    }

    void takeColour(std::string_view word) {
        const std::size_t count = word.size();
        if (m_numbers.size() < count) {
            return;
        }
        const double* const last = &m_numbers[m_numbers.size() - count];
        if (word == "a") { // black that shines through
            m_nextColour = {0.0, 0.0, 0.0, last[0]};
        } else if (word == "g") {
            m_nextColour = {last[0], last[0], last[0], 1.0};
        } else {
            m_nextColour = {last[0], last[1], last[2], count == 4 ? last[3] : 1.0};
        }
    }

    void paint(PaintedPath::Kind kind) {
        if (!m_broken && !m_curves.empty()) {
            m_painted.push_back({kind, m_colour, m_curves});
        }
    }

    std::vector<PaintedPath> m_painted;
    std::vector<double> m_numbers;
    std::vector<OutlineCurve> m_curves; // the current path, which stays for the next painting
    std::optional<std::array<double, 4>> m_colour = std::array<double, 4>{0, 0, 0, 1};
    std::optional<std::array<double, 4>> m_nextColour; // for the next source; none for a pattern
    int m_depth = 0; // 1 in the page's own recording, more in tiles
    bool m_broken = false;
};

} // namespace

std::vector<PaintedPath> readRecording(std::string_view script) {
    return Recording().read(script);
}

} // namespace orbel
