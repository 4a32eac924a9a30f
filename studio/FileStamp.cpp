#include "studio/FileStamp.h"

#include <sys/stat.h>

namespace orbel::studio {

std::string stampOf(const std::filesystem::path& file) {
    struct stat state = {};
    if (stat(file.c_str(), &state) != 0) {
        return "";
    }
    return std::to_string(state.st_ino) + "/" + std::to_string(state.st_size) + "/" +
           std::to_string(state.st_mtim.tv_sec) + "." + std::to_string(state.st_mtim.tv_nsec);
}

} // namespace orbel::studio
