#pragma once

#include "drawing/Cascade.h"
#include "drawing/XmlTree.h"

namespace orbel {

/// Rewrites what browsers show and the renderer does not know, or knows otherwise, in terms that
/// it knows: conditions and `switch`, the first font size, origins of transforms, path data in
/// style sheets, sizes that `use` gives to an `svg`.
void bridgeRendererGaps(xmlNode* root, const Cascade& cascade);

/// Takes an element out of the picture, whatever style sheets say.
void hideElement(xmlNode* node);

/// The first element with this identifier, or null.
[[nodiscard]] xmlNode* elementById(xmlNode* root, std::string_view id);

} // namespace orbel
