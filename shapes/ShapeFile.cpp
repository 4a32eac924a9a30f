#include "shapes/ShapeFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orbel {

FileHandle openShapeFile(const char* path) {
    const int descriptor = open(path, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0) {
        return nullptr;
    }
    struct stat status = {};
    std::FILE* file = nullptr;
    if (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)) {
        file = fdopen(descriptor, "rb");
    }
    if (file == nullptr) {
        close(descriptor);
    }
    return FileHandle(file);
}

std::size_t fileBytes(std::FILE* file) {
    struct stat status = {};
    return fstat(fileno(file), &status) == 0 ? static_cast<std::size_t>(status.st_size) : 0;
}

int fileExists(const char* path) {
    return path != nullptr && openShapeFile(path) != nullptr ? 1 : 0;
}

} // namespace orbel
