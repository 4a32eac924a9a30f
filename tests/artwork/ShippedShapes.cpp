#include "tests/artwork/ShippedShapes.h"

#include "shapes/SvgParser.h"

#include <cctype>

namespace orbel::test {

namespace {

constexpr ShippedShape shapes[] = {
    {"Basic Circle", 1, 0, true},
    {"Basic Square", 1, 0, false},
    {"Basic Star", 1, 0, false},
    {"Basic Triangle", 1, 0, false},
    {"Circle Cutout", 9, 0, true},
    {"Concentric Circles", 6, 0, true},
    {"Double Loops", 1, 0, true},
    {"Eleven Point Star", 1, 0, false},
    {"Funky star", 1, 0, true},
    {"Gear shape 01", 2, 0, false},
    {"Geometric Blots", 9, 0, true},
    {"Grid 5 x 5 Lines", 0, 10, true},
    {"Grid 7 x7", 49, 0, true},
    {"Kidney 01", 1, 0, true},
    {"Lightning Bolt", 1, 0, false},
    {"Lots of Circles", 52, 0, true},
    {"Moon", 1, 0, false},
    {"Petals", 8, 0, false},
    {"Random Circles", 21, 0, true},
    {"Random Lines", 0, 26, true},
    {"Rounded Hexagon", 1, 0, true},
    {"Simple Magnifier", 2, 1, true},
    {"Square of Lines", 0, 36, true},
    {"Squiggle Line Open 01", 0, 1, true},
    {"Squiggle Outline 01", 1, 0, true},
    {"Squiggle Outline 02", 1, 0, true},
    {"Squiggle Outline 03", 1, 0, true},
    {"Squiggle Outline 04", 1, 0, false},
    {"Squiggle Outline 05", 1, 0, true},
    {"Squiggle Outline 06", 1, 0, true},
    {"Squiggle Outline 07", 1, 0, true},
    {"Squiggle Outline 08", 1, 0, true},
    {"Squiggly Star", 1, 0, true},
    {"Swirled Starfish", 1, 0, true},
    {"Talk Ellipse", 1, 0, false},
    {"Talk Square", 1, 0, false},
    {"Tapered Flame", 2, 0, false},
    {"Target Lines", 3, 24, true},
    {"Wild Splat", 10, 0, false},
    {"Wrinkled Petals", 6, 0, false},
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
