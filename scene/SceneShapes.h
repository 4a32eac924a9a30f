#pragma once

#include "scene/Diagnostics.h"
#include "scene/Scene.h"

#include <string>
#include <vector>

/// The shape files that a scene refers to. The table of built-in shapes is prepared by whoever
/// calls.
namespace orbel {

/// A place in the scene's file, or the option that stands for it when there is no file.
[[nodiscard]] Site siteIn(const Scene& scene, const char* pointer, const char* option,
                          Problems* problems);

/// The built-in shapes that the scene chooses at some time, without "None".
[[nodiscard]] std::vector<int> chosenPresets(const Scene& scene);

/// The file of a built-in shape as the core opens it; empty for index 0, "None".
[[nodiscard]] std::string presetFile(int index);

/// Reports every built-in shape that is chosen and whose file does not exist or cannot be read.
void checkPresets(const Scene& scene, Problems* problems);

/// The same for the scene's own shape too, which must be one that the shape reader takes as it is.
void checkShapes(const Scene& scene, Problems* problems);

} // namespace orbel
