#include "shapes/ShapeTable.h"

#include <cstddef>
#include <cstdlib>
#include <mutex>
#include <string>
#include <vector>

namespace orbel {

// The order is part of every saved project, and the spellings are those of the files.
SVGShapeInfo g_svgShapes[] = {
    {"None", ""},
    {"Basic Circle", "Basic Circle.svg"},
    {"Basic Square", "Basic Square.svg"},
    {"Basic Star", "Basic Star.svg"},
    {"Basic Triangle", "Basic Triangle.svg"},
    {"Circle Cutout", "Circle Cutout.svg"},
    {"Concentric Circles", "Concentric Circles.svg"},
    {"Double Loops", "Double Loops.svg"},
    {"Eleven Point Star", "Eleven Point Star.svg"},
    {"Funky star", "Funky star.svg"},
    {"Gear shape 01", "Gear shape 01.svg"},
    {"Geometric Blots", "Geometric Blots.svg"},
    {"Grid 5 x 5 Lines", "Grid 5 x 5 Lines.svg"},
    {"Grid 7 x7", "Grid 7 x7.svg"},
    {"Kidney 01", "Kidney 01.svg"},
    {"Lightning Bolt", "Lightning Bolt.svg"},
    {"Lots of Circles", "Lots of Circles.svg"},
    {"Moon", "Moon.svg"},
    {"Petals", "Petals.svg"},
    {"Random Circles", "Random Circles.svg"},
    {"Random Lines", "Random Lines.svg"},
    {"Rounded Hexagon", "Rounded Hexagon.svg"},
    {"Simple Magnifier", "Simple Magnifier.svg"},
    {"Square of Lines", "Square of Lines.svg"},
    {"Squiggle Line Open 01", "Squiggle Line Open 01.svg"},
    {"Squiggle Outline 01", "Squiggle Outline 01.svg"},
    {"Squiggle Outline 02", "Squiggle Outline 02.svg"},
    {"Squiggle Outline 03", "Squiggle Outline 03.svg"},
    {"Squiggle Outline 04", "Squiggle Outline 04.svg"},
    {"Squiggle Outline 05", "Squiggle Outline 05.svg"},
    {"Squiggle Outline 06", "Squiggle Outline 06.svg"},
    {"Squiggle Outline 07", "Squiggle Outline 07.svg"},
    {"Squiggle Outline 08", "Squiggle Outline 08.svg"},
    {"Squiggly Star", "Squiggly Star.svg"},
    {"Swirled Starfish", "Swirled Starfish.svg"},
    {"Talk Ellipse", "Talk Ellipse.svg"},
    {"Talk Square", "Talk Square.svg"},
    {"Tapered Flame", "Tapered Flame.svg"},
    {"Target Lines", "Target Lines.svg"},
    {"Wild Splat", "Wild Splat.svg"},
    {"Wrinkled Petals", "Wrinkled Petals.svg"},
    {nullptr, nullptr},
};

std::int32_t g_numSVGShapes = 0;

namespace {

std::string shapeFolder(const char* baseDir) {
    if (const char* const folder = std::getenv("QUARVEX_ORBEL_SVG_DIR")) {
        return folder;
    }
    return std::string(baseDir == nullptr ? "" : baseDir) + "/Tessaly/SVG";
}

// The entries take their paths only when all of them are made: a table that memory ran out for
// halfway would get its folder twice at the next attempt.
void completeTable(const char* baseDir) {
    constexpr std::size_t longest = 255;
    static auto& paths = *new std::vector<std::string>; // they live until the process ends
    paths.clear();
    const std::string folder = shapeFolder(baseDir);
    for (const SVGShapeInfo* shape = g_svgShapes; shape->name != nullptr; ++shape) {
        paths.push_back((folder + "/" + shape->file).substr(0, longest));
    }
    for (std::size_t i = 1; i < paths.size(); ++i) {
        g_svgShapes[i].file = paths[i].c_str();
    }
    g_numSVGShapes = static_cast<std::int32_t>(paths.size());
}

} // namespace

void buildStaticSVGShapeInfo(const char* baseDir) {
    static std::once_flag once;
    std::call_once(once, completeTable, baseDir);
}

} // namespace orbel
