#include "tools/shapes/Drawings.h"
#include "tools/shapes/Regular.h"

namespace orbel::artwork {

std::vector<Drawing> basicDrawings() {
    return {
        {"Basic Circle", {circle(MIDDLE, REACH)}},
        {"Basic Square", {polygon(regularPolygon(4, REACH, -45))}},
        {"Basic Triangle", {polygon(regularPolygon(3, REACH, 0))}},
        {"Rounded Hexagon", {roundedPolygon(regularPolygon(6, REACH, 30), REACH * 0.24)}},
    };
}

} // namespace orbel::artwork
