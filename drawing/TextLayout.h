#pragma once

#include "drawing/Outline.h"
#include "drawing/TextCharacters.h"

#include <cstddef>
#include <set>
#include <string>
#include <vector>

namespace orbel {

/// A cluster with its place in the text's own coordinates.
struct PlacedCluster {
    std::size_t character = 0;
    double x = 0.0;
    double y = 0.0;
    double advance = 0.0;  ///< with all spacing
    double stretch = 1.0;  ///< across
    double scale = 1.0;    ///< of the font's size
    double turn = 0.0;     ///< radians
    double line = 0.0;     ///< direction of the line, radians
    double raise = 0.0;    ///< across the line
    bool sideways = false; ///< lies on its side in vertical text
    bool upright = false;
    bool hidden = false;              ///< beyond the ends of its path
    std::vector<OutlineCurve> curves; ///< for a font of size 1
};

/// One text element, letter by letter.
struct TextLayout {
    std::vector<TextCharacter> characters;
    std::vector<PlacedCluster> clusters;
    std::set<std::string> families; ///< the lists of them that the letters ask for
};

/// Places every letter as browsers do: lists of positions, spacing, stated lengths, paths.
[[nodiscard]] TextLayout layOutText(const xmlNode* text, TextStyles* styles, const Cascade& cascade,
                                    FontShaper* shaper);

} // namespace orbel
