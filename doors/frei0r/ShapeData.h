#pragma once

namespace orbel::frei0r {

/// Completes the table of built-in shapes, once per process, with the folder that belongs to this
/// plug-in: beside it, where both were installed to, or where they were to be installed. The
/// environment's `QUARVEX_ORBEL_SVG_DIR` comes first.
void prepareShapeTable();

} // namespace orbel::frei0r
