#pragma once

#include "shapes/PathModel.h"

#include <ostream>
#include <span>
#include <string>

namespace orbel::test {

/// What a shape file that ships with the program is meant to hold, lengths in units of its sheet of
/// 512.
struct ShippedShape {
    const char* name;
    int closed;
    int open;
    int corners; ///< of all outlines together; everywhere else the lines are smooth
    int swings;  ///< from bending to one side to bending to the other, of all outlines together
    int turns; ///< of all closed outlines together, clockwise: how often their direction goes round
    double area;           ///< that the closed ones run round clockwise, in percent of the sheet
    double smallestRadius; ///< of a bend; infinite where all is straight
    double smallestGap; ///< between lines; 0 where they cross or touch, infinite where there is one
};

std::ostream& operator<<(std::ostream& stream, const ShippedShape& shape);

[[nodiscard]] std::span<const ShippedShape> shippedShapes();
[[nodiscard]] std::string shapePath(const ShippedShape& shape);
/// The outlines in the file's own units.
[[nodiscard]] PluginPath_Impl parsedShape(const ShippedShape& shape);
/// Name of a test of this shape.
[[nodiscard]] std::string testName(const ShippedShape& shape);

} // namespace orbel::test
