#pragma once

#include "drawing/TextStyle.h"

#include <optional>
#include <string>
#include <vector>

namespace orbel {

/// One character of a text element, white space settled, with what its elements say of its place.
struct TextCharacter {
    std::string text; ///< UTF-8
    const xmlNode* element = nullptr;
    const xmlNode* path = nullptr; ///< the `textPath` that it stands in
    std::optional<double> x;
    std::optional<double> y;
    double dx = 0.0;
    double dy = 0.0;
    double rotate = 0.0;       ///< degrees
    bool smallCapital = false; ///< a capital in place of a small letter
};

/// Width and height of what percentages refer to.
struct Viewport {
    double width = 0.0;
    double height = 0.0;
};

/// The viewport of the nearest `svg` around an element.
[[nodiscard]] Viewport viewportOf(const xmlNode* node);

/// The characters of a text element in reading order.
[[nodiscard]] std::vector<TextCharacter> charactersOf(const xmlNode* text, TextStyles* styles,
                                                      const Cascade& cascade);

} // namespace orbel
