#include "tools/shapes/Drawing.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

namespace orbel::artwork {

namespace {

struct Box {
    Point low{std::numeric_limits<double>::max(), std::numeric_limits<double>::max()};
    Point high{std::numeric_limits<double>::lowest(), std::numeric_limits<double>::lowest()};

    void take(Point p) {
        low = {std::min(low.x, p.x), std::min(low.y, p.y)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y)};
    }
};

template<class Visit>
void forEachPoint(Drawing& drawing, const Visit& visit) {
    for (Outline& outline : drawing.outlines) {
        visit(outline.start);
        for (Cubic& cubic : outline.cubics) {
            visit(cubic.control1);
            visit(cubic.control2);
            visit(cubic.end);
        }
    }
}

/// A thousandth of a unit is enough on a sheet of 512.
std::string number(double value) {
    std::array<char, 32> digits{};
    const auto end =
        std::to_chars(digits.begin(), digits.end(), value, std::chars_format::fixed, 3);
    std::string text(digits.begin(), end.ptr);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') {
        text.pop_back();
    }
    return text == "-0" ? "0" : text;
}

std::string coordinates(Point p) {
    return number(p.x) + " " + number(p.y);
}

std::string pathData(const Outline& outline) {
    std::string d = "M";
    d += coordinates(outline.start);
    for (const Cubic& cubic : outline.cubics) {
        d += " C" + coordinates(cubic.control1) + " " + coordinates(cubic.control2) + " " +
             coordinates(cubic.end);
    }
    return outline.closed ? d + " Z" : d;
}

} // namespace

void fitToSheet(Drawing* drawing) {
    for (Outline& outline : drawing->outlines) {
        outline = splitAtExtremes(outline);
    }
    Box box;
    forEachPoint(*drawing, [&](Point& p) { box.take(p); });
    const Point size = box.high - box.low;
    const double scale = 2 * REACH / std::max(size.x, size.y);
    const Point centre = lerp(box.low, box.high, 0.5);
    forEachPoint(*drawing, [&](Point& p) { p = MIDDLE + (p - centre) * scale; });
}

std::string svgText(const Drawing& drawing) {
    std::string text = "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 512 512\">\n"
                       "  <title>" +
                       drawing.name +
                       "</title>\n"
                       "  <g fill=\"none\" stroke=\"#5b6b7f\" stroke-width=\"6\""
                       " stroke-linecap=\"round\" stroke-linejoin=\"round\">\n";
    for (const Outline& outline : drawing.outlines) {
        text += "    <path d=\"" + pathData(outline) + "\"/>\n";
    }
    return text + "  </g>\n</svg>\n";
}

} // namespace orbel::artwork
