#include "doors/frei0r/ShapeData.h"

#include "shapes/ShapeTable.h"

#include <filesystem>
#include <string>

#include <dlfcn.h>

namespace orbel::frei0r {

namespace {

namespace fs = std::filesystem;

/// The folder of the file that holds this code, links followed.
fs::path ownFolder() {
    Dl_info info{};
    if (dladdr(reinterpret_cast<const void*>(&prepareShapeTable), &info) == 0 ||
        info.dli_fname == nullptr) {
        return {};
    }
    std::error_code error;
    const fs::path file = fs::canonical(info.dli_fname, error);
    return error ? fs::path(info.dli_fname).parent_path() : file.parent_path();
}

std::string baseFolder() {
    const fs::path own = ownFolder();
    const fs::path installed = (own / ORBEL_DATA_FROM_PLUGIN).lexically_normal();
    for (const fs::path& base : {own, installed, fs::path(ORBEL_INSTALLED_DATA)}) {
        std::error_code error;
        if (fs::is_directory(base / "Tessaly" / "SVG", error)) {
            return base.string();
        }
    }
    return installed.string();
}

} // namespace

void prepareShapeTable() {
    buildStaticSVGShapeInfo(baseFolder().c_str());
}

} // namespace orbel::frei0r
