#pragma once

#include "scene/Diagnostics.h"
#include "scene/Scene.h"

#include <nlohmann/json.hpp>

#include <filesystem>

namespace orbel {

/// Reads a scene's "shape" into the scene: the name of a file, a drawing with the way it is
/// imported, or a text. Reports everything else. Names of files start at `folder`.
void readShapeKeys(const nlohmann::json& value, const Site& site,
                   const std::filesystem::path& folder, Scene* scene);

/// What `readShapeKeys` reads as the same shape; null for none.
[[nodiscard]] nlohmann::json shapeKeys(const Scene& scene);

} // namespace orbel
