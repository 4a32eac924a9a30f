#include "film/ShapeFolder.h"

#include "shapes/ShapeTable.h"

#include <filesystem>

namespace orbel {

namespace {

/// The build tree is laid out like an installation, so one rule finds both.
std::string baseFolder() {
    std::error_code error;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    const std::filesystem::path base =
        program.parent_path() / std::filesystem::path(ORBEL_DATA_FROM_PROGRAM);
    return base.lexically_normal().string();
}

} // namespace

void prepareShapeTable() {
    buildStaticSVGShapeInfo(baseFolder().c_str());
}

} // namespace orbel
