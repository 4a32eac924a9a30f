#pragma once

namespace orbel {

/// Completes the table of built-in shapes with the folder that belongs to this program, once per
/// process: the one installed with it or built beside it. The environment's
/// `QUARVEX_ORBEL_SVG_DIR` comes first.
void prepareShapeTable();

} // namespace orbel
