#include "tools/shapes/Drawings.h"

namespace orbel::artwork {

std::vector<Drawing> shapeDrawings() {
    std::vector<Drawing> all;
    for (const auto family : {basicDrawings, starDrawings, circleDrawings, lineDrawings,
                              squiggleDrawings, flowerDrawings, blotDrawings, objectDrawings}) {
        for (Drawing& drawing : family()) {
            fitToSheet(&drawing);
            all.push_back(std::move(drawing));
        }
    }
    return all;
}

} // namespace orbel::artwork
