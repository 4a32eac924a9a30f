#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>

namespace orbel {

// Files that shapes come from. Opening never blocks, and never has an effect on what is opened.

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using FileHandle = std::unique_ptr<std::FILE, FileCloser>;

/// Opens a regular file for reading; null when there is none. Pipes, devices and folders are not
/// opened, and nothing waits for a writer.
[[nodiscard]] FileHandle openShapeFile(const char* path);

/// The size of an open file.
[[nodiscard]] std::size_t fileBytes(std::FILE* file);

/// 1 when the path names a file that can be opened for reading, else (null included) 0.
int fileExists(const char* path);

} // namespace orbel
