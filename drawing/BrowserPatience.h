#pragma once

#include "drawing/XmlTree.h"

namespace orbel {

/// Mends what browsers read in spite of faults, or leave aside, and the renderer stumbles over:
/// points without gaps, attributes that cannot be read, style sheets in other languages and for
/// other media. To be done before style sheets are read.
void mendFaults(xmlNode* root);

} // namespace orbel
