#pragma once

#include "scene/Diagnostics.h"
#include "scene/Scene.h"

#include <optional>
#include <string>
#include <string_view>

namespace orbel {

/// Reads a scene from its text. Everything that is wrong with it is reported at once, with JSON
/// pointers (line and column for syntax errors); the scene then holds what could be read, and is
/// absent when the text is no JSON object. Looks at no other file. Throws nothing but
/// std::bad_alloc. `file` names the scene in messages, and its folder is where relative paths
/// start.
[[nodiscard]] std::optional<Scene> readScene(std::string_view text, const std::string& file,
                                             Problems* problems);

/// The same for a file; scenes above 16 MiB are not read.
[[nodiscard]] std::optional<Scene> readSceneFile(const std::string& file, Problems* problems);

} // namespace orbel
