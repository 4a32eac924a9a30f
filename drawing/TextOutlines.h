#pragma once

#include "drawing/Cascade.h"
#include "drawing/XmlTree.h"

#include <string>
#include <vector>

namespace orbel {

/// Replaces every `text` element by paths of its glyphs, where browsers place them. What cannot be
/// drawn is told in `notes`.
void replaceTexts(xmlNode* root, const Cascade& cascade, std::vector<std::string>* notes);

} // namespace orbel
