#pragma once

#include "scene/Scene.h"

#include <optional>
#include <string>

namespace orbel::frei0r {

/// One line to the host's error output, the only way this interface leaves to tell a user.
void tell(const std::string& message);

/// Reads a scene from its text, or from the file that a text without "{" in front names; nothing
/// at all is a scene that sets nothing. Where anything is wrong with it, its shape files included,
/// one message tells the first problem, and there is no scene. The table of built-in shapes is
/// prepared.
[[nodiscard]] std::optional<Scene> readSceneText(const std::string& text);

} // namespace orbel::frei0r
