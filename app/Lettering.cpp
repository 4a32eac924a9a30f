#include "app/Lettering.h"

#include "host/Numeric.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace orbel::app {

namespace {

/// Strokes of a letter, each the guide points of a smooth line as pairs of digits, x and y from the
/// top left; a point given twice is a corner. Capitals stand on y = 6, small letters begin at 2.
struct Letter {
    int width = 0;
    std::array<std::string_view, 3> strokes;
};

constexpr std::array<Letter, 10> digits{{
    {3, {"100006363010"}},
    {2, {"01101016"}},
    {3, {"01003032060636"}},
    {3, {"0100303313", "1333360605"}},
    {4, {"3630300404", "0444"}},
    {3, {"300000030333360605"}},
    {3, {"3130000636330304"}},
    {3, {"00303016"}},
    {3, {"100003333010", "130306363313"}},
    {3, {"0506363000033332"}},
}};

constexpr std::array<Letter, 26> capitals{{
    {4, {"06202046", "1434"}},
    {4, {"0006", "00303303", "03434606"}},
    {4, {"414000064645"}},
    {4, {"0006", "00404606"}},
    {3, {"300000060636", "0333"}},
    {3, {"30000006", "0333"}},
    {4, {"4140000646434323"}},
    {4, {"0006", "4046", "0343"}},
    {0, {"0006"}},
    {3, {"30360605"}},
    {4, {"0006", "4004", "1346"}},
    {3, {"00060636"}},
    {4, {"0600002424404046"}},
    {4, {"060000464640"}},
    {4, {"200006464020"}},
    {4, {"0006", "00404303"}},
    {4, {"200006464020", "2447"}},
    {4, {"0006", "00404303", "2346"}},
    {4, {"4140000343460605"}},
    {4, {"0040", "2026"}},
    {4, {"00064640"}},
    {4, {"00262640"}},
    {4, {"0016162222363640"}},
    {4, {"0046", "4006"}},
    {4, {"00232340", "2326"}},
    {4, {"004040060646"}},
}};

constexpr std::array<Letter, 26> smallLetters{{
    {3, {"3236", "333202063635"}},
    {3, {"0006", "030232360605"}},
    {3, {"333202063635"}},
    {3, {"3036", "333202063635"}},
    {3, {"0434343202063635"}},
    {2, {"201016", "0222"}},
    {3, {"333202063635", "323808"}},
    {3, {"0006", "03023236"}},
    {0, {"0206", "0000"}},
    {2, {"221807", "2020"}},
    {3, {"0006", "3205", "1436"}},
    {0, {"0006"}},
    {4, {"0206", "03022226", "23224246"}},
    {3, {"0206", "03023236"}},
    {3, {"120206363212"}},
    {3, {"0208", "030232360605"}},
    {3, {"3238", "333202063635"}},
    {2, {"0206", "040222"}},
    {3, {"3332020434360605"}},
    {2, {"101626", "0222"}},
    {3, {"02063633", "3236"}},
    {4, {"02262642"}},
    {4, {"0216162323363642"}},
    {3, {"0236", "3206"}},
    {4, {"0226", "4218"}},
    {3, {"023232060636"}},
}};

constexpr Letter blank{1, {}};
constexpr double spacing = 1.7;    ///< between letters, units
constexpr double penRadius = 0.36; ///< units

struct Place {
    double x;
    double y;
};

Place between(Place a, Place b, double t) {
    return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t};
}

const Letter& letterOf(char c) {
    if (c >= '0' && c <= '9') {
        return digits[static_cast<std::size_t>(c - '0')];
    }
    if (c >= 'a' && c <= 'z') {
        return smallLetters[static_cast<std::size_t>(c - 'a')];
    }
    if (c >= 'A' && c <= 'Z') {
        return capitals[static_cast<std::size_t>(c - 'A')];
    }
    return blank;
}

std::vector<Place> guidePoints(std::string_view stroke) {
    std::vector<Place> points;
    for (std::size_t i = 0; i + 1 < stroke.size(); i += 2) {
        points.push_back({static_cast<double>(stroke[i] - '0'),
                          static_cast<double>(stroke[i + 1] - '0' - capitalHeight)});
    }
    return points;
}

/// The line that runs from the first point to the last and bends at each in between without
/// touching it.
std::vector<Place> smoothLine(const std::vector<Place>& guides) {
    constexpr int steps = 8;
    std::vector<Place> line{guides.front()};
    for (std::size_t i = 1; i + 1 < guides.size(); ++i) {
        const Place from = between(guides[i - 1], guides[i], 0.5);
        const Place to = between(guides[i], guides[i + 1], 0.5);
        for (int k = 0; k <= steps; ++k) {
            const double t = static_cast<double>(k) / steps;
            line.push_back(between(between(from, guides[i], t), between(guides[i], to, t), t));
        }
    }
    line.push_back(guides.back());
    return line;
}

double distance(Place p, Place a, Place b) {
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    const double square = dx * dx + dy * dy;
    const double along = square > 0 ? ((p.x - a.x) * dx + (p.y - a.y) * dy) / square : 0.0;
    const Place nearest = between(a, b, std::clamp(along, 0.0, 1.0));
    return std::hypot(p.x - nearest.x, p.y - nearest.y);
}

/// Pixels from (left, top) up to, but without, (right, bottom).
struct Area {
    int left;
    int top;
    int right;
    int bottom;

    [[nodiscard]] bool empty() const { return right <= left || bottom <= top; }
};

Area common(Area a, Area b) {
    return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
            std::min(a.bottom, b.bottom)};
}

/// The pixels within a distance of the box of two places.
Area around(Place a, Place b, double reach) {
    const auto down = [](double v) { return truncateTo<int>(std::floor(v)); };
    return {down(std::min(a.x, b.x) - reach), down(std::min(a.y, b.y) - reach),
            down(std::max(a.x, b.x) + reach) + 2, down(std::max(a.y, b.y) + reach) + 2};
}

/// How far the pen has covered each pixel of an area: gathered before it is coloured, so that
/// strokes that cross do not add up.
class Coverage {
public:
    explicit Coverage(Area area)
        : m_area(area),
          m_width(static_cast<std::size_t>(area.right - area.left)),
          m_cover(m_width * static_cast<std::size_t>(area.bottom - area.top)) {}

    [[nodiscard]] const Area& area() const { return m_area; }
    [[nodiscard]] double& at(int x, int y) {
        return m_cover[static_cast<std::size_t>(y - m_area.top) * m_width +
                       static_cast<std::size_t>(x - m_area.left)];
    }

    void addSegment(Place a, Place b, double radius) {
        const Area touched = common(around(a, b, radius), m_area);
        for (int y = touched.top; y < touched.bottom; ++y) {
            for (int x = touched.left; x < touched.right; ++x) {
                const Place pixel{static_cast<double>(x), static_cast<double>(y)};
                const double cover = radius + 0.5 - distance(pixel, a, b);
                at(x, y) = std::max(at(x, y), std::clamp(cover, 0.0, 1.0));
            }
        }
    }

private:
    Area m_area;
    std::size_t m_width;
    std::vector<double> m_cover;
};

void addLetter(const Letter& letter, Place origin, double unit, Coverage* coverage) {
    const auto onImage = [&](Place p) {
        return Place{origin.x + p.x * unit, origin.y + p.y * unit};
    };
    for (const std::string_view stroke : letter.strokes) {
        if (stroke.empty()) {
            continue;
        }
        const std::vector<Place> line = smoothLine(guidePoints(stroke));
        for (std::size_t i = 0; i + 1 < line.size(); ++i) {
            coverage->addSegment(onImage(line[i]), onImage(line[i + 1]), penRadius * unit);
        }
    }
}

void colourPixels(const RasterInfo& image, Coverage* coverage,
                  const std::array<std::uint8_t, 3>& colour) {
    const Area& area = coverage->area();
    for (int y = area.top; y < area.bottom; ++y) {
        std::uint8_t* pixel = image.row(y) + std::ptrdiff_t{4} * area.left;
        for (int x = area.left; x < area.right; ++x, pixel += 4) {
            const double cover = coverage->at(x, y);
            for (std::size_t i = 0; i < colour.size(); ++i) {
                pixel[i] = static_cast<std::uint8_t>(pixel[i] + (colour[i] - pixel[i]) * cover);
            }
        }
    }
}

} // namespace

double textWidth(std::string_view text) {
    double width = 0.0;
    for (const char c : text) {
        width += letterOf(c).width + spacing;
    }
    return std::max(0.0, width - spacing);
}

void drawText(const RasterInfo& image, const TextPlace& place, std::string_view text,
              const std::array<std::uint8_t, 3>& colour) {
    const Place highest{place.x, place.baseline - capitalHeight * place.unit};
    const Place lowest{place.x + textWidth(text) * place.unit, place.baseline + 2 * place.unit};
    const Area area =
        common(around(highest, lowest, place.unit), {0, 0, image.width, image.height});
    if (area.empty()) {
        return;
    }
    Coverage coverage(area);
    double x = place.x;
    for (const char c : text) {
        addLetter(letterOf(c), {x, place.baseline}, place.unit, &coverage);
        x += (letterOf(c).width + spacing) * place.unit;
    }
    colourPixels(image, &coverage, colour);
}

} // namespace orbel::app
