#pragma once

#include "shapes/PathModel.h"
#include "shapes/ShapeFile.h"

#include <memory>
#include <vector>

namespace orbel {

class PluginHost_API;

/// One parsed and normalised shape of a file.
struct StrokeCache {
    char name[1024] = {}; ///< the file's path read as format text, cut to 1023 bytes
    PluginPath_Impl path;
    char given[1024] = {}; ///< the file's path as it was given: the key
};

/// Every shape of a file that was used since the process began or the cache was flushed, oldest
/// first. Touched only while `g_globalCritSection` is held.
extern std::vector<std::unique_ptr<StrokeCache>> g_cacheShapes;

/// The shape of the host's instance, read on its first use: a file that changes on disk keeps its
/// old shape until the cache is flushed. An instance without a readable file has the shape of its
/// SVG text, one without either the null shape, which has no outlines: drawing along it draws
/// nothing. Owned by the cache, never null; that of a text may be gone once the lock is released.
/// Takes the lock. Throws only std::bad_alloc.
[[nodiscard]] PluginPath_API* getSVGShape(PluginHost_API* host);

/// The entry of the file that was given by exactly this path, null when there is none. Two files
/// whose names read alike as format text are two. The caller holds the lock.
[[nodiscard]] StrokeCache* findStokeCache(const char* path);

/// Frees every entry, those of texts too. Paths that `getSVGShape` has handed out are gone with
/// them.
void flushStrokeCache();

} // namespace orbel
