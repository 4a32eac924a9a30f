#pragma once

#include "scene/Scene.h"

#include <filesystem>
#include <string>

namespace orbel::studio {

/// Changes when a file or the entries of a folder do; empty when there is none.
[[nodiscard]] std::string stampOf(const std::filesystem::path& file);

/// The file of a scene's input; empty where it has none. Of a sequence: its pattern.
[[nodiscard]] std::string fileOf(const SceneInput& input);
[[nodiscard]] bool isSequence(const std::string& file);
/// As `stampOf`, of every file of a sequence.
[[nodiscard]] std::string stampOfInput(const std::string& file);

} // namespace orbel::studio
