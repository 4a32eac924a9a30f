#include "drawing/CssTransform.h"

#include "drawing/TextStyle.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>
#include <vector>

namespace orbel {

namespace {

constexpr double degree = std::numbers::pi / 180;

/// Radians; a number without a unit is in degrees.
double angleOf(std::string_view text) {
    const double number = lengthOf(text, 1, 1);
    if (text.ends_with("turn")) {
        return number * 2 * std::numbers::pi;
    }
    if (text.ends_with("grad")) {
        return number * std::numbers::pi / 200;
    }
    return text.ends_with("rad") ? number : number * degree;
}

/// The words of a list that is parted by commas and white space.
std::vector<std::string_view> wordsOf(std::string_view text) {
    constexpr std::string_view gaps = " \t\r\n,";
    std::vector<std::string_view> words;
    for (std::size_t at = text.find_first_not_of(gaps); at != std::string_view::npos;
         at = text.find_first_not_of(gaps, at)) {
        const std::size_t end = std::min(text.find_first_of(gaps, at), text.size());
        words.push_back(text.substr(at, end - at));
        at = end;
    }
    return words;
}

/// Reads one function of the list; lengths as its place in it wants them.
class Function {
public:
    Function(std::string_view inside, double em, double width, double height)
        : m_words(wordsOf(inside)), m_em(em), m_width(width), m_height(height) {}

    [[nodiscard]] std::optional<PlaneTransform> read(std::string_view name) const {
        const std::size_t count = m_words.size();
        if (count == 0) {
            return std::nullopt;
        }
        if (name == "matrix" && count == 6) {
            return PlaneTransform{number(0), number(2), number(1), number(3), number(4), number(5)};
        }
        if (name == "translate" || name == "translateX") {
            return moved(across(0), count > 1 ? down(1) : 0);
        }
        if (name == "translateY") {
            return moved(0, down(0));
        }
        if (name == "scale") {
            return scaled(number(0), count > 1 ? number(1) : number(0));
        }
        if (name == "scaleX" || name == "scaleY") {
            return scaled(name == "scaleX" ? number(0) : 1, name == "scaleY" ? number(0) : 1);
        }
        if (name == "rotate") {
            const PlanePoint about = count > 2 ? PlanePoint{number(1), number(2)} : PlanePoint{};
            return combined(combined(moved(about.x, about.y), turned(angle(0))),
                            moved(-about.x, -about.y));
        }
        if (name == "skewX" || name == "skew") {
            return PlaneTransform{1, std::tan(angle(0)), count > 1 ? std::tan(angle(1)) : 0, 1, 0,
                                  0};
        }
        if (name == "skewY") {
            return PlaneTransform{1, 0, std::tan(angle(0)), 1, 0, 0};
        }
        return std::nullopt;
    }

    /// Whether every number but 0 has a unit.
    [[nodiscard]] bool hasUnits() const {
        return std::all_of(m_words.begin(), m_words.end(), [](std::string_view word) {
            return word.back() == '%' || (word.back() >= 'a' && word.back() <= 'z') ||
                   lengthOf(word, 1, 1) == 0;
        });
    }

private:
    static PlaneTransform moved(double x, double y) { return {1, 0, 0, 1, x, y}; }
    static PlaneTransform scaled(double x, double y) { return {x, 0, 0, y, 0, 0}; }
    static PlaneTransform turned(double angle) {
        return {std::cos(angle), -std::sin(angle), std::sin(angle), std::cos(angle), 0, 0};
    }
    [[nodiscard]] double number(std::size_t i) const { return lengthOf(m_words[i], m_em, 1); }
    [[nodiscard]] double across(std::size_t i) const { return lengthOf(m_words[i], m_em, m_width); }
    [[nodiscard]] double down(std::size_t i) const { return lengthOf(m_words[i], m_em, m_height); }
    [[nodiscard]] double angle(std::size_t i) const { return angleOf(m_words[i]); }

    std::vector<std::string_view> m_words;
    double m_em;
    double m_width;
    double m_height;
};

/// One word of an origin in parts of the whole, if it is no length.
std::optional<double> partOf(std::string_view word) {
    if (word == "center") {
        return 0.5;
    }
    if (word == "left" || word == "top") {
        return 0.0;
    }
    return word == "right" || word == "bottom" ? std::optional(1.0) : std::nullopt;
}

} // namespace

PlaneTransform combined(const PlaneTransform& outer, const PlaneTransform& inner) {
    const PlanePoint origin = outer({inner.dx, inner.dy});
    return {outer.xx * inner.xx + outer.xy * inner.yx,
            outer.xx * inner.xy + outer.xy * inner.yy,
            outer.yx * inner.xx + outer.yy * inner.yx,
            outer.yx * inner.xy + outer.yy * inner.yy,
            origin.x,
            origin.y};
}

std::optional<PlaneTransform> cssTransform(std::string_view text, double em, double width,
                                           double height, bool sheet) {
    PlaneTransform whole;
    text = trimmed(text);
    while (!text.empty() && text != "none") {
        const std::size_t open = text.find('(');
        const std::size_t close = text.find(')');
        if (open == std::string_view::npos || close == std::string_view::npos || close < open) {
            return std::nullopt;
        }
        const Function function(text.substr(open + 1, close - open - 1), em, width, height);
        const std::string_view name = trimmed(text.substr(0, open));
        const auto one = function.read(name);
        const bool bare = name.starts_with("scale") || name.starts_with("matrix");
        if (!one || (sheet && !bare && !function.hasUnits())) {
            return std::nullopt;
        }
        whole = combined(whole, *one);
        text.remove_prefix(close + 1);
        text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n,"), text.size()));
    }
    return whole;
}

PlanePoint cssOrigin(std::string_view text, double em, double width, double height) {
    std::vector<std::string_view> words = wordsOf(text);
    words.resize(2, "center");
    if (words[0] == "top" || words[0] == "bottom" || words[1] == "left" || words[1] == "right") {
        std::swap(words[0], words[1]);
    }
    const auto place = [em](std::string_view word, double whole) {
        const auto part = partOf(word);
        return part ? *part * whole : lengthOf(word, em, whole);
    };
    return {place(words[0], width), place(words[1], height)};
}

} // namespace orbel
