#pragma once

#include "shapes/PathModel.h"

#include <ostream>
#include <span>
#include <string>

namespace orbel::test {

/// What a shape file that ships with the program is meant to hold.
struct ShippedShape {
    const char* name;
    int closed;
    int open;
    bool smooth; ///< no corner anywhere, the closing of its outlines included
};

std::ostream& operator<<(std::ostream& stream, const ShippedShape& shape);

[[nodiscard]] std::span<const ShippedShape> shippedShapes();
[[nodiscard]] std::string shapePath(const ShippedShape& shape);
/// The outlines in the file's own units.
[[nodiscard]] PluginPath_Impl parsedShape(const ShippedShape& shape);
/// Name of a test of this shape.
[[nodiscard]] std::string testName(const ShippedShape& shape);

} // namespace orbel::test
