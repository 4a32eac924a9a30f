#pragma once

#include <cstdint>

namespace orbel {

/// One built-in shape: the name in the "Presets" popup and its file, which is a bare file name
/// until `buildStaticSVGShapeInfo` has put the shape folder before it.
struct SVGShapeInfo {
    const char* name;
    const char* file;
};

/// The built-in shapes, ended by an entry whose name is null. A project stores an index into this
/// table. Entry 0, "None", has an empty file and stands for no preset. Read it freely once it is
/// built; a built path lives until the process ends.
extern SVGShapeInfo g_svgShapes[];

/// Entries before the end marker; 0 until the table is built.
extern std::int32_t g_numSVGShapes;

/// Completes the table, once per process; later calls only wait until it is complete. The folder is
/// the environment's `QUARVEX_ORBEL_SVG_DIR` as it stands, else `baseDir` (empty when null) with
/// "/Tessaly/SVG". A completed path is cut to 255 bytes. Whether the files exist is not looked at.
void buildStaticSVGShapeInfo(const char* baseDir);

} // namespace orbel
