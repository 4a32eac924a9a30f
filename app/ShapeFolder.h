#pragma once

#include <string>

namespace orbel::app {

/// Completes the table of built-in shapes with the folder that belongs to this program, once per
/// process: the one installed with it or built beside it. The environment's
/// `QUARVEX_ORBEL_SVG_DIR` comes first.
void prepareShapeTable();

/// The file of a built-in shape as the core opens it; empty for index 0, "None". The table is
/// prepared.
[[nodiscard]] std::string presetFile(int index);

} // namespace orbel::app
