#include "tests/artwork/ShippedShapes.h"

#include "shapes/SvgParser.h"

#include <cctype>
#include <limits>

namespace orbel::test {

namespace {

constexpr double NONE = std::numeric_limits<double>::infinity();

// Name, closed, open, corners, swings, turns, area, smallest radius, smallest gap.
constexpr ShippedShape shapes[] = {
    {"Basic Circle", 1, 0, 0, 0, 1, 60.1, 222.3, NONE},
    {"Basic Square", 1, 0, 4, 0, 1, 76.6, NONE, NONE},
    {"Basic Star", 1, 0, 10, 0, 1, 23.8, NONE, NONE},
    {"Basic Triangle", 1, 0, 3, 0, 1, 33.2, NONE, NONE},
    {"Circle Cutout", 9, 0, 0, 0, 9, 78.7, 42.2, 37.3},
    {"Concentric Circles", 6, 0, 0, 0, 6, 151.8, 37.0, 37.3},
    {"Double Loops", 1, 0, 0, 0, 3, 68.9, 73.3, 0},
    {"Eleven Point Star", 1, 0, 22, 0, 1, 38.4, NONE, NONE},
    {"Funky star", 2, 0, 0, 20, 2, 59.1, 12.8, 30.4},
    {"Gear shape 01", 2, 0, 48, 0, 2, 55.3, 80.0, 94.1},
    {"Geometric Blots", 9, 0, 0, 45, 9, 31.5, 20.6, 27.3},
    {"Grid 5 x 5 Lines", 0, 10, 0, 0, 0, 0, NONE, 0},
    {"Grid 7 x7", 49, 0, 0, 0, 49, 42.0, 7.9, 18.7},
    {"Kidney 01", 1, 0, 0, 2, 1, 45.8, 74.8, NONE},
    {"Lightning Bolt", 1, 0, 7, 0, 1, 13.1, NONE, NONE},
    {"Lots of Circles", 43, 0, 0, 0, 43, 28.4, 13.8, 11.7},
    {"Moon", 1, 0, 2, 1, 1, 27.0, 183.2, NONE},
    {"Petals", 8, 0, 8, 16, 8, 36.2, 42.4, 18.8},
    {"Random Circles", 21, 0, 0, 0, 21, 24.4, 10.2, 23.8},
    {"Random Lines", 0, 28, 0, 0, 0, 0, NONE, 18.5},
    {"Rounded Hexagon", 1, 0, 0, 0, 1, 53.3, 55.7, NONE},
    {"Simple Magnifier", 1, 2, 0, 2, 1, 29.0, 29.9, 0},
    {"Square of Lines", 0, 36, 0, 0, 0, 0, NONE, 40.7},
    {"Squiggle Line Open 01", 0, 1, 0, 5, 0, 0, 25.7, NONE},
    {"Squiggle Outline 01", 1, 0, 0, 20, 1, 49.0, 23.0, NONE},
    {"Squiggle Outline 02", 1, 0, 0, 24, 1, 32.7, 16.4, NONE},
    {"Squiggle Outline 03", 1, 0, 0, 12, 1, 46.1, 25.8, NONE},
    {"Squiggle Outline 04", 1, 0, 10, 0, 1, 40.6, 42.5, NONE},
    {"Squiggle Outline 05", 1, 0, 0, 48, 1, 63.0, 7.2, NONE},
    {"Squiggle Outline 06", 1, 0, 0, 8, 1, 24.1, 18.4, 25.7},
    {"Squiggle Outline 07", 1, 0, 0, 0, -8, 0.4, 22.6, 0},
    {"Squiggle Outline 08", 1, 0, 0, 22, 1, 34.4, 7.5, 36.7},
    {"Squiggly Star", 1, 0, 0, 30, 1, 35.0, 17.9, NONE},
    {"Swirled Starfish", 1, 0, 0, 10, 1, 32.6, 6.0, 47.9},
    {"Talk Ellipse", 1, 0, 3, 1, 1, 44.4, 92.5, NONE},
    {"Talk Square", 1, 0, 3, 0, 1, 55.8, 55.0, NONE},
    {"Tapered Flame", 2, 0, 3, 5, 2, 33.0, 26.7, 41.1},
    {"Target Lines", 3, 24, 0, 0, 3, 30.3, 26.7, 0},
    {"Wild Splat", 9, 0, 0, 26, 9, 24.9, 8.1, 19.9},
    {"Wrinkled Petals", 6, 0, 5, 40, 6, 36.5, 6.1, 16.1},
};

} // namespace

std::ostream& operator<<(std::ostream& stream, const ShippedShape& shape) {
    return stream << shape.name;
}

std::span<const ShippedShape> shippedShapes() {
    return shapes;
}

std::string shapePath(const ShippedShape& shape) {
    return std::string(ORBEL_SOURCE_DIR "/resources/Tessaly/SVG/") + shape.name + ".svg";
}

PluginPath_Impl parsedShape(const ShippedShape& shape) {
    PluginPath_Impl path;
    svg_parser parser;
    parser.setPath(&path);
    parser.parse(shapePath(shape).c_str());
    return path;
}

std::string testName(const ShippedShape& shape) {
    std::string name;
    for (const char c : std::string(shape.name)) {
        if (std::isalnum(static_cast<unsigned char>(c)) != 0) {
            name += c;
        }
    }
    return name;
}

} // namespace orbel::test
