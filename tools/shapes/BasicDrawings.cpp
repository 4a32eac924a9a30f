#include "tools/shapes/Drawings.h"
#include "tools/shapes/Regular.h"

namespace orbel::artwork {

std::vector<Drawing> basicDrawings() {
    return {
        {"Basic Circle", {circle(MIDDLE, REACH)}},
        {"Basic Square", {polygon(regularPolygon(4, REACH, -45))}},
        // The tips of a pentagram: its edges line up in pairs.
        {"Basic Star", {polygon(starPolygon(5, REACH, REACH * 0.381966))}},
    };
}

} // namespace orbel::artwork
