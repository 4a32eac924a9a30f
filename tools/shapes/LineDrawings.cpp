#include "tools/shapes/Drawings.h"
#include "tools/shapes/Regular.h"

#include <algorithm>
#include <cmath>

namespace orbel::artwork {

namespace {

/// Rows from the top, then columns from the left.
std::vector<Outline> gridOfLines(int count) {
    std::vector<Outline> lines;
    lines.reserve(static_cast<std::size_t>(count) * 2);
    for (int row = 0; row < count; ++row) {
        lines.push_back(line({0.0, 1.0 * row}, {count - 1.0, 1.0 * row}));
    }
    for (int column = 0; column < count; ++column) {
        lines.push_back(line({1.0 * column, 0.0}, {1.0 * column, count - 1.0}));
    }
    return lines;
}

/// A rectangle's corners, rounded ones of which begin in the middle of the upper side.
std::vector<Point> fromTheTop(std::vector<Point> corners) {
    std::rotate(corners.begin(), corners.begin() + 1, corners.end());
    return corners;
}

/// Cells in reading order.
std::vector<Outline> gridOfCells(int count) {
    constexpr double HALF = 0.36;
    std::vector<Outline> cells;
    for (int row = 0; row < count; ++row) {
        for (int column = 0; column < count; ++column) {
            const Point centre{1.0 * column, 1.0 * row};
            cells.push_back(roundedPolygon(
                fromTheTop(rectangle(centre - Point{HALF, HALF}, centre + Point{HALF, HALF})),
                0.12));
        }
    }
    return cells;
}

/// A square woven of nine bundles of lines, across and upright in turn.
std::vector<Outline> squareOfLines() {
    constexpr int BUNDLES = 3;
    constexpr int LINES = 4;
    constexpr double PITCH = 1.0;
    constexpr double SIDE = PITCH * LINES;
    std::vector<Outline> lines;
    for (int bundle = 0; bundle < BUNDLES * BUNDLES; ++bundle) {
        const int row = bundle / BUNDLES;
        const Point corner{bundle % BUNDLES * SIDE, row * SIDE};
        for (int i = 0; i < LINES; ++i) {
            const double across = (i + 0.5) * PITCH;
            const double low = 0.5 * PITCH;
            const double high = SIDE - 0.5 * PITCH;
            lines.push_back(bundle % 2 == 0
                                ? line(corner + Point{low, across}, corner + Point{high, across})
                                : line(corner + Point{across, low}, corner + Point{across, high}));
        }
    }
    return lines;
}

struct Stick {
    Point from;
    Point to;
};

Point middle(const Stick& stick) {
    return lerp(stick.from, stick.to, 0.5);
}

double degreesOf(Point direction) {
    return std::atan2(direction.y, direction.x) * 180 / PI;
}

double distanceTo(const Stick& stick, Point p) {
    const Point along = stick.to - stick.from;
    const Point offset = p - stick.from;
    const double t =
        (offset.x * along.x + offset.y * along.y) / (along.x * along.x + along.y * along.y);
    return length(offset - along * std::clamp(t, 0.0, 1.0));
}

double gap(const std::vector<Stick>& sticks, const Stick& stick) {
    double smallest = 1e9;
    for (const Stick& other : sticks) {
        for (int i = 0; i <= 16; ++i) {
            smallest = std::min(smallest, distanceTo(other, lerp(stick.from, stick.to, i / 16.0)));
        }
        smallest = std::min({smallest, distanceTo(stick, other.from), distanceTo(stick, other.to)});
    }
    return smallest;
}

/// How far the direction of a stick is from those of the sticks about it, in degrees: the nearer,
/// the more it counts.
double contrast(const std::vector<Stick>& sticks, const Stick& stick) {
    constexpr double ABOUT = 45;
    double least = 90;
    for (const Stick& other : sticks) {
        const double apart = length(middle(other) - middle(stick));
        const double angle = degreesOf(stick.to - stick.from) - degreesOf(other.to - other.from);
        least = std::min(least, std::abs(std::remainder(angle, 180)) +
                                    std::max(0.0, 90 * (apart / ABOUT - 0.4)));
    }
    return least;
}

/// The longest stick about a place that stays clear of the others, or one without length.
Stick longestAt(const std::vector<Stick>& sticks, Point place, double degrees) {
    constexpr double CLEARANCE = 8;
    for (int half = 30; half >= 12; half -= 2) {
        const Point reach = onClock({}, half, degrees);
        const Stick stick{place - reach, place + reach};
        if (gap(sticks, stick) >= CLEARANCE && length(stick.from) <= 100 &&
            length(stick.to) <= 100) {
            return stick;
        }
    }
    return {place, place};
}

/// Sticks thrown on a round table, each just clear of the others and in a direction unlike theirs,
/// so that no current runs through them; stroked from left to right.
std::vector<Outline> randomLines() {
    constexpr int THROWS = 400;
    Dice dice(5);
    std::vector<Stick> sticks;
    for (int i = 0; i < 28; ++i) {
        Stick best{};
        double most = -1e9;
        for (int throws = 0; throws < THROWS; ++throws) {
            const Point place =
                onClock({}, 95 * std::sqrt(dice.between(0, 1)), dice.between(0, 360));
            const Stick stick = longestAt(sticks, place, dice.between(0, 180));
            const double half = length(stick.to - place);
            const double worth =
                contrast(sticks, stick) + half - std::min(gap(sticks, stick), 40.0);
            if (half > 0 && worth > most) {
                most = worth;
                best = stick;
            }
        }
        sticks.push_back(best.from.x < best.to.x ? best : Stick{best.to, best.from});
    }
    std::sort(sticks.begin(), sticks.end(),
              [](const Stick& a, const Stick& b) { return a.from.x < b.from.x; });
    std::vector<Outline> lines;
    lines.reserve(sticks.size());
    for (const Stick& stick : sticks) {
        lines.push_back(line(stick.from, stick.to));
    }
    return lines;
}

} // namespace

std::vector<Drawing> lineDrawings() {
    return {
        {"Grid 5 x 5 Lines", gridOfLines(5)},
        {"Grid 7 x7", gridOfCells(7)},
        {"Random Lines", randomLines()},
        {"Square of Lines", squareOfLines()},
    };
}

} // namespace orbel::artwork
