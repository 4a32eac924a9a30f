#include "doors/ofx/BundleFolder.h"

#include <filesystem>

#include <dlfcn.h>

namespace orbel::ofx {

// NAME.ofx.bundle/Contents/<architecture>/NAME.ofx; a host need not tell where that is, the loader
// does.
std::string bundleResources() {
    static const char anchor = 0;
    Dl_info info{};
    if (dladdr(&anchor, &info) == 0 || info.dli_fname == nullptr) {
        return {};
    }
    namespace fs = std::filesystem;
    std::error_code error;
    const fs::path binary = fs::absolute(info.dli_fname, error);
    return error ? std::string() : (binary.parent_path().parent_path() / "Resources").string();
}

} // namespace orbel::ofx
